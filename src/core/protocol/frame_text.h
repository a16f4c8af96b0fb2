#pragma once

#include "core/base/bytes.h"

#include <cstddef>
#include <string_view>

namespace varda::inline core {

/// The bytes of a frame text of either form: groups with a space behind each, or two digits for every byte
/// run together. What follows the first group that is no byte is left out.
Bytes bytesOfText(std::string_view text);

/// The byte of a frame text to which the character at `place` belongs; a space belongs to the group before
/// it.
std::size_t byteAt(std::string_view text, std::size_t place);

} // namespace varda::core
