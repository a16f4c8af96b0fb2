#include "core/link/serial_link.h"

#include "core/base/runtime_error.h"
#include "core/base/scope_exit.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace varda::inline core {
namespace {

using namespace std::chrono_literals;

/// A burst is whole when this long has passed since its first byte.
constexpr auto burstWait = 100ms;
/// A request to the simulator is whole when no byte has come for this long.
constexpr auto settleWait = 150ms;

std::int16_t raised(std::int16_t count, std::size_t by) {
    constexpr std::size_t largest = std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(std::min(static_cast<std::size_t>(count) + by, largest));
}

/// The receive path skips a failing statement and goes on with the next one. An error of any other class is
/// a defect, which whoever called the link reports.
template <typename Statement>
void skippingFailure(Statement&& statement) {
    try {
        std::forward<Statement>(statement)();
    } catch (const RuntimeError&) { // NOLINT(bugprone-empty-catch): skipping is the rule
    }
}

} // namespace

// Telling

void SerialLink::tellCounters() {
    exchange_.count(Counter::Expected, state_.RxExpected);
    exchange_.count(Counter::Received, state_.RxCount);
}

void SerialLink::tellSilence() { exchange_.count(Counter::Silence, state_.WaitTicks); }

// Sending

bool SerialLink::startRequest() {
    if (!commPLC_.isOpen()) {
        return false;
    }
    exchange_.giveUp();
    discardUnread(Discarding::BeforeSend);
    state_.RxCount = 0;
    state_.RxExpected = 0;
    state_.WaitTicks = 0;
    return true;
}

void SerialLink::discardUnread(Discarding why) {
    const std::size_t dropped = commPLC_.inBufferCount();
    commPLC_.discard();
    if (dropped > 0) {
        exchange_.beginUnlessPending();
        exchange_.known().dropped = dropped;
        exchange_.known().discarding = why;
        exchange_.tell(Outcome::ThrownAway);
    }
}

void SerialLink::SendRequest(const Bytes& bytes, int expected) {
    state_.RxExpected = static_cast<std::int16_t>(expected);
    state_.WaitingAnswer = false; // for good where the port refuses the bytes
    exchange_.begin(bytes, expected);
    handOverRequest();
    state_.AnswerReceived = false;
    state_.WaitingAnswer = true;
    exchange_.tell(Outcome::Sent);
}

void SerialLink::sendUnawaited(const Bytes& bytes) {
    discardUnread(Discarding::BeforeSend);
    exchange_.begin(bytes, 0);
    handOverRequest();
    exchange_.settle();
    exchange_.tell(Outcome::Sent);
}

void SerialLink::restartSilence() {
    state_.WaitTicks = 0;
    tellSilence();
}

void SerialLink::sendScenarioFrame(const Bytes& frame, std::optional<int> expected) {
    if (expected) {
        state_.RxExpected = static_cast<std::int16_t>(*expected);
    }
    if (!commPLC_.isOpen()) {
        exchange_.begin(frame, state_.RxExpected);
        exchange_.tell(Outcome::NotSent);
        return;
    }
    discardUnread(Discarding::BeforeSend);
    exchange_.begin(frame, state_.RxExpected);
    handOverRequest();
    state_.RxCount = 0;
    state_.WaitingAnswer = true;
    exchange_.tell(Outcome::Sent);
}

void SerialLink::handOverRequest() {
    try {
        handOver(exchange_.known().request);
    } catch (const RuntimeError&) {
        exchange_.tell(Outcome::NotSent);
        throw;
    }
    exchange_.setPending();
}

void SerialLink::handOver(const Bytes& bytes) {
    exchange_.known().sent.first = clock_.now();
    commPLC_.write(bytes);
    exchange_.known().sent.last = clock_.now();
}

// Modes and connections

void SerialLink::enterMode(Mode mode) {
    const bool leavesSimulation = state_.CommMode == Mode::Simulation && mode != Mode::Simulation;
    // a reception that began before the simulation, on a connection that still stands
    const bool receivesForAnother = wait_.isPending() && !isSettling_ && commPLC_.isOpen();
    if (leavesSimulation && !receivesForAnother) {
        if (wait_.isPending()) {
            discardUnread(Discarding::WithTheMode); // the request that is not answered, and the limit to it
        }
        wait_.cancel();
        state_.InReceive = false;
    }
    if (mode == Mode::Scenario) { // a silence from before the run would end it
        exchange_.giveUp();
        restartSilence();
        state_.WaitingAnswer = false;
    }
    state_.CommMode = mode;
}

void SerialLink::connectionOpened() {
    wait_.cancel();
    exchange_.giveUp();
    exchange_.tellConnected();
}

// Receiving

void SerialLink::commPLC_OnComm(CommEvent event) {
    if (event != CommEvent::Received) {
        state_.InReceive = false;
        if (event == CommEvent::HungUp) {
            exchange_.beginUnlessPending();
            exchange_.settle();
            exchange_.tell(Outcome::HungUp);
        }
        return;
    }
    if (wait_.isPending()) {
        isMerged_ = true; // the running wait takes these bytes along
        return;
    }
    isStuck_ = std::exchange(state_.InReceive, true);
    noticed_ = clock_.now();
    restartSilence();
    receiveLater();
}

void SerialLink::receiveLater() {
    switch (state_.CommMode) {
    case Mode::Monitoring:
        wait(burstWait, [this] { receiveBurst(); });
        break;
    case Mode::Simulation:
        if (const std::size_t waiting = commPLC_.inBufferCount(); waiting > 0) {
            settleRequest(waiting);
        } else {
            tellNothingToRead();
        }
        break;
    default:
        wait(burstWait, [this] { receiveAnswer(); });
    }
}

void SerialLink::wait(std::chrono::milliseconds time, std::function<void()> rest) {
    isMerged_ = false;
    isSettling_ = false;
    wait_ = clock_.after(time, [this, rest = std::move(rest)] {
        const ScopeExit again([this] { // also after a defect
            if (!wait_.isPending() && isMerged_ && commPLC_.inBufferCount() > 0) {
                commPLC_OnComm(CommEvent::Received);
            }
        });
        rest();
    });
}

/// Everything that waits, and when it came. @throws RuntimeError of the port
Burst SerialLink::readBurst() {
    Burst burst = commPLC_.read();
    exchange_.known().received = burst.arrivals.empty()
                                     ? TimeSpan{noticed_, clock_.now()}
                                     : TimeSpan{burst.arrivals.front().time, burst.arrivals.back().time};
    exchange_.known().whileStuck = isStuck_;
    return burst;
}

void SerialLink::tellNothingToRead() {
    exchange_.beginUnlessPending();
    exchange_.tell(Outcome::NothingToRead);
}

void SerialLink::receiveBurst() {
    if (commPLC_.inBufferCount() == 0) {
        tellNothingToRead();
        return; // kept: InReceive stays set, as on every empty input buffer
    }
    const ScopeExit ended([this] { endReception(); }); // also after a defect
    skippingFailure([this] {
        exchange_.begin({}, 0);
        exchange_.known().answer = readBurst().bytes;
        exchange_.tell(Outcome::Heard);
    });
}

void SerialLink::receiveAnswer() {
    if (commPLC_.inBufferCount() == 0) {
        tellNothingToRead();
        return; // kept: InReceive stays set, so the timer pauses until a later reception completes
    }
    const ScopeExit ended([this] { endReception(); });
    const bool answerMode = findRoute(state_.CommMode) != nullptr || state_.CommMode == Mode::Scenario;
    if (!answerMode) {
        exchange_.beginUnlessPending();
    }
    skippingFailure([this] { readIntoRxBuffer(); });
    exchange_.settle();
    Exchange& exchange = exchange_.known();
    exchange.answer.assign(received().begin(), received().end());
    exchange.expected = state_.RxExpected;
    if (!answerMode) {
        exchange_.tell(Outcome::Ignored);
        return;
    }
    exchange_.count(Counter::Received, state_.RxCount);
    // kept: a burst of any other length is dropped; pieces of an answer are never put together
    const bool isWhole = state_.RxCount == state_.RxExpected && state_.RxCount >= 1;
    exchange_.tell(isWhole ? Outcome::Answered : Outcome::WrongLength);
}

void SerialLink::settleRequest(std::size_t noted) {
    commPLC_.keepFirst(state_.RxBuffer.size()); // of a longer request only the beginning is looked at
    wait(settleWait, [this, noted] {
        const std::size_t waitingNow = commPLC_.inBufferCount();
        if (waitingNow != noted) {
            settleRequest(waitingNow);
        } else if (waitingNow > 0) {
            receiveRequest();
        } else {
            tellNothingToRead();
        }
    });
    isSettling_ = true;
}

void SerialLink::receiveRequest() {
    bool known = true;
    const ScopeExit ended([this, &known] {
        if (known) { // kept: an unknown request leaves InReceive set
            endReception();
        }
    });
    exchange_.begin({}, 0);
    skippingFailure([this] { readIntoRxBuffer(); });
    exchange_.count(Counter::Received, state_.RxCount);
    skippingFailure([this, &known] { known = answerRequest(); });
}

/// @return false where no prepared pair answers the request; the reception then ends without its common end
bool SerialLink::answerRequest() {
    Bytes request(received().begin(), received().end());
    const Exchange cameIn = exchange_.known();
    const bool isHeldWhole = static_cast<std::size_t>(state_.RxCount) <= state_.RxBuffer.size();
    std::optional<PreparedAnswer> answer = roles_.answerTo(request);
    const bool isKnown = answer && isHeldWhole;
    const bool isOpen = commPLC_.isOpen();
    if (!isKnown || isOpen) {
        discardUnread(Discarding::WithTheRequest);
        state_.RxCount = 0;
    }
    exchange_.begin(std::move(request), 0);
    Exchange& exchange = exchange_.known();
    exchange.received = cameIn.received;
    exchange.whileStuck = cameIn.whileStuck;
    if (!isKnown) {
        exchange_.tell(Outcome::Unknown);
        return false;
    }
    if (isOpen) {
        sendAnswer(std::move(answer->bytes));
    }
    exchange.pair = answer->pair;
    const Outcome answered = answer->pair ? Outcome::AnsweredByPair : Outcome::AnsweredFromMemory;
    exchange_.tell(isOpen ? answered : Outcome::NotSent);
    return true;
}

void SerialLink::sendAnswer(Bytes answer) {
    if (answer.empty()) {
        return;
    }
    skippingFailure([this, &answer] {
        handOver(answer);
        exchange_.known().answer = std::move(answer);
    });
}

void SerialLink::readIntoRxBuffer() {
    const Burst burst = readBurst();
    const Bytes& bytes = burst.bytes;
    const std::size_t first = std::min(static_cast<std::size_t>(state_.RxCount), state_.RxBuffer.size());
    const std::size_t fitting = std::min(bytes.size(), state_.RxBuffer.size() - first);
    std::copy_n(bytes.begin(), fitting, state_.RxBuffer.begin() + static_cast<std::ptrdiff_t>(first));
    state_.RxCount = raised(state_.RxCount, bytes.size() + burst.counted);
}

std::span<const std::uint8_t> SerialLink::received() const {
    const auto count = static_cast<std::size_t>(state_.RxCount);
    return std::span(state_.RxBuffer).first(std::min(count, state_.RxBuffer.size()));
}

void SerialLink::endReception() {
    state_.AnswerReceived = true;
    state_.WaitingAnswer = false;
    tellCounters();
    state_.RxCount = 0;
    state_.InReceive = false;
}

// Time

void SerialLink::tmrComm_Timer() {
    if (state_.InReceive) {
        return;
    }
    tellCounters();
    if (state_.WaitingAnswer) {
        state_.WaitTicks = raised(state_.WaitTicks, 1);
        tellSilence();
    }
    if (const Route* const route = findRoute(state_.CommMode)) {
        tickMaster(*route);
    } else if (state_.CommMode == Mode::Scenario && state_.WaitTicks >= ticksOfSilence) {
        giveUpWaiting();
    }
}

void SerialLink::forgetAnswer(Discarding why) {
    state_.AnswerReceived = false;
    state_.RxExpected = 0;
    state_.RxCount = 0;
    tellCounters();
    discardUnread(why);
}

void SerialLink::giveUpWaiting() {
    restartSilence();
    state_.WaitingAnswer = false;
    forgetAnswer(Discarding::WithTheWait);
    // Where that was overtaken, by a closed port for example, it has its outcome.
    exchange_.beginUnlessPending();
    exchange_.settle();
    exchange_.known().answer.clear();
    exchange_.tell(Outcome::Silent);
}

void SerialLink::tickMaster(const Route& route) {
    if (state_.WaitTicks >= ticksOfSilence) {
        giveUpWaiting();
    }
    if (state_.AnswerReceived) {
        forgetAnswer(Discarding::AfterReception);
    }
    // kept: reads repeat on every tick, writes only once their answer has come or its wait has ended
    if (!route.repeatsOnlyWhenAnswered || !state_.WaitingAnswer) {
        roles_.repeat(state_.CommMode);
    }
}

} // namespace varda::core
