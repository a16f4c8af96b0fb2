#pragma once

#include "core/protocol/independent_encoder.h"

#include <cstddef>
#include <random>
#include <string>
#include <vector>

/// What the comparisons with the independent encoder draw. The same seed draws the same on every machine.
namespace varda::test {

class Draws {
public:
    explicit Draws(unsigned seed) : engine_(seed) {}

    /// 0 .. end - 1
    int below(int end) { return static_cast<int>(engine_() % static_cast<unsigned>(end)); }
    bool oneIn(int times) { return below(times) == 0; }

    const std::string& pick(const std::vector<std::string>& texts) {
        return texts[static_cast<std::size_t>(below(static_cast<int>(texts.size())))];
    }

    /// Mostly a number in one of its spellings, now and then a text that is no station.
    Station station() {
        if (oneIn(10)) {
            return {pick({"", "256", "-1", "x", "40000", "&HFFFF"}), 0, "00"};
        }
        const auto value = static_cast<unsigned>(below(256));
        const std::string digits = printed("%X", value);
        return {oneIn(3) ? "&H" + digits : std::to_string(value), value, digits};
    }

private:
    std::mt19937 engine_;
};

/// `value` in hexadecimal digits of either case, without padding.
inline std::string typedHex(Draws& draws, unsigned value) {
    return printed(draws.oneIn(2) ? "%x" : "%X", value);
}

} // namespace varda::test
