#pragma once

#include <string_view>

namespace varda::inline core {

/// The text without the blanks and tabs around it.
inline std::string_view withoutBlanksAround(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

} // namespace varda::core
