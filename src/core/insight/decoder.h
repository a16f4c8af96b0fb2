#pragma once

#include "core/protocol/frame.h"
#include "core/protocol/register_words.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace varda::inline core {

/// What a frame is: a request or an answer of one of the commands, or nothing of this protocol.
struct FrameKind {
    const Command* command = nullptr; ///< nullptr where the code is no command's
    bool isAnswer = false;

    bool isRequest() const { return command != nullptr && !isAnswer; }
    bool operator==(const FrameKind&) const = default;
};

/// The kind that a code stands for.
FrameKind kindOfCode(std::uint8_t code);
/// The kind of a frame by its code alone; unknown where it is too short to have one.
FrameKind kindOf(std::span<const std::uint8_t> frame);

/// What a part of a frame is for.
enum class FieldRole : std::uint8_t {
    Destination,
    Source,
    Command,
    Length,
    Address,
    Count,
    Value,
    Acknowledgement,
    Body, ///< bytes of the body that cannot be told apart
    Check,
    Behind ///< what follows the frame
};

/// A part of a frame. The fields of a frame cover all of its bytes, in order.
struct Field {
    FieldRole role = FieldRole::Body;
    std::size_t place = 0;  ///< of its first byte
    std::size_t length = 0; ///< bytes of it that are there, at least one
    std::size_t whole = 0;  ///< bytes that it has where nothing is cut off
    int number = 0; ///< low byte first, of what is there; 0 for parts that are no number (Body, Behind)
    std::optional<Access> access; ///< of an address, a count or a value
    std::optional<Point> point;   ///< what the address or the value is about; none for an unnamed value
    std::size_t index = 0;        ///< of a value among the values of its frame

    bool isCut() const { return length < whole; }
    bool operator==(const Field&) const = default;
};

/// What may be wrong with a frame.
enum class Fault : std::uint8_t {
    Cut,            ///< bytes are missing at the end
    WrongLength,    ///< LEN is not the number of the body's bytes
    WrongBody,      ///< the body is not as long as this kind, or the request, calls for
    WrongCheck,     ///< the frame check is another one
    UnknownCommand, ///< the code is no command's
    MoreBytes       ///< bytes follow that belong to nothing
};

/// A frame taken apart, as far as its bytes go.
struct DecodedFrame {
    FrameKind kind;
    std::vector<Field> fields;
    std::vector<Fault> faults;             ///< in the order of Fault; none for a frame without a flaw
    bool answersRequest = false;           ///< the registers of its values are those of the request
    bool isPart = false;                   ///< some of its bytes stand elsewhere, see framesOf()
    std::size_t begin = 0;                 ///< place of DA in what was decoded
    std::size_t end = 0;                   ///< place behind its last byte
    std::size_t bodyLength = 0;            ///< bytes of the body, those that were cut off included
    std::optional<std::size_t> bodyWanted; ///< what the kind or the request calls for, where they do
    std::size_t missing = 0;               ///< bytes that a cut frame lacks, at least
    int checkRight = 0;                    ///< what the check should be; means nothing in a cut frame

    bool has(Fault fault) const;
    bool isSound() const { return faults.empty(); }
    /// The field that a byte belongs to; nullptr where there is no such byte.
    const Field* fieldAt(std::size_t place) const;
    /// The first field of a role, or nullptr.
    const Field* find(FieldRole role) const;
};

/// Bits or words that lie side by side.
struct PointRun {
    Point first;
    int count = 0;

    bool operator==(const PointRun&) const = default;
};

/// What a frame speaks of, in its order: what a request asks for or writes, what an answer brings. None for
/// an answer whose request is not known.
std::vector<PointRun> runsOf(const DecodedFrame& frame);

/// Every bit and word of these, one by one.
std::vector<Point> pointsOf(const std::vector<PointRun>& runs);

/// Takes the first frame of some bytes apart, as far as they go.
///
/// The length of a frame is where its check is right: as LEN says; of an answer of more than 255 body bytes
/// what LEN is the low byte of; of a frame with another LEN all there is. The one byte that follows a mixed
/// request is no fault.
/// @param request what these bytes may be the answer to; an empty one leaves the values unnamed
DecodedFrame decode(std::span<const std::uint8_t> bytes, std::span<const std::uint8_t> request = {});

/// Takes all frames of a burst apart: a sound frame may be followed by another one, which may be its answer.
/// @return at least one frame where there is a byte; their places are those in the burst
std::vector<DecodedFrame> decodeBurst(std::span<const std::uint8_t> bytes,
                                      std::span<const std::uint8_t> request = {});

} // namespace varda::core
