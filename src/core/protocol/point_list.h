#pragma once

#include "core/base/runtime_error.h"
#include "core/protocol/registers.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace varda::inline core {

/// One line of a mixed page's point list, cut into its fields.
struct PointLine {
    std::optional<Access> access; ///< none where the line has neither tag
    std::string kind;             ///< one character, see parsePointLine
    int number;                   ///< register number
    int bit;                      ///< first bit, 0 for words
    std::string value;            ///< text behind the last TAB: a count, "ON" or "OFF", or hexadecimal digits
};

/// "BIT", TAB, kind and number "." bit, TAB, value.
std::string bitPointLine(std::string_view kind, std::string_view number, std::string_view bit,
                         std::string_view value);

/// "WORD", TAB, kind and number, TAB, value.
std::string wordPointLine(std::string_view kind, std::string_view number, std::string_view value);

/// The point that a line names, as in "SR 000" or "R 0012.3".
std::string pointName(std::string_view line);

/// What helps where a point cannot be read, or makes a request too long. @param number of the error
std::string pointAdvice(int number, std::string_view line);

/// Takes one point of a list; the advice of an error names it.
template <typename Step>
decltype(auto) takingPoint(std::string_view line, Step&& step) {
    return advised(std::forward<Step>(step),
                   [line](const RuntimeError& error) { return pointAdvice(error.number(), line); });
}

/// The text behind a line's last TAB.
std::string_view pointValue(std::string_view line);

/// Cuts a line that is not empty.
///
/// The kind is the one character behind the first TAB, so the number of a two-letter kind begins with a
/// letter.
/// @throws RuntimeError 13 for such a kind and for any number that is none
PointLine parsePointLine(std::string_view line);

/// 8-bit sum over all lines that are not empty: `perBit` for each bit line, `perWord` for each word line.
/// @throws RuntimeError 6 above 255
std::uint8_t GetListDataLength(std::span<const std::string> lines, int perBit = 1, int perWord = 2);

/// Data bytes of the answer to a mixed read: 8-bit sum of one byte per bit and two per word.
/// @throws RuntimeError 6 above 255, 13 for a count that is no number
std::uint8_t GetMRAnswerLength(std::span<const std::string> lines);

/// A list takes a further line of any size while it stands below this sum; the new line's own size is not
/// part of the test.
constexpr int fullPointList = 254;

} // namespace varda::core
