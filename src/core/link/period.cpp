#include "core/link/period.h"

#include "core/base/conversion.h"

#include <algorithm>

namespace varda::inline core {

int periodOf(std::string_view text) {
    // kept: the longest period limits nothing, for a 16-bit number never gets there
    return std::clamp<int>(readInteger(text).value_or(startPeriod), shortestPeriod, longestPeriod);
}

} // namespace varda::core
