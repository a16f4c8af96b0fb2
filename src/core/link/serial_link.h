#pragma once

#include "core/base/clock.h"
#include "core/link/port.h"
#include "core/link/routes.h"
#include "core/protocol/frame.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace varda::inline core {

class Form;

/// What the link knows of the exchange under way; pages, simulator, monitor and scenario read and set it.
struct LinkState {
    std::int16_t CommMode =
        command::bitRead; ///< request code of the shown master page, or one of comm_mode::
    std::array<std::uint8_t, 1025> RxBuffer{}; ///< bytes of the answer being received
    std::int16_t RxCount = 0;    ///< number of bytes received; may count beyond the buffer, stops at 32767
    std::int16_t RxExpected = 0; ///< length of the awaited answer, 0 when none
    bool AnswerReceived = false;
    bool WaitingAnswer = false;
    std::int16_t WaitTicks = 0; ///< timer ticks since the last reception while an answer is awaited
    bool InReceive = false;     ///< set while the receive handler runs; the timer does nothing meanwhile
};

/// Sends requests, receives bursts and times answers out, for every mode alike.
///
/// Nothing here waits: where a burst must settle, the rest of the handler runs later as a continuation of the
/// clock.
class SerialLink {
public:
    /// The roles that take over what the link has received. All run on the interface thread.
    struct Roles {
        /// Lists one burst. @param burst every byte that waited
        std::function<void(const Bytes& burst)> listBurst = [](const Bytes&) {};
        /// Answers the request in RxBuffer. @return false where no prepared request equals it
        std::function<bool()> answerRequest = [] { return false; };
    };

    SerialLink(Port& commPLC, Clock& clock, Form& form) : commPLC_(commPLC), clock_(clock), form_(form) {}

    LinkState& state() { return state_; }
    const LinkState& state() const { return state_; }
    Port& port() { return commPLC_; }
    void setRoles(Roles roles) { roles_ = std::move(roles); }

    /// Chooses what the link does from now on. Leaving the simulation ends it: a request that is still
    /// settling is not answered, and the link is free for the next mode. A scenario begins with no silence
    /// and nothing awaited.
    /// @param commMode a request code of command:: or one of comm_mode::
    void enterMode(std::int16_t commMode);

    /// The port was opened: a wait that began before belongs to the closed connection and does nothing more.
    void connectionOpened();

    /// Whether the fields that a send needs are filled; else shows the message that says so.
    bool requiredFieldsFilled(const Route& route);

    /// The first half of a send: empties the input buffer, the counters and the page's status line.
    /// @return false where the port is closed; the status line says so and nothing else has changed
    bool startRequest(const Route& route);

    /// The second half of a send: hands the bytes to the port and waits for the answer.
    /// @param expected length of the answer in bytes
    /// @throws RuntimeError of the port; then no answer is awaited
    void SendRequest(const Bytes& bytes, int expected);

    /// Whether a scenario or the monitor may start: the port is open and neither the read nor the write page
    /// sends continuously; else shows the message that says so.
    bool isFreeForRun();

    /// Sends one frame of a scenario; closed, the port gets nothing.
    /// @param expected length of its answer; nothing leaves what was expected before
    /// @throws RuntimeError of the port
    void sendScenarioFrame(const Bytes& frame, std::optional<int> expected);

    /// The port's receive event.
    void commPLC_OnComm(CommEvent event);

    /// One tick of the communication timer. @throws RuntimeError of a repeated send, which then has been
    /// switched off
    void tmrComm_Timer();

    /// Shows the expected and the received length.
    void showCounters();

private:
    void wait(std::chrono::milliseconds wait, std::function<void()> rest);
    void receiveLater();
    void receiveBurst();
    void receiveAnswer();
    void settleRequest(std::size_t noted);
    void receiveRequest();
    void appendToRxBuffer(const Bytes& bytes);
    void completeAnswer();
    void endReception();

    void showWaitTicks();
    void forgetAnswer();
    void giveUpWaiting(std::string_view statusField);
    void tickMaster(const Route& route);
    void tickScenario();
    void repeatRequest(const Route& route);

    Port& commPLC_;
    Clock& clock_;
    Form& form_;
    Roles roles_;
    LinkState state_;
    Wait wait_;               ///< for the rest of the receive handler
    bool isSettling_ = false; ///< it waits for a request to the simulator to end
    bool isMerged_ = false;   ///< a receive event came during the wait
};

} // namespace varda::inline core
