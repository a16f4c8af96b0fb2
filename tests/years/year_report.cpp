#include "years/year.h"

#include <string>

namespace varda::years {

std::optional<std::string> Year::finding() const {
    if (!findings_.first()) {
        return std::nullopt;
    }
    return "after " + std::to_string(passed().count()) + " ms, event " + std::to_string(events_) +
           ", scene " + std::to_string(scenes_) + ": " + *findings_.first();
}

std::uint64_t Year::requests() const {
    return programs_[0]->witness().counts().asked + programs_[1]->witness().counts().asked;
}

std::string Year::report() const {
    std::string text = "scenes " + std::to_string(scenes_) + ", healed " + std::to_string(healings_) +
                       ", wholly answered " + std::to_string(answeredScenes_) + ", events " +
                       std::to_string(events_) + ", most waits " + std::to_string(mostPending_) +
                       ", controller answered " + std::to_string(farController_.answered()) + '\n';
    for (const auto& program : programs_) {
        const Counts& counts = program->witness().counts();
        for (std::size_t outcome = 0; outcome < Counts::outcomes; ++outcome) {
            text += std::string(outcome == 0 ? "outcomes: " : ", ") +
                    std::string(inWords(static_cast<Outcome>(outcome))) + ' ' +
                    std::to_string(counts.told.at(outcome));
        }
        text += "; answers again " + std::to_string(counts.again) + ", receptions left open " +
                std::to_string(counts.stuck) + ", reports " + std::to_string(program->reports()) + '\n';
    }
    const Faults& faults = cable_.faults();
    text += "bytes " + std::to_string(cable_.bytes()) + ", altered " + std::to_string(faults.altered) +
            ", lost " + std::to_string(faults.lost) + ", doubled " + std::to_string(faults.doubled) +
            ", babbled " + std::to_string(faults.babbled) + ", bursts split " + std::to_string(faults.split) +
            ", bytes without room " + std::to_string(faults.overflown) + ", unheard " +
            std::to_string(faults.unheard) + ", writes unsent " + std::to_string(faults.unsent) +
            ", calls refused " + std::to_string(faults.refused) + ", hang-ups " +
            std::to_string(faults.hangUps) + '\n';
    text += "memory when warm " + std::to_string(warmMemory_ >> 10) + " KiB, most " +
            std::to_string(mostMemory_ >> 10) + " KiB\n";
    return text;
}

} // namespace varda::years
