#include "core/runs/scenario_run.h"

#include "core/base/conversion.h"
#include "core/base/period_timer.h"
#include "core/base/runtime_error.h"
#include "core/link/period.h"
#include "core/runs/scenario_frame.h"

#include <utility>

namespace varda::inline core {
namespace {

constexpr std::size_t shownOfLine = 40; ///< characters that name a line

} // namespace

int scenarioPeriod(std::string_view text) {
    const int period = toLong(text, "Send Period");
    if (period < 0 || period > longestPeriod) {
        RuntimeError error = invalidPropertyValue();
        error.advise("Send Period \"" + std::string(text) + "\" is out of range: 0 to " +
                     std::to_string(longestPeriod) + " milliseconds.");
        throw error;
    }
    return period;
}

void ScenarioRun::start(std::string_view period) {
    sent_.reset();
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
    due_ = row < 0 ? std::nullopt : std::optional(row);
    return due_ ? std::optional(lines_.line(*due_)) : std::nullopt;
}

void ScenarioRun::send(const std::string& line) {
    const auto [frame, answerLength] = advised(
        [&line] {
            Bytes bytes = scenarioFrame(line);
            const std::optional<int> expected = scenarioAnswerLength(bytes);
            return std::pair(std::move(bytes), expected);
        },
        [&line](const RuntimeError& /*error*/) {
            return '"' + line.substr(0, shownOfLine) +
                   "\" is no frame: groups of two hexadecimal digits. Remove this line of the scenario.";
        });
    const bool wasSilenceExpected = isSilenceExpected();
    sent_ = due_;
    if (wasSilenceExpected || isSilenceExpected()) { // each has its ticks for itself
        link_.restartSilence();
    }
    link_.sendScenarioFrame(frame, answerLength);
}

} // namespace varda::core
