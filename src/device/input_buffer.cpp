#include "device/input_buffer.h"

#include <algorithm>
#include <utility>

namespace varda::device {

/// Without keepFirst() every byte is kept: a last piece may go over the limit, and none follows it.
void InputBuffer::append(std::span<const std::uint8_t> piece, Time arrival) {
    count_ += piece.size();
    if (most_ != limit) {
        piece = piece.first(std::min(piece.size(), most_ - kept_.size()));
    }
    if (piece.empty()) {
        return;
    }
    kept_.insert(kept_.end(), piece.begin(), piece.end());
    if (arrivals_.size() == mostArrivals) {
        arrivals_.back().count += piece.size();
    } else {
        arrivals_.push_back({piece.size(), arrival});
    }
}

void InputBuffer::keepFirst(std::size_t most) {
    most_ = std::min(most, limit - 1);
    if (kept_.size() <= most_) {
        return;
    }
    std::size_t surplus = kept_.size() - most_;
    kept_.resize(most_);
    kept_.shrink_to_fit();
    while (surplus > 0) {
        const std::size_t part = std::min(surplus, arrivals_.back().count);
        surplus -= part;
        arrivals_.back().count -= part;
        if (arrivals_.back().count == 0) {
            arrivals_.pop_back();
        }
    }
}

Burst InputBuffer::look(std::size_t from) const { return burstBehind(from, kept_, arrivals_); }

Burst InputBuffer::take() {
    const std::size_t counted = count_ - kept_.size();
    Burst taken{
        .bytes = std::exchange(kept_, {}), .arrivals = std::exchange(arrivals_, {}), .counted = counted};
    clear();
    return taken;
}

void InputBuffer::clear() {
    kept_.clear();
    arrivals_.clear();
    count_ = 0;
    most_ = limit;
}

} // namespace varda::device
