#include "core/runs/monitor_line.h"

#include "core/protocol/hex_text.h"

#include <algorithm>
#include <span>

namespace varda::inline core {

std::string MonitorLine::text(std::size_t most) const {
    const auto shown = std::span(burst).first(std::min(most, burst.size()));
    constexpr std::size_t lineEnd = 2; // the log puts one behind it, which needs no copy of a flood then
    std::string line = stamp;
    line.reserve(textLength(most) + lineEnd);
    if (!asCharacters) {
        appendHexGroups(line, shown);
        return line;
    }
    for (const std::uint8_t byte : shown) {
        line += static_cast<char>(byte);
        line += ' ';
    }
    return line;
}

std::size_t MonitorLine::textLength(std::size_t most) const {
    constexpr std::size_t characterAndBlank = 2;
    constexpr std::size_t digitsAndBlank = 3;
    return stamp.size() + std::min(most, burst.size()) * (asCharacters ? characterAndBlank : digitsAndBlank);
}

std::string timeStamp(const TimeOfDay& time) {
    return std::to_string(time.hour) + ":" + std::to_string(time.minute) + ":" + std::to_string(time.second) +
           " - ";
}

} // namespace varda::core
