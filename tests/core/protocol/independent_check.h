#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// The frame check computed another way, bit by bit, to hold the program's own against.
namespace varda::test {

using Octets = std::vector<std::uint8_t>;

/// What eight steps of the division by the reflected polynomial leave of a byte.
inline unsigned shiftedOut(unsigned value) {
    for (int step = 0; step < 8; ++step) {
        const bool odd = value % 2 == 1;
        value /= 2;
        if (odd) {
            value ^= 0xA001U;
        }
    }
    return value;
}

/// The frame check of the first `count` bytes.
inline unsigned frameCheck(const Octets& bytes, std::size_t count) {
    unsigned remainder = 0xFFFF;
    for (std::size_t i = 0; i < count; ++i) {
        remainder = shiftedOut(remainder ^ bytes[i]);
    }
    return remainder;
}

inline std::uint8_t low(unsigned value) { return static_cast<std::uint8_t>(value % 256); }
inline std::uint8_t high(unsigned value) { return static_cast<std::uint8_t>(value / 256 % 256); }

/// Header and body with their check behind them.
inline Octets checked(Octets frame) {
    const unsigned check = frameCheck(frame, frame.size());
    frame.push_back(low(check));
    frame.push_back(high(check));
    return frame;
}

} // namespace varda::test
