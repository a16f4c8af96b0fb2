#pragma once

#include "core/link/exchange.h"
#include "core/pairs/packet_table.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace varda::inline core {

/// How often each prepared pair has answered, row by row.
class PairHits {
public:
    /// @param exchange any; those that a pair answered are counted, where its answer went out @return whether
    /// it was one
    bool note(const Exchange& exchange);
    /// The table has changed: the counts go along with their rows. A table that is loaded anew begins at 0.
    void follow(const PacketTableChange& change);

    std::uint64_t of(std::size_t row) const { return row < counts_.size() ? counts_[row] : 0; }
    void clear() { counts_.clear(); }

private:
    std::vector<std::uint64_t> counts_; ///< of the first rows; the others have none
};

} // namespace varda::core
