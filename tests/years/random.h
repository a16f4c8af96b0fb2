#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace varda::years {

/// Numbers that a seed draws, the same ones on every system: those of the standard library differ.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        state_ += 0x9E37'79B9'7F4A'7C15U;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58'476D'1CE4'E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D0'49BB'1331'11EBU;
        return mixed ^ (mixed >> 31U);
    }

    /// 0 .. limit - 1
    int below(int limit) {
        return static_cast<int>(((next() >> 32U) * static_cast<std::uint64_t>(limit)) >> 32U);
    }
    /// Both ends included.
    int between(int least, int most) { return least + below(most - least + 1); }
    bool oneIn(int count) { return below(count) == 0; }
    /// True so many times in a million; nothing is drawn for what never happens.
    bool perMillion(int times) { return times > 0 && below(1'000'000) < times; }
    std::uint8_t byte() { return static_cast<std::uint8_t>(next() >> 56U); }

    /// Each doubling of `least`, which is above 0, up to `most` as often as every other one.
    int octaves(int least, int most) {
        int count = 1;
        while (least <= most >> count) {
            ++count;
        }
        const int begin = least << below(count);
        return between(begin, begin > most / 2 ? most : 2 * begin - 1);
    }

    template <typename Item>
    const Item& pick(const std::vector<Item>& items) {
        return items[static_cast<std::size_t>(below(static_cast<int>(items.size())))];
    }

private:
    std::uint64_t state_;
};

} // namespace varda::years
