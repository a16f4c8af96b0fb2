#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace varda::inline core {

/// The one reading of a number typed by a person.
///
/// Takes decimal digits with an optional sign, or "&H" (either case) and hexadecimal digits; blanks around
/// the number are dropped. "&H8000" to "&HFFFF" are the negative numbers of the same 16 bits.
/// @return the number, -32768 .. 32767
/// @throws RuntimeError 13 where the text is no number (an empty one included), 6 where it does not fit 16
/// bits
std::int16_t toInteger(std::string_view text);

/// The same reading for the wider numbers of files and periods: -2147483648 .. 2147483647.
/// "&H" numbers of up to four digits stay 16-bit numbers, as in toInteger.
/// @throws RuntimeError as toInteger does
std::int32_t toLong(std::string_view text);

/// The same readings of a field of the screen or of a file, which the advice of an error names.
std::int16_t toInteger(std::string_view text, std::string_view field);
std::int32_t toLong(std::string_view text, std::string_view field);

/// The same readings for those who have an answer to a text that is no such number.
std::optional<std::int16_t> readInteger(std::string_view text);
std::optional<std::int32_t> readLong(std::string_view text);

/// A number of decimal digits alone, without sign and blanks; nothing where it has anything else, or more
/// than 32 bits.
std::optional<std::uint32_t> readDigits(std::string_view text);

/// Narrows a sum or product of 16-bit numbers back to 16 bits.
/// @throws RuntimeError 6 outside -32768 .. 32767
std::int16_t toInteger16(std::int64_t value);

/// Narrows to the 8-bit counts that frame lengths are kept in.
/// @throws RuntimeError 6 outside 0 .. 255
std::uint8_t toByte(std::int64_t value);

} // namespace varda::core
