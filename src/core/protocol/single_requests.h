#pragma once

#include "core/protocol/frame_image.h"
#include "core/protocol/registers.h"

#include <functional>
#include <optional>
#include <string>

namespace varda::inline core {

/// Completes the read image: command, LEN 3, frame check, empty texts made "00".
/// @param access none leaves command and check as they stand
void MakeReadFormat(FrameImages& images, std::optional<Access> access);

/// The read request as shown: nine groups, each followed by a space.
std::string DisplayRString(FrameImages& images);

/// Writes the count of a read: 1 .. 255 as it is, 0 and 256 as 0x00; any other leaves the image as it was.
void setReadCount(FrameImages& images, int count);

/// The read request as it goes on the wire: the whole row of nine bytes.
Bytes readWire(const FrameImages& images);

/// Length in bytes of the answer to a read. @param countByte the count as sent, 0 standing for 256
int readAnswerLength(Access access, std::uint8_t countByte);

/// Length in bytes of the answer to any write: the acknowledgement has a body of one byte.
constexpr int writeAnswerLength = frame_size::envelope + frame_size::acknowledgementBody;

/// Body bytes of a single write of `count` bits or words: the address and the data.
int writeBodyLength(Access access, int count);

/// The highest count of a single write.
constexpr int writeLimit(Access access) { return access == Access::Bit ? bitWriteLimit : wordWriteLimit; }

/// Whether a count sets LEN: 0 .. limit, and 256, which is taken as 0. Any other leaves LEN and data as they
/// are.
bool isWriteCount(Access access, int count);

/// Bits or words of data that the write image holds by its LEN.
int framedWriteCount(const FrameImages& images, Access access);

/// Writes LEN for a new count and resets the data entries that it covers. 0 and 256 make LEN 0; any other
/// count out of range leaves LEN and data.
void setWriteCount(FrameImages& images, Access access, int count);

/// Completes the write image: command, LEN, frame check, empty texts made "00".
/// @param count bits or words; LEN stays as it is where isWriteCount does not hold
void MakeWriteFormat(FrameImages& images, Access access, int count);

/// The write request as shown, up to its frame check.
std::string DisplayWString(FrameImages& images);

/// The write request as it goes on the wire: LEN + 6 bytes.
Bytes writeWire(const FrameImages& images);

/// Writes ON or OFF as data byte `index` of a bit write (from 0).
void setWriteBit(FrameImages& images, std::size_t index, bool on);

/// Writes `value` (0 .. 65535) as data word `index` of a word write (from 0), low byte first.
void setWriteWord(FrameImages& images, std::size_t index, int value);

/// Data word `index` of a word write (from 0), 0 .. 65535.
int writeWord(const FrameImages& images, std::size_t index);

/// Whether data byte `index` of a bit write (from 0) is ON.
bool isWriteBitOn(const FrameImages& images, std::size_t index);

/// Empties the write image for another access: everything from LEN on is "00"; stations and command stay.
void clearWriteRequest(FrameImages& images);

/// Fills the data with LEN - 2 random words of 1 .. 65535.
/// @param random draws a number of at least 0 and below 1
void fillRandomWords(FrameImages& images, const std::function<double()>& random);

} // namespace varda::core
