#include "core/link/serial_link.h"

#include "core/base/runtime_error.h"
#include "core/base/scope_exit.h"
#include "core/link/form.h"
#include "core/protocol/hex_text.h"

#include <algorithm>
#include <limits>
#include <span>
#include <string>

namespace varda::inline core {
namespace {

using namespace std::chrono_literals;

/// A burst is whole when this long has passed since its first byte.
constexpr auto burstWait = 100ms;
/// A request to the simulator is whole when no byte has come for this long.
constexpr auto settleWait = 150ms;
/// Of a request that does not come to an end, the bytes that RxCount can count.
constexpr std::size_t keptOfRequest = std::numeric_limits<std::int16_t>::max();
/// Ticks without reception after which the wait for an answer ends.
constexpr int ticksOfSilence = 13;

constexpr std::string_view scenarioAnswer = "txtScnReceive";
constexpr std::string_view scenarioSilenceStatus =
    "txtWStatus"; // kept: a scenario's silence is told on the write page

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

bool SerialLink::requiredFieldsFilled(const Route& route) {
    if (allFilled(form_, fieldsNeededToSend(route, form_))) {
        return true;
    }
    form_.showMessage("Data are missing. Please fill Data !!", "Error");
    return false;
}

bool SerialLink::startRequest(const Route& route) {
    if (!commPLC_.isOpen()) {
        form_.setText(route.status, "Port Closed");
        return false;
    }
    commPLC_.discard();
    state_.RxCount = 0;
    state_.RxExpected = 0;
    state_.WaitTicks = 0;
    form_.setText(route.status, "");
    return true;
}

void SerialLink::SendRequest(const Bytes& bytes, int expected) {
    state_.RxExpected = static_cast<std::int16_t>(expected);
    state_.WaitingAnswer = false; // for good where the port refuses the bytes
    commPLC_.write(bytes);
    state_.AnswerReceived = false;
    state_.WaitingAnswer = true;
}

bool SerialLink::isFreeForRun() {
    if (!commPLC_.isOpen()) {
        form_.showMessage("Please Port Open !!", "Warning");
        return false;
    }
    // kept: the mixed pages' boxes are not looked at
    if (form_.isTicked("chkRTimer") || form_.isTicked("chkWTimer")) {
        form_.showMessage("Currently, Program is communicating with PLC. Please turn off Check Box !!",
                          "Warning");
        return false;
    }
    return true;
}

void SerialLink::sendScenarioFrame(const Bytes& frame, std::optional<int> expected) {
    if (expected) {
        state_.RxExpected = static_cast<std::int16_t>(*expected);
    }
    if (commPLC_.isOpen()) {
        commPLC_.discard();
        commPLC_.write(frame);
        state_.RxCount = 0;
        state_.WaitingAnswer = true;
    }
}

void SerialLink::enterMode(std::int16_t commMode) {
    const bool leavesSimulation =
        state_.CommMode == comm_mode::simulation && commMode != comm_mode::simulation;
    // a reception that began before the simulation, on a connection that still stands
    const bool receivesForAnother = wait_.isPending() && !isSettling_ && commPLC_.isOpen();
    if (leavesSimulation && !receivesForAnother) {
        if (wait_.isPending()) {
            commPLC_.discard(); // the request that is not answered, and the limit to it
        }
        wait_.cancel();
        state_.InReceive = false;
    }
    if (commMode == comm_mode::scenario) { // a silence from before the run would end it
        state_.WaitTicks = 0;
        showWaitTicks();
        state_.WaitingAnswer = false;
    }
    state_.CommMode = commMode;
}

void SerialLink::connectionOpened() { wait_.cancel(); }

void SerialLink::commPLC_OnComm(CommEvent event) {
    if (event != CommEvent::Received) {
        state_.InReceive = false;
        return;
    }
    if (wait_.isPending()) {
        isMerged_ = true; // the running wait takes these bytes along
        return;
    }
    state_.InReceive = true;
    state_.WaitTicks = 0;
    showWaitTicks();
    receiveLater();
}

void SerialLink::receiveLater() {
    switch (state_.CommMode) {
    case comm_mode::monitoring:
        wait(burstWait, [this] { receiveBurst(); });
        break;
    case comm_mode::simulation:
        if (commPLC_.inBufferCount() > 0) {
            settleRequest(commPLC_.inBufferCount());
        }
        break;
    default:
        wait(burstWait, [this] { receiveAnswer(); });
    }
}

void SerialLink::wait(std::chrono::milliseconds wait, std::function<void()> rest) {
    isMerged_ = false;
    isSettling_ = false;
    wait_ = clock_.after(wait, [this, rest = std::move(rest)] {
        const ScopeExit again([this] { // also after a defect
            if (!wait_.isPending() && isMerged_ && commPLC_.inBufferCount() > 0) {
                commPLC_OnComm(CommEvent::Received);
            }
        });
        rest();
    });
}

void SerialLink::receiveBurst() {
    if (commPLC_.inBufferCount() == 0) {
        return; // kept: InReceive stays set, as on every empty input buffer
    }
    const ScopeExit ended([this] { endReception(); }); // also after a defect
    skippingFailure([this] { roles_.listBurst(commPLC_.read()); });
}

void SerialLink::receiveAnswer() {
    if (commPLC_.inBufferCount() == 0) {
        return; // kept: InReceive stays set, so the timer pauses until a later reception completes
    }
    const ScopeExit ended([this] { endReception(); });
    skippingFailure([this] { appendToRxBuffer(commPLC_.read()); });
    const bool answerMode = findRoute(state_.CommMode) != nullptr || state_.CommMode == comm_mode::scenario;
    if (answerMode) {
        form_.setText("txtCurrentData", std::to_string(state_.RxCount));
    }
    // kept: a burst of any other length is dropped; pieces of an answer are never put together
    if (state_.RxCount == state_.RxExpected && state_.RxCount >= 1) {
        completeAnswer();
    }
}

void SerialLink::settleRequest(std::size_t noted) {
    commPLC_.keepFirst(keptOfRequest);
    wait(settleWait, [this, noted] {
        const std::size_t waitingNow = commPLC_.inBufferCount();
        if (waitingNow != noted) {
            settleRequest(waitingNow);
        } else if (waitingNow > 0) {
            receiveRequest();
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
    skippingFailure([this] { appendToRxBuffer(commPLC_.read()); });
    form_.setText("txtCurrentData", std::to_string(state_.RxCount));
    skippingFailure([this, &known] { known = roles_.answerRequest(); });
}

void SerialLink::appendToRxBuffer(const Bytes& bytes) {
    const std::size_t first = std::min(static_cast<std::size_t>(state_.RxCount), state_.RxBuffer.size());
    const std::size_t fitting = std::min(bytes.size(), state_.RxBuffer.size() - first);
    std::copy_n(bytes.begin(), fitting, state_.RxBuffer.begin() + static_cast<std::ptrdiff_t>(first));
    state_.RxCount = raised(state_.RxCount, bytes.size());
}

void SerialLink::completeAnswer() {
    const auto length = std::min(static_cast<std::size_t>(state_.RxCount), state_.RxBuffer.size());
    const std::string shown = hexGroups(std::span(state_.RxBuffer).first(length));
    if (const Route* const route = findRoute(state_.CommMode)) {
        form_.setText(route->completionStatus, "Data Receive OK !!");
        form_.setText(route->answer, shown);
    } else if (state_.CommMode == comm_mode::scenario) {
        form_.setText(scenarioAnswer, shown);
    }
}

void SerialLink::endReception() {
    state_.AnswerReceived = true;
    state_.WaitingAnswer = false;
    showCounters();
    state_.RxCount = 0;
    state_.InReceive = false;
}

void SerialLink::showCounters() {
    form_.setText("txtTotalData", std::to_string(state_.RxExpected));
    form_.setText("txtCurrentData", std::to_string(state_.RxCount));
}

void SerialLink::showWaitTicks() { form_.setText("txtWatchDog", std::to_string(state_.WaitTicks)); }

void SerialLink::tmrComm_Timer() {
    if (state_.InReceive) {
        return;
    }
    showCounters();
    if (state_.WaitingAnswer) {
        state_.WaitTicks = raised(state_.WaitTicks, 1);
        showWaitTicks();
    }
    if (const Route* const route = findRoute(state_.CommMode)) {
        tickMaster(*route);
    } else if (state_.CommMode == comm_mode::scenario) {
        tickScenario();
    }
}

void SerialLink::forgetAnswer() {
    state_.AnswerReceived = false;
    state_.RxExpected = 0;
    state_.RxCount = 0;
    showCounters();
    commPLC_.discard();
}

void SerialLink::giveUpWaiting(std::string_view statusField) {
    state_.WaitTicks = 0;
    showWaitTicks();
    form_.setText(statusField, "No Answer From PLC");
    state_.WaitingAnswer = false;
    forgetAnswer();
}

void SerialLink::tickMaster(const Route& route) {
    if (state_.WaitTicks >= ticksOfSilence) {
        giveUpWaiting(route.silenceStatus);
    }
    if (state_.AnswerReceived) {
        forgetAnswer();
    }
    // kept: reads repeat on every tick, writes only once their answer has come or its wait has ended
    const bool mayRepeat = !route.repeatsOnlyWhenAnswered || !state_.WaitingAnswer;
    if (form_.isTicked(route.continuousBox) && mayRepeat &&
        allFilled(form_, fieldsNeededToRepeat(route, form_))) {
        repeatRequest(route);
    }
}

void SerialLink::repeatRequest(const Route& route) {
    try {
        form_.press(route.sendButton);
    } catch (const RuntimeError&) {
        form_.setTicked(route.continuousBox, false); // else the same report would come with every tick
        throw;
    }
}

void SerialLink::tickScenario() {
    if (state_.WaitTicks >= ticksOfSilence) {
        giveUpWaiting(scenarioSilenceStatus);
        form_.press("cmdStopScenario");
    }
}

} // namespace varda::inline core
