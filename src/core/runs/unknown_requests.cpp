#include "core/runs/unknown_requests.h"

#include "core/protocol/hex_text.h"

namespace varda::inline core {

bool UnknownRequests::note(const Exchange& exchange) {
    const bool isKnown = exchange.outcome == Outcome::AnsweredFromMemory;
    if (!isKnown && exchange.outcome != Outcome::Unknown) {
        return false;
    }
    const std::string text = hexRun(exchange.request);
    const auto found = rows_.find(text);
    if (found == rows_.end() && requests_.size() == mostKept) {
        ++others_;
        return true;
    }
    const std::size_t row = found != rows_.end() ? found->second : requests_.size();
    if (row == requests_.size()) {
        requests_.push_back({exchange.request, 0, false});
        rows_.emplace(text, row);
    }
    UnknownRequest& request = requests_[row];
    ++request.count;
    request.isAnswered = isKnown && !isRefusedFromMemory(exchange);
    request.notSent += isRefusedFromMemory(exchange) ? 1 : 0;
    return true;
}

void UnknownRequests::forget(std::span<const std::uint8_t> request) {
    const auto found = rows_.find(hexRun(request));
    if (found == rows_.end()) {
        return;
    }
    const std::size_t row = found->second;
    requests_.erase(requests_.begin() + static_cast<std::ptrdiff_t>(row));
    rows_.erase(found);
    for (auto& [text, later] : rows_) {
        later -= later > row ? 1 : 0;
    }
}

} // namespace varda::core
