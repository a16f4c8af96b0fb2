#pragma once

#include <string_view>

namespace varda::inline core {

/// Periods in milliseconds.
inline constexpr int shortestPeriod = 100; ///< of the communication timer
inline constexpr int longestPeriod = 65535;
inline constexpr int startPeriod = 500; ///< also where a text is no number

/// The period of the communication timer that a text stands for: no less than the shortest, the start period
/// where it is no 16-bit number. @return milliseconds
int periodOf(std::string_view text);

} // namespace varda::core
