#pragma once

#include "core/base/blanks.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace varda::inline core {

/// Hands on the lines of a text that a person or a spreadsheet wrote, without line ends and the blanks around
/// them. Empty lines and comments, which begin with "#", are left out, a mark of UTF-8 in front too.
/// @param take called with a line and its number in the text, from 1
template <typename Take>
void forEachEntry(std::string_view text, Take&& take) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    text.remove_prefix(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    for (std::size_t number = 1; !text.empty(); ++number) {
        const auto end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        line = withoutBlanksAround(line);
        if (!line.empty() && !line.starts_with('#')) {
            take(line, number);
        }
    }
}

} // namespace varda::core
