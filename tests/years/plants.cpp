#include "years/year.h"

#include <algorithm>
#include <array>

namespace varda::years {
namespace {

/// In the order of Plant.
constexpr std::array<std::string_view, 6> plantNames = {"none",     "altered",   "invented",
                                                        "withheld", "lost-wait", "leak"};

} // namespace

std::optional<Plant> plantOf(std::string_view name) {
    const auto* const found = std::ranges::find(plantNames, name);
    return found == plantNames.end() ? std::nullopt
                                     : std::optional(static_cast<Plant>(found - plantNames.begin()));
}

std::string_view nameOf(Plant plant) { return plantNames.at(static_cast<std::size_t>(plant)); }

/// Each shows after a while, once.
void Year::plantFault(Plant plant) {
    untilPlant_ = 1000;
    const auto isDue = [this] { return untilPlant_ > 0 && --untilPlant_ == 0; };
    if (plant == Plant::Altered) {
        plants_.meddler = [isDue](Bytes& bytes) {
            if (isDue()) {
                bytes.back() ^= 1U;
            }
        };
    } else if (plant == Plant::Invented) {
        plants_.ear = [isDue](Exchange& exchange) {
            if (exchange.outcome == Outcome::Answered && isDue()) {
                exchange.answer.back() ^= 1U;
            }
            return true;
        };
    } else if (plant == Plant::Withheld) {
        plants_.ear = [isDue](const Exchange& exchange) {
            return exchange.outcome != Outcome::Answered || !isDue();
        };
    } else if (plant == Plant::LostWait) {
        clock_.loseWait(untilPlant_);
    }
}

} // namespace varda::years
