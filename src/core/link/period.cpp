#include "core/link/period.h"

#include "core/base/conversion.h"
#include "core/base/period_timer.h"

#include <algorithm>

namespace varda::inline core {

void takePeriod(PeriodTimer& tmrComm, std::string_view typed,
                const std::function<void(int period)>& rewrite) {
    tmrComm.stop();
    const std::optional<int> number = readInteger(typed);
    // kept: a 16-bit number is never beyond the longest
    const int period = std::clamp(number.value_or(startPeriod), shortestPeriod, longestPeriod);
    if (period != number) {
        rewrite(period);
    }
    tmrComm.setInterval(period);
    tmrComm.start();
}

} // namespace varda::inline core
