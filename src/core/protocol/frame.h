#pragma once

#include "core/protocol/registers.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace varda::inline core {

// A frame: DA, SA, CMD, LEN, LEN body bytes, frame check low, frame check high. This file is the one place
// that knows its offsets, its sizes and the codes of its commands.

/// Offsets of the fields that every request frame shares.
namespace offset {
constexpr std::size_t destination = 0; ///< DA
constexpr std::size_t source = 1;      ///< SA
constexpr std::size_t command = 2;     ///< CMD
constexpr std::size_t length = 3;      ///< LEN, number of body bytes
constexpr std::size_t body = 4;
constexpr std::size_t address = 4; ///< single requests: low byte, then high byte
constexpr std::size_t count = 6;   ///< single reads
constexpr std::size_t data = 6;    ///< single writes
} // namespace offset

/// Sizes in bytes.
namespace frame_size {
constexpr std::size_t header = offset::body;
constexpr std::size_t check = 2;
constexpr std::size_t envelope = header + check; ///< everything but the body
constexpr std::size_t address = 2;
constexpr std::size_t readBody = address + 1;  ///< address and count
constexpr std::size_t acknowledgementBody = 1; ///< of the answer to a write
} // namespace frame_size

/// Request codes.
namespace command {
constexpr std::uint8_t bitRead = 0x21;
constexpr std::uint8_t bitWrite = 0x22;
constexpr std::uint8_t wordRead = 0x23;
constexpr std::uint8_t wordWrite = 0x24;
constexpr std::uint8_t mixedRead = 0x25;
constexpr std::uint8_t mixedWrite = 0x26;
} // namespace command

/// What the code of an answer has more than the code of its request.
constexpr std::uint8_t answerMark = 0x80;

/// What a request code asks for. A read is answered by its values, a write by an acknowledgement.
struct Command {
    std::uint8_t code;
    std::optional<Access> access; ///< none: bits and words in one request, each says itself what it is
    bool writes;
};

/// The six commands in the order of their codes.
std::span<const Command> commands();

/// The command of a request code, or nullptr.
const Command* findCommand(std::uint8_t code);

/// Bytes that one value takes in a body: 1 for a bit, 2 for a word.
constexpr int valueSize(Access access) { return access == Access::Word ? 2 : 1; }

/// Bits or words that the count byte of a single read asks for.
constexpr int countOfByte(int countByte) { return countByte == 0 ? 256 : countByte; }

/// Bytes of an answer to a single read. @param count bits or words, 0 .. 256
constexpr int readAnswerSize(Access access, int count) {
    return valueSize(access) * count + static_cast<int>(frame_size::envelope);
}

/// The number that two bytes carry, low byte first. @param at the low one's place; both are in there
constexpr int lowHigh(std::span<const std::uint8_t> bytes, std::size_t at) {
    return bytes[at] + 256 * bytes[at + 1];
}

/// A frame in the bytes that it was found in, which must outlive it.
struct Frame {
    std::uint8_t destination;
    std::uint8_t source;
    std::uint8_t code;
    std::span<const std::uint8_t> body;

    std::size_t size() const { return frame_size::envelope + body.size(); }
};

/// The frame that some bytes begin with; more may follow it.
///
/// LEN has one byte: of an answer that carries more than 255 bytes no frame is found.
/// @return nothing where the bytes end before LEN says, or the check is not that of the frame
std::optional<Frame> parse(std::span<const std::uint8_t> bytes);

} // namespace varda::core
