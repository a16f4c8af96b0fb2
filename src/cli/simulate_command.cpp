#include "cli/simulate_command.h"

#include "cli/files.h"
#include "cli/link_session.h"
#include "core/link/period.h"
#include "core/pairs/packet_table.h"
#include "core/runs/living_controller.h"
#include "core/runs/pair_hits.h"
#include "core/runs/unknown_requests.h"

#include <ostream>

namespace varda::cli {
namespace {

bool isOfARequest(const Exchange& exchange) {
    return exchange.outcome == Outcome::AnsweredByPair || exchange.outcome == Outcome::AnsweredFromMemory ||
           exchange.outcome == Outcome::Unknown || exchange.outcome == Outcome::NotSent;
}

/// What came of a simulation.
struct Tally {
    PairHits hits;
    UnknownRequests unknown;

    void note(const Exchange& exchange) {
        hits.note(exchange);
        unknown.note(exchange);
    }
    void tell(Report& report, std::ostream& error, std::size_t pairs) const {
        for (std::size_t row = 0; row < pairs; ++row) {
            report.pairHits(row, hits.of(row));
        }
        for (const UnknownRequest& request : unknown.requests()) {
            report.unmatched(request);
        }
        if (unknown.others() > 0) {
            error << "Others came " << unknown.others() << " times, which are not listed.\n" << std::flush;
        }
    }
};

} // namespace

void SimulateCommand::declare(CLI::App& app) {
    line_.declare(app);
    memory_.declare(app);
    app.add_option("files", files_, "Files of prepared pairs; of equal requests the first counts")
        ->check(existingFile());
}

ExitCode SimulateCommand::run(const Streams& streams, Report& report) {
    if (files_.empty() && !memory_.isWanted()) {
        throw Failure(ExitCode::Usage,
                      "What is to be answered? Name a file of prepared pairs, or say --memory.");
    }
    PacketTable table;
    for (const std::string& file : files_) {
        addPairs(table, file);
    }
    Controller controller;
    memory_.load(controller);
    LivingController living(table, controller);
    living.switchOn(memory_.isWanted());
    Tally tally;
    LinkSession session(startPeriod);
    session.link().setRoles({.answerTo = [&living](auto request) { return living.answerTo(request); }});
    session.whenTold([&](const Exchange& exchange) {
        if (isOfARequest(exchange)) {
            tally.note(exchange);
            report.exchange(exchange);
        }
    });
    line_.open(session, streams, report);
    session.link().enterMode(Mode::Simulation);
    streams.error << "Answering on " << line_.port.name << " from " << table.requests().size()
                  << " prepared pairs" << (living.isOn() ? " and from memory" : "") << ". End with Ctrl+C.\n"
                  << std::flush;
    // however it ends: the memory first, for the output may be what ends it
    session.run([&] {
        doBoth([&] { memory_.save(controller); },
               [&] { tally.tell(report, streams.error, table.requests().size()); });
    });
    return ExitCode::Right;
}

} // namespace varda::cli
