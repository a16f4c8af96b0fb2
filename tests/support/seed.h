#pragma once

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <system_error>

namespace varda::test {

/// A seed as it is typed: decimal digits are a number; of others the first sixteen hexadecimal ones are, as a
/// commit has them.
inline std::optional<std::uint64_t> seedOf(std::string_view text) {
    for (const int base : {10, 16}) {
        const std::string_view digits = base == 10 ? text : text.substr(0, 16);
        std::uint64_t seed = 0;
        const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), seed, base);
        if (!digits.empty() && error == std::errc{} && stop == digits.data() + digits.size()) {
            return seed;
        }
    }
    return std::nullopt;
}

/// The one of VARDA_SEED in the environment, or else 1; nothing where that is no seed.
inline std::optional<std::uint64_t> wantedSeed() {
    const char* const seed = std::getenv("VARDA_SEED");
    return seed == nullptr ? std::optional<std::uint64_t>(1) : seedOf(seed);
}

} // namespace varda::test
