#pragma once

#include "core/link/line.h"

#include <span>
#include <vector>

namespace varda::device {

/// What came in and waits to be read, with the times of its arrival. It never grows beyond a limit: who fills
/// it stops while it is full, and goes on when it has been read.
class InputBuffer {
public:
    using Time = Arrival::Time;

    /// More than any line brings in the waits between two reads.
    static constexpr std::size_t limit = std::size_t{1} << 20U;
    /// Pieces whose times are told apart; what comes in more of them is told with the last one.
    static constexpr std::size_t mostArrivals = 4096;

    void append(std::span<const std::uint8_t> piece, Time arrival);

    /// Until it is read or cleared, the buffer keeps no more than its first `most` bytes; further ones are
    /// counted.
    void keepFirst(std::size_t most);

    /// Bytes that came in, the counted ones among them.
    std::size_t count() const { return count_; }
    bool isFull() const { return most_ == limit && kept_.size() >= limit; }

    /// Empties the buffer. @return what it kept, in order
    Burst take();
    void clear();

    /// What it keeps behind the first `from` bytes, which stays there.
    Burst look(std::size_t from) const;

private:
    Bytes kept_;
    std::size_t count_ = 0;
    std::size_t most_ = limit;
    std::vector<Arrival> arrivals_;
};

} // namespace varda::device
