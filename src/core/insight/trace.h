#pragma once

#include "core/base/bytes.h"
#include "core/base/clock.h"
#include "core/insight/decoder.h"
#include "core/insight/nearest_pair.h"
#include "core/link/routes.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varda::inline core {

/// Whether bytes went or came, or something happened that has no bytes.
enum class Direction : std::uint8_t { Sent, Received, Event };

/// What became of a line of the trace, or what happened there.
enum class Verdict : std::uint8_t {
    // of what was sent
    Unawaited,     ///< nothing is awaited for it
    Awaiting,      ///< its answer has not come yet
    Answered,      ///< its answer was taken
    AnswerDropped, ///< what came for it was dropped, and the wait ended with that
    NoAnswer,      ///< nothing came within the ticks of silence
    Overtaken,     ///< the next request went out before an answer came
    NotSent,       ///< the port was closed or did not take it
    SentByPair,    ///< it is a prepared answer
    SentByMemory,  ///< it is the answer of the memory of a simulated controller
    // of what was received
    Unread,      ///< nobody has read it yet
    Taken,       ///< it was taken as the answer
    TakenAgain,  ///< the request had its answer already, and this one was taken too
    Dropped,     ///< it does not have the length that was awaited
    Ignored,     ///< the mode has no use for it
    Heard,       ///< the monitor listed it
    KnownPair,   ///< a prepared pair answers it
    KnownMemory, ///< no prepared pair answers it, and the memory of a simulated controller does
    UnknownPair, ///< no prepared pair answers it
    ThrownAway,  ///< it was thrown away unread
    Lost,        ///< it could not be read any more, or reading failed
    // of events
    Opened,
    Closed,
    HungUp,
    Silence,       ///< the wait for an answer was given up
    NothingToRead, ///< the port told of bytes, and none were there
    OnPurpose      ///< a fault of our own doing, to what is sent next
};

/// One burst that went over the line, or an event.
struct TraceLine {
    Direction direction = Direction::Event;
    Verdict verdict = Verdict::Unread;
    bool isMarked = false;
    bool whileStuck = false; ///< the link's timer had been standing still since an event that it did not end
    std::optional<bool> isDamaged; ///< whether its frames have a flaw; looked up when somebody asks
    Mode mode = Mode::BitRead;     ///< of the link, when the verdict fell
    Clock::Time first;             ///< when its first byte went or came
    Clock::Time last;
    Bytes bytes;                                ///< the first of them, see Trace::mostLineBytes
    std::size_t size = 0;                       ///< bytes that there were
    int expected = 0;                           ///< bytes that the awaited answer has, 0 where none is
    std::size_t came = 0;                       ///< bytes that were read together, of this line and of others
    std::optional<std::uint64_t> partner;       ///< number of the line that it answers, or that answers it
    std::optional<std::size_t> pair;            ///< row of the prepared pair
    std::shared_ptr<const Bytes> request;       ///< what it may be the answer to
    std::shared_ptr<const NearestPair> nearest; ///< of an unknown request
    std::shared_ptr<const std::string> note;    ///< why, or how the port was opened
};

/// The frames of a line, with what is known of their request.
std::vector<DecodedFrame> framesOf(const TraceLine& line);

/// What went over the line, the latest lines of it: who shows them reads them by their numbers, where they
/// stand.
///
/// A line keeps its number; the number of the oldest that is left rises. Nobody is told line by line: a
/// change wakes the watcher up once, and again when it has taken the news.
class Trace {
public:
    using Number = std::uint64_t;

    static constexpr std::size_t mostLines = 100'000;
    static constexpr std::size_t mostLineBytes = 2048;               ///< that a line keeps
    static constexpr std::size_t mostBytes = std::size_t{32} << 20U; ///< that all of them keep

    /// What has changed since it was asked for last.
    struct News {
        Number begin = 0;        ///< lines before this one are gone
        Number end = 0;          ///< lines from where it was before up to here are new
        Number changedBegin = 0; ///< of older ones, these may have changed; none where both are equal
        Number changedEnd = 0;
    };

    Number begin() const { return begin_; }
    Number end() const { return begin_ + lines_.size(); }
    std::size_t size() const { return lines_.size(); }
    /// nullptr where the line is gone, or not there yet; good until the trace changes.
    const TraceLine* find(Number number) const;
    /// The latest line, or nullptr.
    const TraceLine* latest() const { return lines_.empty() ? nullptr : &lines_.back(); }

    Number append(TraceLine line);
    /// Changes a line, if it still is there.
    template <typename Edit>
    void change(Number number, Edit&& edit) {
        if (TraceLine* const line = lineOf(number)) {
            const std::size_t before = line->bytes.size();
            edit(*line);
            line->isDamaged.reset();
            noteChange(number, line->bytes.size() - before);
        }
    }
    void mark(Number number, bool isMarked);
    void clear();

    /// Whether something is wrong with a line: its verdict, or its frames.
    bool isWrong(Number number) const;

    /// Rises with every change.
    std::uint64_t changes() const { return changes_; }
    /// Runs on the interface thread when there is news, and not again until they are taken.
    void setWakeUp(std::function<void()> wakeUp) { wakeUp_ = std::move(wakeUp); }
    News takeNews();

    /// Ties the clock of the lines to the time of day.
    void setTimeOfDay(Clock::Time time, std::chrono::system_clock::time_point timeOfDay);
    std::chrono::system_clock::time_point timeOfDay(Clock::Time time) const;

private:
    TraceLine* lineOf(Number number) const;
    void noteChange(Number number, std::size_t moreBytes);
    void dropOldest();
    void wakeUp();

    mutable std::deque<TraceLine> lines_; ///< isDamaged is looked up when it is asked for
    Number begin_ = 0;
    std::size_t bytes_ = 0; ///< that the lines keep
    News news_;
    bool isTold_ = false;
    std::uint64_t changes_ = 0;
    std::function<void()> wakeUp_;
    Clock::Time time_;
    std::chrono::system_clock::time_point timeOfDay_;
};

} // namespace varda::core
