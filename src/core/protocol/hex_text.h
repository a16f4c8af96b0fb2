#pragma once

#include "core/base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace varda::inline core {

/// Upper-case hexadecimal digits without leading zeros; a negative number shows the bits of 16 bits (-1 is
/// "FFFF").
/// @param value -32768 .. 65535
std::string hex(int value);

/// The last `digits` digits of hex(value), zero-filled on the left.
std::string hex(int value, std::size_t digits);

/// A byte as two upper-case digits.
std::string_view twoDigits(std::uint8_t byte);

/// Decimal digits of a number of 0 or more, zero-filled on the left to `digits`; longer numbers stay whole.
std::string decimal(int value, std::size_t digits);

/// A frame as the master pages show it: two upper-case digits and one space for every byte, the last one
/// included.
std::string hexGroups(std::span<const std::uint8_t> bytes);
/// The same behind a text, in the room that it has.
void appendHexGroups(std::string& text, std::span<const std::uint8_t> bytes);
/// "01 0A FF": a space between two bytes, and none behind the last one.
std::string hexSpaced(std::span<const std::uint8_t> bytes);

/// A frame as the packet table holds it: two upper-case digits for every byte, run together.
std::string hexRun(std::span<const std::uint8_t> bytes);

/// Reads a text of hexadecimal digits of either case, without prefix, as 0 .. 65535.
/// @throws RuntimeError 13 where it is empty or holds anything else, 6 above 65535
int fromHex(std::string_view text);

/// As fromHex, for one byte. @throws RuntimeError 6 above 255
std::uint8_t byteFromHex(std::string_view text);

/// The bytes of a frame that is written as pairs of hexadecimal digits without separators.
/// @return nothing where the length is odd or a pair is no hexadecimal number
std::optional<Bytes> readHexRun(std::string_view text);

} // namespace varda::core
