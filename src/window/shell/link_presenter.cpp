#include "window/shell/link_presenter.h"

#include "core/protocol/hex_text.h"
#include "window/controls/form.h"
#include "window/shell/page_names.h"

#include <array>
#include <string>

namespace varda::window {
namespace {

constexpr std::array<std::string_view, 3> counterFields = {"txtTotalData", "txtCurrentData",
                                                           "txtWatchDog"}; // in the order of Counter

constexpr std::string_view scenarioSilenceStatus =
    "txtWStatus"; // kept: a scenario's silence is told on the write page
constexpr std::string_view closedSimulationStatus = "txtMRStatus"; // kept: told on the mixed read page

} // namespace

void LinkPresenter::told(const Exchange& exchange) {
    switch (exchange.outcome) {
    case Outcome::Answered:
        showAnswer(exchange);
        break;
    case Outcome::Silent:
        showSilence(exchange.mode);
        break;
    case Outcome::NotSent:
        if (exchange.pair) {
            form_.setText(closedSimulationStatus, "Port Closed");
        }
        break;
    default: // is told nowhere
        break;
    }
}

void LinkPresenter::showAnswer(const Exchange& exchange) {
    const std::string shown = hexGroups(exchange.answer);
    if (const PageNames* const page = findPageNames(exchange.mode)) {
        form_.setText(page->completionStatus, answeredStatus);
        form_.setText(page->answer, shown);
    } else {
        form_.setText(scenarioAnswer, shown);
    }
}

void LinkPresenter::showSilence(Mode mode) {
    const PageNames* const page = findPageNames(mode);
    form_.setText(page != nullptr ? page->silenceStatus : scenarioSilenceStatus, "No Answer From PLC");
}

void LinkPresenter::counted(Counter counter, int value) {
    form_.setText(counterFields.at(static_cast<std::size_t>(counter)), std::to_string(value));
}

} // namespace varda::window
