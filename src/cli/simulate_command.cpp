#include "cli/simulate_command.h"

#include "cli/files.h"
#include "cli/link_session.h"
#include "core/link/period.h"
#include "core/pairs/packet_table.h"
#include "core/runs/responder.h"

#include <ostream>

namespace varda::cli {
namespace {

bool isOfARequest(const Exchange& exchange) {
    return exchange.outcome == Outcome::AnsweredByPair || exchange.outcome == Outcome::Unknown ||
           exchange.outcome == Outcome::NotSent;
}

} // namespace

void SimulateCommand::declare(CLI::App& app) {
    port_.declare(app);
    app.add_option("files", files_, "Files of prepared pairs; of equal requests the first counts")
        ->required()
        ->check(existingFile());
}

ExitCode SimulateCommand::run(const Streams& streams, Report& report) {
    PacketTable table;
    for (const std::string& file : files_) {
        addPairs(table, file);
    }
    const Responder responder(table);
    LinkSession session(startPeriod);
    session.link().setRoles({.answerTo = [&responder](auto request) { return responder.answerTo(request); }});
    session.whenTold([&report](const Exchange& exchange) {
        if (isOfARequest(exchange)) {
            report.exchange(exchange);
        }
    });
    session.open(port_);
    session.link().enterMode(Mode::Simulation);
    streams.error << "Answering on " << port_.name << " from " << table.requests().size()
                  << " prepared pairs. End with Ctrl+C.\n"
                  << std::flush;
    session.run();
    return ExitCode::Right;
}

} // namespace varda::cli
