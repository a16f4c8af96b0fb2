#include "core/runs/monitor_line.h"

#include "core/protocol/hex_text.h"

#include <algorithm>
#include <span>

namespace varda::inline core {

std::string MonitorLine::text(std::size_t most) const {
    const auto shown = std::span(burst).first(std::min(most, burst.size()));
    if (!asCharacters) {
        return stamp + hexGroups(shown);
    }
    std::string line = stamp;
    line.reserve(line.size() + 2 * shown.size());
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
