#include "core/link/period.h"

#include "core/base/conversion.h"
#include "core/base/period_timer.h"
#include "core/base/runtime_error.h"
#include "core/link/form.h"

#include <optional>
#include <string>

namespace varda::inline core {
namespace {

std::optional<int> typedPeriod(const std::string& text) {
    try {
        return toInteger(text);
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

} // namespace

void takePeriod(Form& form, PeriodTimer& tmrComm, std::string_view periodField) {
    tmrComm.stop();
    const std::optional<int> typed = typedPeriod(form.text(periodField));
    int period = typed.value_or(startPeriod);
    if (period < shortestPeriod) {
        period = shortestPeriod;
    }
    if (period > longestPeriod) {
        period = longestPeriod; // kept: a 16-bit number never gets here
    }
    if (period != typed) {
        form.setText(periodField, std::to_string(period));
    }
    tmrComm.setInterval(period);
    tmrComm.start();
}

} // namespace varda::inline core
