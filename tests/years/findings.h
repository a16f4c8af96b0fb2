#pragma once

#include <optional>
#include <string>
#include <utility>

namespace varda::years {

/// What does not hold. The first one alone is kept: what follows it may come of it.
class Findings {
public:
    template <typename Words>
    void require(bool holds, Words&& words) {
        if (!holds && !first_) {
            first_ = std::string(std::forward<Words>(words)());
        }
    }
    void require(bool holds, const char* what) {
        if (!holds && !first_) {
            first_ = what;
        }
    }

    const std::optional<std::string>& first() const { return first_; }

private:
    std::optional<std::string> first_;
};

} // namespace varda::years
