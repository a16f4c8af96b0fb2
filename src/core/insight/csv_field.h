#pragma once

#include <string>
#include <string_view>

namespace varda::inline core {

/// A field of a CSV file, in double quotes where it needs them.
std::string csvField(std::string_view text);

} // namespace varda::core
