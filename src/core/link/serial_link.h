#pragma once

#include "core/base/clock.h"
#include "core/link/exchange_under_way.h"
#include "core/link/mscomm.h"
#include "core/link/routes.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace varda::inline core {

/// What the link knows of the exchange under way. It alone writes it.
struct LinkState {
    Mode CommMode = Mode::BitRead;
    std::array<std::uint8_t, 1025> RxBuffer{}; ///< bytes of the answer being received
    std::int16_t RxCount = 0;    ///< number of bytes received; may count beyond the buffer, stops at 32767
    std::int16_t RxExpected = 0; ///< length of the awaited answer, 0 when none
    bool AnswerReceived = false;
    bool WaitingAnswer = false;
    std::int16_t WaitTicks = 0; ///< timer ticks since the last reception while an answer is awaited
    bool InReceive = false;     ///< set while the receive handler runs; the timer does nothing meanwhile

    bool operator==(const LinkState&) const = default;
};

/// The answer to a request that came in.
struct PreparedAnswer {
    std::optional<std::size_t> pair = 0; ///< row of the prepared pair; none where a memory answers
    Bytes bytes;                         ///< empty where the pair's answer is no frame: then nothing is sent
};

/// Sends requests, receives bursts and times answers out, for every mode alike.
///
/// Nothing here waits: where a burst must settle, the rest of the handler runs later as a continuation of the
/// clock. What becomes of each exchange is told to the observers.
class SerialLink {
public:
    /// Ticks without reception after which the wait for an answer ends.
    static constexpr int ticksOfSilence = 13;

    /// Whom the link asks. Both run on the interface thread.
    struct Roles {
        /// Sends the shown request once more, where the user wants that: on every tick on which a master page
        /// may repeat. @throws RuntimeError
        std::function<void(Mode mode)> repeat = [](Mode) {};
        /// What a request that came in is to be answered with; nothing where it is not known.
        std::function<std::optional<PreparedAnswer>(std::span<const std::uint8_t> request)> answerTo =
            [](auto) { return std::nullopt; };
    };

    SerialLink(MSComm& commPLC, Clock& clock) : commPLC_(commPLC), clock_(clock) {}

    const LinkState& state() const { return state_; }
    MSComm& port() { return commPLC_; }
    void setRoles(Roles roles) { roles_ = std::move(roles); }
    /// Tells an observer everything from now on; it outlives the link's last word. Not to be called by an
    /// observer that is being told.
    void observe(LinkObserver& observer) { exchange_.observe(observer); }
    /// The same for the numbers that the link counts.
    void observeCounters(CounterObserver& observer) { exchange_.observeCounters(observer); }

    /// Chooses what the link does from now on. Leaving the simulation ends it: a request that is still
    /// settling is not answered, and the link is free for the next mode. A scenario begins with no silence
    /// and nothing awaited.
    void enterMode(Mode mode);

    /// The port was opened: a wait that began before belongs to the closed connection and does nothing more.
    void connectionOpened();

    /// The port was closed by its user: the answer to the last request will not come.
    void connectionClosed() { exchange_.giveUp(); }

    /// The first half of a send: empties the input buffer and the counters.
    /// @return false where the port is closed; nothing has changed then
    bool startRequest();

    /// The second half of a send: hands the bytes to the port and waits for the answer.
    /// @param expected length of the answer in bytes
    /// @throws RuntimeError of the port; then no answer is awaited
    void SendRequest(const Bytes& bytes, int expected);

    /// Sends bytes and awaits nothing for them: counters and wait go on for the request before.
    /// @throws RuntimeError of the port
    void sendUnawaited(const Bytes& bytes);

    /// The ticks without an answer are counted anew: those until now are no fault.
    void restartSilence();
    /// Ends a reception that found nothing to read, which pauses the ticks otherwise until another one is
    /// complete: who waits for the end of an exchange would wait for ever on a line that says no more.
    void endEmptyReception() { state_.InReceive = false; }
    /// Sends one frame of a scenario; closed, the port gets nothing.
    /// @param expected length of its answer; nothing leaves what was expected before
    /// @throws RuntimeError of the port
    void sendScenarioFrame(const Bytes& frame, std::optional<int> expected);

    /// The port's receive event.
    void commPLC_OnComm(CommEvent event);

    /// One tick of the communication timer. @throws RuntimeError of a repeated send
    void tmrComm_Timer();

    /// Tells the expected and the received length.
    void tellCounters();

protected:
    /// For a link that is put into a state which takes long to reach.
    LinkState& ownState() { return state_; }

private:
    void wait(std::chrono::milliseconds time, std::function<void()> rest);
    void receiveLater();
    void tellNothingToRead();
    void receiveBurst();
    void receiveAnswer();
    void settleRequest(std::size_t noted);
    void receiveRequest();
    bool answerRequest();
    void sendAnswer(Bytes answer);
    Burst readBurst();
    void readIntoRxBuffer();
    std::span<const std::uint8_t> received() const;
    void endReception();

    void handOverRequest();
    void handOver(const Bytes& bytes);
    void discardUnread(Discarding why);
    void tellSilence();
    void forgetAnswer(Discarding why);
    void giveUpWaiting();
    void tickMaster(const Route& route);

    MSComm& commPLC_;
    Clock& clock_;
    Roles roles_;
    LinkState state_;
    ExchangeUnderWay exchange_{state_.CommMode};
    Clock::Time noticed_;     ///< when the event came whose bytes are being received
    Wait wait_;               ///< for the rest of the receive handler
    bool isSettling_ = false; ///< it waits for a request to the simulator to end
    bool isMerged_ = false;   ///< a receive event came during the wait
    bool isStuck_ = false;    ///< the timer stood still when the event came that is being handled
};

} // namespace varda::core
