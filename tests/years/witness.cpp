#include "years/witness.h"

#include "core/protocol/independent_encoder.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <utility>

namespace varda::years {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t heldOfBurst = 1025; // the receive buffer's
constexpr auto longestReception = 400ms;  // beyond the last byte, with room for a wait that began late
constexpr int ticksOfSilence = 13;

/// The frame check by the division itself, a table of whose steps is made here.
unsigned checkOf(std::span<const std::uint8_t> bytes) {
    static const auto steps = [] {
        std::array<unsigned, 256> made{};
        for (unsigned value = 0; value < made.size(); ++value) {
            made.at(value) = test::shiftedOut(value);
        }
        return made;
    }();
    unsigned rest = 0xFFFF;
    for (const std::uint8_t byte : bytes) {
        rest = rest / 256 ^ steps[(rest ^ byte) % 256];
    }
    return rest;
}

bool hasRightCheck(const Bytes& frame) {
    if (frame.size() < 6 || frame.size() < 6U + frame[3]) {
        return false;
    }
    const std::size_t checked = 4U + frame[3];
    return checkOf(std::span(frame).first(checked)) == frame[checked] + 256U * frame[checked + 1];
}

std::string digitsOf(const Bytes& bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += {digits[byte / 16U], digits[byte % 16U]};
    }
    return text;
}

bool beginsWith(const Bytes& whole, const Bytes& part) {
    return part.size() == std::min(whole.size(), heldOfBurst) &&
           std::equal(part.begin(), part.end(), whole.begin());
}

} // namespace

void Witness::require(bool holds, const char* what) {
    findings_.require(holds, [&] {
        return name_ + ": " + what + "; last outcome " + std::string(inWords(last_.outcome)) + ", mode " +
               std::to_string(static_cast<int>(link_.state().CommMode)) + ", request " +
               digitsOf(last_.request) + ", answer " + digitsOf(last_.answer) + ", written " +
               digitsOf(written_) + ", read " + digitsOf(read_) + ", shown " + digitsOf(shown_.bytes);
    });
}

void Witness::tell(const std::string& what, const Bytes& bytes) const {
    diary_.tell([&] { return name_ + ": " + what + ' ' + digitsOf(bytes); });
}

// The line

void Witness::wrote(const Bytes& bytes, bool isTaken) {
    tell(isTaken ? "writes" : "writes, and there is no room", bytes);
    tape_.put(static_cast<std::uint64_t>(isTaken));
    tape_.put(bytes);
    written_ = bytes;
    requireShown(bytes);
}

void Witness::refused(const Bytes& bytes) {
    tell("is refused", bytes);
    written_ = bytes;
    requireShown(bytes);
}

void Witness::requireShown(const Bytes& bytes) {
    if (link_.state().CommMode == Mode::Simulation) {
        const auto row = preparedRow(read_);
        require(row && digitsOf(bytes) == pairs_.answer(*row), "the answer sent is not the prepared one");
        return;
    }
    require(bytes == shown_.bytes, "the bytes sent are not the frame shown");
    require(hasRightCheck(bytes), "the frame sent has a wrong check");
}

void Witness::read(const Burst& burst) {
    tell("reads", burst.bytes);
    tape_.put(burst.bytes);
    read_ = burst.bytes;
}

void Witness::discarded(std::size_t bytes) {
    tell("throws away " + std::to_string(bytes), {});
    discarded_ = bytes;
    counts_.dropped += bytes;
    if (bytes > 0 && link_.state().CommMode == Mode::Simulation) {
        isStuckAsLaidDown_ = true; // the request that settled is gone, and nobody ends its reception
    }
}

void Witness::told(CommEvent event, std::size_t waiting) {
    tell("event " + std::to_string(static_cast<int>(event)) + ", waiting " + std::to_string(waiting), {});
    if (event == CommEvent::Received && waiting > 0) {
        noticed_ = clock_.now();
        pendingTicks_ = 0;
    }
}

void Witness::opened() {
    tell("is open", {});
    if (link_.state().InReceive) {
        isStuckAsLaidDown_ = true; // nobody goes on with what the closed connection was receiving
    }
}

void Witness::closed() {
    tell("is closed", {});
    if (link_.state().InReceive) {
        isStuckAsLaidDown_ = true; // what was being received is gone
    }
}

// The link

void Witness::told(const Exchange& exchange) {
    tell(std::string(inWords(exchange.outcome)) + ", expected " + std::to_string(exchange.expected),
         exchange.answer);
    last_ = exchange;
    ++counts_.told.at(static_cast<std::size_t>(exchange.outcome));
    tape_.put(static_cast<std::uint64_t>(exchange.outcome));
    noteReception(exchange.outcome);
    switch (exchange.outcome) {
    case Outcome::Sent:
        return toldSent(exchange);
    case Outcome::Answered:
    case Outcome::WrongLength:
        return toldAnswer(exchange);
    case Outcome::Ignored:
        requireReceived(exchange.answer);
        return endPending(exchange);
    case Outcome::Silent:
    case Outcome::HungUp:
        return endPending(exchange);
    case Outcome::Overtaken:
        require(isPending_, "a request was overtaken that had its outcome");
        return endPending(exchange);
    case Outcome::ThrownAway:
        counts_.toldDropped += exchange.dropped;
        return require(exchange.dropped == discarded_, "bytes were thrown away that are not told");
    case Outcome::Heard:
        return requireReceived(exchange.answer);
    case Outcome::AnsweredByPair:
        return toldPair(exchange);
    case Outcome::Unknown:
        return toldUnknown(exchange);
    case Outcome::AnsweredFromMemory:
        return require(false, "a memory answered, and there is none");
    case Outcome::NotSent:
    case Outcome::NothingToRead:
        return;
    }
}

void Witness::noteReception(Outcome outcome) {
    switch (outcome) {
    case Outcome::NothingToRead:
    case Outcome::Unknown:
        ++counts_.stuck;
        isStuckAsLaidDown_ = true;
        return;
    case Outcome::Answered:
    case Outcome::WrongLength:
    case Outcome::Ignored:
    case Outcome::Heard:
    case Outcome::AnsweredByPair:
    case Outcome::HungUp:
        isStuckAsLaidDown_ = false;
        return;
    default:
        return;
    }
}

void Witness::toldSent(const Exchange& exchange) {
    require(!isPending_, "a request went out before the last one had its outcome");
    require(exchange.request == written_, "the request told is not what was written");
    require(exchange.sent.first <= exchange.sent.last && exchange.sent.last == clock_.now(),
            "the time of sending is another one");
    ++counts_.asked;
    isPending_ = true;
    pendingTicks_ = 0;
    pending_ = exchange.request;
}

void Witness::endPending(const Exchange& exchange) {
    if (std::exchange(isPending_, false)) {
        ++counts_.ended;
        counts_.answered += exchange.outcome == Outcome::Answered ? 1 : 0;
        require(exchange.request == pending_, "the outcome is told of another request");
        return;
    }
    require(exchange.outcome != Outcome::Silent || exchange.request.empty(),
            "a request has a second outcome");
}

void Witness::toldAnswer(const Exchange& exchange) {
    counts_.again += isPending_ ? 0 : 1;
    requireReceived(exchange.answer);
    if (exchange.outcome == Outcome::Answered) {
        require(static_cast<int>(exchange.answer.size()) == exchange.expected,
                "an answer has another length");
        require(exchange.expected == shown_.answerLength, "another length was expected");
    }
    require(exchange.outcome == Outcome::Answered || static_cast<int>(read_.size()) != exchange.expected ||
                read_.empty(),
            "an answer of the right length was dropped");
    endPending(exchange);
}

void Witness::requireReceived(const Bytes& told) {
    require(beginsWith(read_, told), "what is shown did not come over the line");
}

void Witness::toldPair(const Exchange& exchange) {
    requireReceived(exchange.request);
    require(exchange.pair && exchange.pair == preparedRow(read_), "another pair answers");
    require(exchange.answer.empty() || exchange.answer == written_,
            "the answer told is not what was written");
}

void Witness::toldUnknown(const Exchange& exchange) {
    requireReceived(exchange.request);
    require(read_.size() > heldOfBurst || !preparedRow(read_), "a prepared request was not known");
}

/// Looked for from the first row on, text by text.
std::optional<std::size_t> Witness::preparedRow(const Bytes& request) const {
    const auto found = std::ranges::find(pairs_.requests(), digitsOf(request));
    return found == pairs_.requests().end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(found - pairs_.requests().begin()));
}

// After every event

void Witness::ticks() {
    const LinkState& state = link_.state();
    diary_.tell([&] {
        return name_ + ": tick, " + std::to_string(state.WaitTicks) +
               (state.WaitingAnswer ? " waiting" : "") + (state.AnswerReceived ? " answered" : "") +
               (state.InReceive ? " in reception" : "");
    });
    const bool isCounted = findRoute(state.CommMode) != nullptr || state.CommMode == Mode::Scenario;
    if (isPending_ && isCounted && !state.InReceive && ++pendingTicks_ > ticksOfSilence) {
        require(false, "a request waits for ever");
    }
}

void Witness::check() {
    const LinkState& state = link_.state();
    if (state.InReceive && !isStuckAsLaidDown_) {
        require(clock_.now() - noticed_ <= longestReception, "the link is stuck in a reception");
    }
}

void Witness::checkQuiet() {
    require(!isPending_, "a request still has no outcome");
    require(counts_.asked == counts_.ended, "requests and outcomes do not add up");
    require(counts_.dropped == counts_.toldDropped, "bytes thrown away and told do not add up");
    require(!link_.state().InReceive || isStuckAsLaidDown_, "the link is still receiving");
}

} // namespace varda::years
