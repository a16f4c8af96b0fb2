#include "core/runs/scenario_run.h"

#include "core/base/conversion.h"
#include "core/base/period_timer.h"
#include "core/base/runtime_error.h"
#include "core/link/period.h"
#include "core/runs/scenario_frame.h"

namespace varda::inline core {

int scenarioPeriod(std::string_view text) {
    const int period = toLong(text);
    if (period < 0 || period > longestPeriod) {
        throw invalidPropertyValue();
    }
    return period;
}

void ScenarioRun::start(std::string_view period) {
    lines_.choose(0);
    link_.enterMode(Mode::Scenario);
    setPeriod(period);
    tmrScenario_.start();
}

void ScenarioRun::setPeriod(std::string_view period) { tmrScenario_.setInterval(scenarioPeriod(period)); }

void ScenarioRun::stop(Mode next) {
    tmrScenario_.stop();
    if (isRunning()) {
        link_.enterMode(next);
    }
}

bool ScenarioRun::isTicking() const { return tmrScenario_.isRunning(); }

std::optional<std::string> ScenarioRun::next() {
    const int row = lines_.current();
    lines_.choose(row + 1 < lines_.count() ? row + 1 : 0);
    return row < 0 ? std::nullopt : std::optional(lines_.line(row));
}

void ScenarioRun::send(const std::string& line) {
    const Bytes frame = scenarioFrame(line);
    link_.sendScenarioFrame(frame, scenarioAnswerLength(frame));
}

} // namespace varda::core
