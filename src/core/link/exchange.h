#pragma once

#include "core/base/bytes.h"
#include "core/base/clock.h"
#include "core/link/routes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace varda::inline core {

/// What became of an exchange.
enum class Outcome {
    Sent,          ///< the request went to the port; its answer is awaited
    NotSent,       ///< the port was closed, or refused the bytes
    Answered,      ///< an answer of the expected length came
    WrongLength,   ///< what came has another length, and was dropped
    NothingToRead, ///< the port told of bytes, and none were there
    Silent,        ///< no answer within the ticks of silence
    Overtaken,  ///< the next request went out, or the link went on to something else, before an answer came
    ThrownAway, ///< bytes that nobody had read were dropped: before a send, or when the link starts anew
    HungUp,     ///< the line went away
    Ignored,    ///< bytes came in a mode that has no use for them
    Heard,      ///< a burst on a monitored line
    AnsweredByPair, ///< a request came that a prepared pair answers; nothing was sent where that is no frame
                    ///< or the port refused it
    Unknown,        ///< a request came that no prepared pair answers
    AnsweredFromMemory ///< one came that no prepared pair answers, and a memory does
};

inline constexpr int outcomeCount = static_cast<int>(Outcome::AnsweredFromMemory) + 1;

/// Why bytes that nobody had read were thrown away.
enum class Discarding : std::uint8_t {
    BeforeSend,     ///< a send begins with nothing that waits
    AfterReception, ///< so does the tick after an answer, or what came in its place
    WithTheWait,    ///< the wait for an answer was given up
    WithTheRequest, ///< the simulation was done with the request before them
    WithTheMode     ///< the simulation was left while a request was coming in
};

/// Whether it is what became of a request that was sent, for good or for ill. Of further bursts that came
/// behind its end the same is told once more.
bool isEnd(Outcome outcome);

/// "before the next send".
std::string_view inWords(Discarding why);

/// "answered", "wrong length".
std::string_view inWords(Outcome outcome);

/// When the first and the last byte of something went over the line.
struct TimeSpan {
    Clock::Time first;
    Clock::Time last;
};

/// One request, what came back, and what became of it.
///
/// In the simulation it is the far end that asks: `request` came in then, and `answer` was sent. What a
/// monitored line carried stands in `answer`, for nobody knows who asked.
struct Exchange {
    Mode mode = Mode::BitRead; ///< of the link when this is told
    Outcome outcome = Outcome::Sent;
    Bytes request;
    int expected = 0; ///< bytes that the answer should have, 0 where none is awaited
    Bytes answer;
    TimeSpan sent;           ///< handed to the port: before and after the write
    TimeSpan received;       ///< came in, as the line tells, or else as the link noticed
    bool whileStuck = false; ///< the timer stood still when it came in, since an event that led to nothing
    std::size_t dropped = 0; ///< bytes that were thrown away unread
    Discarding discarding = Discarding::BeforeSend; ///< why they were
    std::optional<std::size_t> pair;                ///< row of the prepared pair that answered
};

/// Whether a memory had the answer to a request that came in, and the port did not take it.
bool isRefusedFromMemory(const Exchange& exchange);

/// The numbers that the link counts for its user.
enum class Counter {
    Expected, ///< bytes of the awaited answer
    Received, ///< bytes received
    Silence   ///< ticks since the last reception while an answer is awaited
};

/// Who wants to know what the link does. Everything is told on the interface thread, while it happens.
///
/// A RuntimeError of an observer is passed over where a burst was heard or a request came in, as every
/// failing statement there; elsewhere it goes to whoever called the link.
class LinkObserver {
public:
    LinkObserver() = default;
    LinkObserver(const LinkObserver&) = delete;
    LinkObserver& operator=(const LinkObserver&) = delete;
    virtual ~LinkObserver() = default;

    /// Something became of an exchange; more than once, where more than one burst follows a request.
    virtual void told(const Exchange& exchange) = 0;
    /// The port was opened: what comes in from now on answers nothing from before.
    virtual void connected() {}
};

/// Who shows what the link counts.
class CounterObserver {
public:
    CounterObserver() = default;
    CounterObserver(const CounterObserver&) = delete;
    CounterObserver& operator=(const CounterObserver&) = delete;
    virtual ~CounterObserver() = default;

    /// A number is to be shown, changed or not.
    virtual void counted(Counter counter, int value) = 0;
};

} // namespace varda::core
