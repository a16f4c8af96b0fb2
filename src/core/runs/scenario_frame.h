#pragma once

#include "core/base/bytes.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace varda::inline core {

/// Number of two-digit groups in a line of so many characters, whether or not it ends in a space.
int groupCount(std::size_t characters);

/// Reads `count` bytes from the places 0, 3, 6, .. of a text, two digits each; blanks beside a digit are
/// dropped.
///
/// A text whose stations show as one digit does not stand in steps of three places, so other bytes are read
/// from it.
/// @throws RuntimeError 13 where a place holds no hexadecimal digit
Bytes HexTextToBytes(std::string_view text, int count);

/// The bytes of a scenario line. @throws RuntimeError 13
Bytes scenarioFrame(std::string_view line);

/// Length of the answer to a scenario frame, by its command byte; nothing for a command other than the four
/// single requests.
///
/// A count byte of 0 expects an answer without data.
/// @throws RuntimeError 9 where the frame is too short to hold the bytes that are looked at
std::optional<int> scenarioAnswerLength(const Bytes& frame);

} // namespace varda::core
