#include "core/protocol/frame_text.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace varda::inline core {
namespace {

constexpr char separator = ' ';

bool isGrouped(std::string_view text) { return text.find(separator) != std::string_view::npos; }

/// The groups of a frame text, or its pairs of digits.
std::string_view takeGroup(std::string_view& text, bool grouped) {
    constexpr std::size_t digits = 2;
    const std::string_view group = text.substr(0, grouped ? text.find(separator) : digits);
    text.remove_prefix(std::min(text.size(), group.size() + (grouped ? 1 : 0)));
    return group;
}

/// One or two digits: a station's group may have one.
std::optional<std::uint8_t> octet(std::string_view group) {
    std::uint8_t value = 0;
    const char* const end = group.data() + group.size();
    const auto [stop, error] = std::from_chars(group.data(), end, value, 16);
    return error == std::errc{} && stop == end ? std::optional(value) : std::nullopt;
}

} // namespace

Bytes bytesOfText(std::string_view text) {
    const bool grouped = isGrouped(text);
    Bytes bytes;
    while (!text.empty()) {
        const std::optional<std::uint8_t> byte = octet(takeGroup(text, grouped));
        if (!byte) {
            break;
        }
        bytes.push_back(*byte);
    }
    return bytes;
}

std::size_t byteAt(std::string_view text, std::size_t place) {
    const std::string_view before = text.substr(0, place);
    return isGrouped(text) ? static_cast<std::size_t>(std::ranges::count(before, separator)) : place / 2;
}

} // namespace varda::core
