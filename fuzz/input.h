#pragma once

#include "core/base/runtime_error.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

namespace varda::fuzz {

/// The bytes of one input, taken apart from the front. What is not there any more is 0 or empty.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : left_(data, size) {}

    bool isEmpty() const { return left_.empty(); }

    std::uint8_t byte() {
        const auto taken = take(1);
        return taken.empty() ? std::uint8_t{0} : taken.front();
    }
    bool flag() { return byte() % 2 == 1; }
    /// 0 .. limit - 1, at most 65535
    int below(int limit) {
        const int low = byte();
        return (low + 256 * byte()) % limit;
    }
    std::vector<std::uint8_t> bytes(std::size_t most) {
        const auto taken = take(static_cast<std::size_t>(below(static_cast<int>(most) + 1)));
        return {taken.begin(), taken.end()};
    }
    std::string text(std::size_t most) {
        const auto taken = take(static_cast<std::size_t>(below(static_cast<int>(most) + 1)));
        return {taken.begin(), taken.end()};
    }
    std::string rest() { return {left_.begin(), left_.end()}; }

private:
    std::span<const std::uint8_t> take(std::size_t count) {
        const auto taken = left_.first(std::min(count, left_.size()));
        left_ = left_.subspan(taken.size());
        return taken;
    }

    std::span<const std::uint8_t> left_;
};

inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

/// What a step returns; nothing where it is refused, which it is with one of these numbers.
template <typename Step>
auto attempt(std::initializer_list<int> numbers, Step&& step) {
    const auto refuse = [numbers](const RuntimeError& refused) {
        require(std::ranges::find(numbers, refused.number()) != numbers.end(), "only known numbers refuse");
    };
    if constexpr (std::is_void_v<decltype(step())>) {
        try {
            step();
        } catch (const RuntimeError& refused) {
            refuse(refused);
        }
    } else {
        try {
            return std::optional(step());
        } catch (const RuntimeError& refused) {
            refuse(refused);
            return std::optional<decltype(step())>();
        }
    }
}

} // namespace varda::fuzz
