#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace varda::inline core {

class PacketTable;

/// What is wrong, or odd, about a prepared pair.
struct PairFinding {
    std::size_t pair = 0; ///< its row
    std::string problem;  ///< a sentence
    std::string remedy;   ///< a sentence

    bool operator==(const PairFinding&) const = default;
};

/// Looks at every pair as a controller's programmer would: doubled requests, pairs that no request can reach,
/// frames with a flaw, answers that do not go with their request, and requests that this program's own pages
/// never send.
/// @return in the order of the rows
std::vector<PairFinding> lintPairs(const PacketTable& table);

} // namespace varda::core
