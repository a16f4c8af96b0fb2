#include "cli/report.h"

#include "cli/failure.h"
#include "core/insight/field_words.h"
#include "core/insight/verdict_words.h"
#include "core/protocol/hex_text.h"
#include "core/recordings/recording_words.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <ostream>

namespace varda::cli {
namespace {

using Json = nlohmann::ordered_json;
using Octets = std::span<const std::uint8_t>;

std::string asLine(const Json& object) { return object.dump(-1, ' ', false, Json::error_handler_t::replace); }

Json jsonOf(const device::PortName& port) {
    return {{"type", "port"},
            {"name", port.node},
            {"description", port.description},
            {"maker", port.maker},
            {"serialNumber", port.serialNumber},
            {"stableName", port.stableName}};
}

Json jsonOf(const device::PortFindings& findings) {
    Json object = jsonOf(findings.port);
    object["facts"] = findings.facts;
    Json remedies = Json::array();
    for (const device::PortRemedy& remedy : findings.remedies) {
        remedies.push_back({{"command", remedy.command}, {"purpose", remedy.purpose}});
    }
    object["remedies"] = remedies;
    return object;
}

Clock::Time::duration timeOf(const Exchange& exchange) {
    return exchange.received.last - exchange.sent.first;
}

bool isAnswered(const Exchange& exchange) { return exchange.outcome == Outcome::Answered; }

/// The answer taken apart, in whose fields the registers have the names that the request asked for.
DecodedFrame answerOf(const Exchange& exchange) { return decode(exchange.answer, exchange.request); }

template <typename Use>
void forEachValue(const DecodedFrame& frame, Use&& use) {
    for (const Field& field : frame.fields) {
        if (field.role == FieldRole::Value && field.point && !field.isCut()) {
            use(field);
        }
    }
}

Json valuesOf(const DecodedFrame& frame) {
    Json values = Json::array();
    forEachValue(frame, [&values](const Field& field) {
        const bool isBit = field.point->access == Access::Bit;
        values.push_back({{"register", nameOf(*field.point)},
                          {"value", isBit ? Json(field.number != 0) : Json(field.number)}});
    });
    return values;
}

Json faultsOf(const DecodedFrame& frame) {
    Json faults = Json::array();
    for (const Fault fault : frame.faults) {
        faults.push_back(faultInWords(frame, fault));
    }
    return faults;
}

Json jsonOf(const Exchange& exchange) {
    Json object = {{"type", "exchange"},
                   {"outcome", inWords(exchange.outcome)},
                   {"kind", kindInWords(kindOf(exchange.request))},
                   {"request", hexRun(exchange.request)},
                   {"expected", exchange.expected},
                   {"answer", hexRun(exchange.answer)}};
    if (isAnswered(exchange)) {
        const DecodedFrame answer = answerOf(exchange);
        object["milliseconds"] = std::chrono::duration<double, std::milli>(timeOf(exchange)).count();
        object["values"] = valuesOf(answer);
        object["faults"] = faultsOf(answer);
    }
    if (exchange.pair) {
        object["pair"] = *exchange.pair + 1;
    }
    return object;
}

/// What was to be sent and what went out are two things: the port may refuse an answer.
std::string unlessSent(const Exchange& exchange) {
    return exchange.answer.empty() ? ", but nothing was sent" : "";
}

std::string headingOf(const Exchange& exchange) {
    std::string text = kindInWords(kindOf(exchange.request)) + ' ' + hexGroups(exchange.request) + "- " +
                       std::string(inWords(exchange.outcome));
    switch (exchange.outcome) {
    case Outcome::Answered:
        return text + " in " + inMilliseconds(timeOf(exchange));
    case Outcome::WrongLength:
        return text + ": " + counted(exchange.answer.size(), "byte") + " of " +
               std::to_string(exchange.expected) + " came";
    case Outcome::AnsweredByPair:
        return text + ": pair " + std::to_string(exchange.pair.value_or(0) + 1) + unlessSent(exchange);
    case Outcome::AnsweredFromMemory:
        return text + unlessSent(exchange);
    default:
        return text;
    }
}

std::string textOf(const Exchange& exchange) {
    std::string text = headingOf(exchange) + '\n';
    if (!exchange.answer.empty()) {
        text += "  " + hexGroups(exchange.answer) + '\n';
    }
    if (isAnswered(exchange)) {
        const DecodedFrame answer = answerOf(exchange);
        forEachValue(answer, [&](const Field& field) { text += "  " + fieldInWords(answer, field) + '\n'; });
        for (const Fault fault : answer.faults) {
            text += "  " + faultInWords(answer, fault) + '\n';
        }
    }
    text.pop_back();
    return text;
}

double inMillisecondsOf(std::chrono::microseconds time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

Json jsonOf(const RecordingSize& size) {
    return {{"sent", size.sent},
            {"received", size.received},
            {"bytes", size.bytes},
            {"milliseconds", inMillisecondsOf(size.duration)}};
}

std::string timesInWords(std::uint64_t count) {
    return count == 1 ? "once" : std::to_string(count) + " times";
}

Octets bytesOf(const Field& field, Octets bytes) { return bytes.subspan(field.place, field.length); }

Json jsonOf(Octets bytes, const DecodedFrame& frame) {
    Json fields = Json::array();
    for (const Field& field : frame.fields) {
        fields.push_back({{"name", fieldName(field)},
                          {"place", field.place},
                          {"bytes", hexRun(bytesOf(field, bytes))},
                          {"value", fieldValue(frame, field)}});
    }
    return {{"type", "frame"},
            {"kind", kindInWords(frame.kind)},
            {"bytes", hexRun(bytes.subspan(frame.begin, frame.end - frame.begin))},
            {"fields", fields},
            {"faults", faultsOf(frame)}};
}

std::string textOf(Octets bytes, const DecodedFrame& frame) {
    std::string text = kindInWords(frame.kind) + ", " + counted(frame.end - frame.begin, "byte");
    for (const Field& field : frame.fields) {
        text += "\n  " + hexGroups(bytesOf(field, bytes)) + ' ' + fieldInWords(frame, field);
    }
    for (const Fault fault : frame.faults) {
        text += "\n  ! " + faultInWords(frame, fault);
    }
    return text;
}

} // namespace

void flush(std::ostream& out) {
    if (!out.flush()) {
        throw Failure(ExitCode::File, "Standard output takes no more: it was closed, or its disk is full.");
    }
}

void Report::port(const device::PortName& port) { write(asJson_ ? asLine(jsonOf(port)) : describe(port)); }

void Report::port(const device::PortFindings& findings) {
    std::string text = asJson_ ? asLine(jsonOf(findings)) : describe(findings);
    if (text.ends_with('\n')) {
        text.pop_back();
    }
    write(text);
}

void Report::exchange(const Exchange& exchange) {
    write(asJson_ ? asLine(jsonOf(exchange)) : textOf(exchange));
}

void Report::expectation(int round, int line, const std::string& why) {
    write(asJson_       ? asLine({{"type", "expectation"},
                                  {"round", round},
                                  {"line", line},
                                  {"isMet", why.empty()},
                                  {"why", why}})
          : why.empty() ? "  as expected"
                        : "  not as expected: " + why);
}

void Report::frame(Octets bytes, const DecodedFrame& frame) {
    write(asJson_ ? asLine(jsonOf(bytes, frame)) : textOf(bytes, frame));
}

void Report::heard(const Exchange& exchange, const std::string& line) {
    write(asJson_ ? asLine({{"type", "heard"}, {"bytes", hexRun(exchange.answer)}}) : line);
}

void Report::finding(const std::string& file, const PairFinding& finding) {
    const std::size_t number = finding.pair + 1;
    write(asJson_
              ? asLine({{"type", "finding"},
                        {"file", file},
                        {"pair", number},
                        {"problem", finding.problem},
                        {"remedy", finding.remedy}})
              : file + ": pair " + std::to_string(number) + ": " + finding.problem + ' ' + finding.remedy);
}

void Report::pairHits(std::size_t row, std::uint64_t answers) {
    write(asJson_ ? asLine({{"type", "pair"}, {"pair", row + 1}, {"answers", answers}})
                  : "pair " + std::to_string(row + 1) + ": answered " + timesInWords(answers));
}

void Report::unmatched(const UnknownRequest& request) {
    write(asJson_
              ? asLine({{"type", "unmatched"},
                        {"request", hexRun(request.bytes)},
                        {"kind", kindInWords(kindOf(request.bytes))},
                        {"count", request.count},
                        {"isAnswered", request.isAnswered},
                        {"notSent", request.notSent}})
              : "no prepared pair: " + kindInWords(kindOf(request.bytes)) + ' ' + hexGroups(request.bytes) +
                    "came " + timesInWords(request.count) +
                    (request.isAnswered ? ", answered from memory" : ", not answered") +
                    (request.notSent > 0 ? "; the port refused " + counted(request.notSent, "answer") : ""));
}

void Report::played(const PlayerProgress& progress) {
    write(asJson_ ? asLine({{"type", "played"},
                            {"frames", progress.frames},
                            {"played", progress.played},
                            {"periodWanted", inMillisecondsOf(progress.periodWanted)},
                            {"periodReached", inMillisecondsOf(progress.periodReached)},
                            {"latest", inMillisecondsOf(progress.latest)}})
                  : inWords(progress));
}

void Report::converted(const std::string& file, std::size_t entries, std::size_t leftOut,
                       std::size_t changing) {
    write(asJson_ ? asLine({{"type", "converted"},
                            {"file", file},
                            {"entries", entries},
                            {"leftOut", leftOut},
                            {"changing", changing}})
                  : file + ": " + (entries == 1 ? "1 entry" : std::to_string(entries) + " entries") +
                        (leftOut > 0 ? ", " + std::to_string(leftOut) + " left out" : "") +
                        (changing > 0 ? ", " + std::to_string(changing) + " answered otherwise later" : ""));
}

void Report::difference(const RecordingDifference& difference) {
    write(asJson_ ? asLine({{"type", "difference"},
                            {"isSame", difference.isSame()},
                            {"why", difference.why},
                            {"same", difference.same},
                            {"mostApart", inMillisecondsOf(difference.mostApart)},
                            {"left", jsonOf(difference.left)},
                            {"right", jsonOf(difference.right)}})
                  : inWords(difference));
}

void Report::fault(const FaultDone& fault) {
    write(asJson_ ? asLine({{"type", "fault"},
                            {"frame", fault.frame},
                            {"name", ruleOf(fault.kind).name},
                            {"done", fault.text}})
                  : "on purpose: " + fault.text);
}

void Report::scenario(int rounds, int right, int wrong) {
    write(asJson_ ? asLine({{"type", "scenario"}, {"rounds", rounds}, {"right", right}, {"wrong", wrong}})
                  : std::to_string(rounds) + (rounds == 1 ? " round: " : " rounds: ") +
                        std::to_string(right) + " right, " + std::to_string(wrong) + " wrong");
}

void Report::write(std::string_view line) {
    out_ << line << '\n';
    flush(out_);
}

} // namespace varda::cli
