#pragma once

#include <functional>
#include <string_view>

namespace varda::inline core {

class PeriodTimer;

/// Periods in milliseconds.
inline constexpr int shortestPeriod = 100; ///< of the communication timer
inline constexpr int longestPeriod = 65535;
inline constexpr int startPeriod = 500; ///< also where a text is no number

/// Takes over a typed period as the interval of the communication timer and starts the timer, port open or
/// not.
///
/// A number below the shortest becomes 100, a text that is no 16-bit number becomes 500; the field is
/// rewritten at once, at the first digit of a number that is typed digit by digit.
/// @param rewrite shows another period in place of the typed one; the timer stands still meanwhile
void takePeriod(PeriodTimer& tmrComm, std::string_view typed, const std::function<void(int period)>& rewrite);

} // namespace varda::inline core
