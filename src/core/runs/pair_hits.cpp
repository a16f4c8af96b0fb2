#include "core/runs/pair_hits.h"

#include <algorithm>

namespace varda::inline core {

bool PairHits::note(const Exchange& exchange) {
    const bool isSent = exchange.outcome == Outcome::AnsweredByPair && !exchange.answer.empty();
    if (!isSent || !exchange.pair) {
        return false;
    }
    counts_.resize(std::max(counts_.size(), *exchange.pair + 1));
    ++counts_[*exchange.pair];
    return true;
}

void PairHits::follow(const PacketTableChange& change) {
    if (change.list != PacketTableChange::List::Requests) {
        return;
    }
    if (change.kind == PacketTableChange::Kind::Reset) {
        clear();
    } else if (change.kind == PacketTableChange::Kind::Removed && change.row < counts_.size()) {
        counts_.erase(counts_.begin() + static_cast<std::ptrdiff_t>(change.row));
    } // what is added comes last
}

} // namespace varda::core
