#include "cli/transaction_commands.h"

#include "cli/link_session.h"

#include <limits>

namespace varda::cli {
namespace {

bool isRight(const Exchange& exchange) {
    return exchange.outcome == Outcome::Answered && decode(exchange.answer, exchange.request).isSound();
}

/// One request for each of the operands.
template <typename Make>
std::vector<Request> eachAlone(const StationTexts& stations, const std::vector<Operand>& operands,
                               Make&& make) {
    std::vector<Request> requests;
    requests.reserve(operands.size());
    for (const Operand& operand : operands) {
        requests.push_back(make(stations, operand));
    }
    return requests;
}

CLI::Validator station() { return CLI::Range(0, 255).description("0 to 255"); }

} // namespace

void TransactionCommand::declare(CLI::App& app) {
    line_.declare(app);
    app.add_option("--destination", stations_.destination, "Station that is asked; 255 is whichever is there")
        ->check(station())
        ->capture_default_str();
    app.add_option("--source", stations_.source, "Station that asks")
        ->check(station())
        ->capture_default_str();
    app.add_option("--period", period_,
                   "Milliseconds of a tick; after 13 of them without a byte the wait for an answer ends")
        ->check(CLI::Range(shortestPeriod, int{std::numeric_limits<std::int16_t>::max()}))
        ->capture_default_str();
    app.add_option("operands", words_, operandsInWords())->required();
}

ExitCode TransactionCommand::run(const Streams& streams, Report& report) {
    const std::vector<Request> requests = makeRequests(stations_, readOperands(words_));
    LinkSession session(period_);
    line_.open(session, streams, report);
    bool isEachRight = true;
    for (const Request& request : requests) {
        const Exchange exchange = session.transact(request);
        report.exchange(exchange);
        isEachRight = isEachRight && isRight(exchange);
    }
    return isEachRight ? ExitCode::Right : ExitCode::Failed;
}

std::string ReadCommand::operandsInWords() const {
    return R"(Registers, each with a count if it is more than one: "W 0100 4", "R 0012.3")";
}

std::vector<Request> ReadCommand::makeRequests(const StationTexts& stations,
                                               const std::vector<Operand>& operands) const {
    return eachAlone(stations, operands, readRequest);
}

std::string WriteCommand::operandsInWords() const {
    return R"(Registers and their values: "W 0100=1A2Bh,7", "M 0000.0=ON")";
}

std::vector<Request> WriteCommand::makeRequests(const StationTexts& stations,
                                                const std::vector<Operand>& operands) const {
    return eachAlone(stations, operands, writeRequest);
}

std::string MixedReadCommand::operandsInWords() const {
    return "Registers, each with a count if it is more than one: \"R 0012.3 W 0100 4\"";
}

std::vector<Request> MixedReadCommand::makeRequests(const StationTexts& stations,
                                                    const std::vector<Operand>& operands) const {
    return {mixedReadRequest(stations, operands)};
}

std::string MixedWriteCommand::operandsInWords() const {
    return "Registers and their values: \"M 0000.0=ON W 0100=1A2Bh,7\"";
}

std::vector<Request> MixedWriteCommand::makeRequests(const StationTexts& stations,
                                                     const std::vector<Operand>& operands) const {
    return {mixedWriteRequest(stations, operands)};
}

} // namespace varda::cli
