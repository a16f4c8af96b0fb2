#pragma once

#include <string_view>

namespace varda::inline core {

class Form;
class PeriodTimer;

/// Periods in milliseconds.
inline constexpr int shortestPeriod = 100; ///< of the communication timer
inline constexpr int longestPeriod = 65535;
inline constexpr int startPeriod = 500; ///< also where a text is no number

/// Takes over a changed period field as the interval of the communication timer and starts the timer, port
/// open or not.
///
/// A number below the shortest becomes "100", a text that is no 16-bit number becomes "500"; the field is
/// rewritten at once, at the first digit of a number that is typed digit by digit.
void takePeriod(Form& form, PeriodTimer& tmrComm, std::string_view periodField);

} // namespace varda::inline core
