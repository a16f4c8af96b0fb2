#pragma once

#include "core/protocol/frame_image.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace varda::inline core {

/// Station texts of a mixed page, as typed.
struct StationTexts {
    std::string destination;
    std::string source;
};

/// Marks a word address of a mixed request in the high byte of the address; bit addresses bear no mark.
constexpr std::uint8_t wordMark = 0x40;

/// Told of each line before it is read, so that the list can show which one a failure came from.
using LineVisitor = std::function<void(std::size_t line)>;

/// Writes the body of a mixed read from its point list: an address for each bit or word wanted, in list
/// order.
///
/// A point is added only while LEN is below 255; LEN is an 8-bit count, so the 128th point is the overflow
/// error.
/// @throws RuntimeError 6, 13 for a line that cannot be read
void MakeMRDataFormat(FrameImages& images, std::span<const std::string> lines, const LineVisitor& visit = {});

/// Body length that the list calls for, an 8-bit sum; 0 where it disagrees with LEN in the image.
/// @throws RuntimeError 6 above 255, 13
std::uint8_t CheckMRLength(const FrameImages& images, std::span<const std::string> lines);

/// Completes the header and the frame check of the mixed read image. @throws as CheckMRLength does
void MakeMReadFormat(FrameImages& images, const StationTexts& stations, std::span<const std::string> lines);

std::string DisplayMRString(FrameImages& images);

/// Writes the body of a mixed write: three bytes for each bit, four for each word, in list order. A bit is
/// left out where LEN + 3 would exceed 252, a word where LEN + 4 would exceed 251.
/// @throws RuntimeError 6, 13 for a line that cannot be read
void MakeMWDataFormat(FrameImages& images, std::span<const std::string> lines, const LineVisitor& visit = {});

/// As CheckMRLength, for the mixed write image.
std::uint8_t CheckMWLength(const FrameImages& images, std::span<const std::string> lines);

/// Completes the header and the frame check of the mixed write image. @throws as CheckMWLength does
void MakeMWriteFormat(FrameImages& images, const StationTexts& stations, std::span<const std::string> lines);

std::string DisplayMWString(FrameImages& images);

/// A mixed request as it goes on the wire: LEN + 7 bytes, one more than the frame has.
/// @param code command::mixedRead or command::mixedWrite
Bytes mixedWire(FrameImages& images, std::uint8_t code);

} // namespace varda::core
