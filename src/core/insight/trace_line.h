#pragma once

#include "core/base/bytes.h"
#include "core/base/clock.h"
#include "core/insight/decoder.h"
#include "core/insight/nearest_pair.h"
#include "core/link/routes.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
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
    NotAnswered,   ///< the port was closed, or the line went away, before an answer came
    Overtaken,     ///< the next request went out, or the link went on to something else, before that
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
    // of both
    Unseen, ///< nobody was looking any more when something became of it
    // of events
    Opened,
    Closed,
    HungUp,
    Silence,       ///< the wait for an answer was given up
    NothingToRead, ///< the port told of bytes, and none were there
    OnPurpose      ///< a fault of our own doing, to what is sent next
};

inline constexpr int verdictCount = static_cast<int>(Verdict::OnPurpose) + 1;

/// What a line is of all that was read, or thrown away, together: a pause parts lines, and the program may
/// not notice it.
struct PartOfRead {
    std::uint64_t read = 0;             ///< number of the read
    std::size_t number = 1;             ///< of the part, from 1
    std::size_t parts = 1;              ///< that the read has
    std::size_t place = 0;              ///< of its first byte among those of the read
    std::shared_ptr<const Bytes> whole; ///< the bytes of all parts; nullptr where not all of them are kept
};

/// One burst that went over the line, or an event.
struct TraceLine {
    Direction direction = Direction::Event;
    Verdict verdict = Verdict::Unread;
    bool isMarked = false;
    bool whileStuck =
        false; ///< it came while the link's timer stood still, since an event that led to nothing
    bool afterUnknown = false;   ///< and that event was a request that no pair answers
    std::optional<bool> isWrong; ///< once somebody has asked, see Trace::isWrong
    Mode mode = Mode::BitRead;   ///< of the link, when the verdict fell
    Clock::Time first;           ///< when its first byte went or came
    Clock::Time last;
    std::chrono::system_clock::time_point timeOfDay; ///< of `first`; Trace::append writes it
    Bytes bytes;                                     ///< the first of them, see Trace::mostLineBytes
    std::size_t size = 0;                            ///< bytes that there were
    int expected = 0;                                ///< bytes that the awaited answer has, 0 where none is
    std::size_t came = 0;                            ///< bytes of its read, of this line and of others
    std::shared_ptr<const PartOfRead> part;          ///< where it was read together with others
    std::optional<std::uint64_t> partner;       ///< number of the line that it answers, or that answers it
    std::optional<std::size_t> pair;            ///< row of the prepared pair
    std::shared_ptr<const Bytes> request;       ///< what it may be the answer to
    std::shared_ptr<const NearestPair> nearest; ///< of an unknown request
    std::shared_ptr<const std::string> note;    ///< why, or how the port was opened
};

/// Whether two lines are parts of one read.
bool isSameRead(const TraceLine& left, const TraceLine& right);

/// All that was read with a line, as far as it is kept; for most lines their own bytes.
const Bytes& readBytes(const TraceLine& line);
/// How many bytes there were of what readBytes() gives.
std::size_t readSize(const TraceLine& line);

/// What a line is explained by: all that was read with it, or its own bytes where these are a frame by
/// themselves and the whole read is none, with noise in another part of it for example.
const Bytes& explainedBytes(const TraceLine& line);
/// How many bytes there were of what explainedBytes() gives.
std::size_t explainedSize(const TraceLine& line);

/// The frames of a line, with what is known of their request. Of a frame that goes beyond the line all fields
/// are there but the values and the addresses of a mixed request in other parts of the read, with their
/// places in explainedBytes().
std::vector<DecodedFrame> framesOf(const TraceLine& line);

/// What is odd about the bytes of a line: sentences, each with a blank before it.
std::string remarksOn(const TraceLine& line);

/// Whether something is wrong with a line: its verdict, its frames, or what it is taken for.
bool isWrong(const TraceLine& line);

} // namespace varda::core
