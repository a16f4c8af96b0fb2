#pragma once

#include "core/pairs/packet_table.h"
#include "core/recordings/recording.h"

#include <cstddef>
#include <string>
#include <vector>

namespace varda::inline core {

/// The lines of a scenario that asks as the recording did, in its order.
std::vector<std::string> scenarioOf(const Recording& recording);

/// What is to be expected of each of these lines: the bytes of the answer, or silence.
std::vector<std::string> expectationsOf(const Recording& recording);

/// Prepared pairs of a recording.
struct RecordedPairs {
    std::vector<std::string> requests; ///< each once
    std::vector<std::string> answers;  ///< the first one that each got
    std::size_t unanswered = 0;        ///< requests that never were; they are left out
    std::size_t changing = 0;          ///< requests that were answered otherwise later
};
RecordedPairs pairsOf(const Recording& recording);

} // namespace varda::core
