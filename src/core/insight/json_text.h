#pragma once

#include <string>
#include <string_view>

namespace varda::inline core {

/// A text as JSON has it, with the quotes round it. Bytes that are no UTF-8 become U+FFFD.
std::string jsonString(std::string_view text);

} // namespace varda::core
