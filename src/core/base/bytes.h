#pragma once

#include <cstdint>
#include <vector>

namespace varda::inline core {

/// What goes over a line, in order.
using Bytes = std::vector<std::uint8_t>;

} // namespace varda::core
