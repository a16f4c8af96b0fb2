#include "core/link/line.h"

#include <algorithm>

namespace varda::inline core {

Burst burstBehind(std::size_t from, std::span<const std::uint8_t> bytes, std::span<const Arrival> arrivals) {
    const auto rest = bytes.subspan(std::min(from, bytes.size()));
    Burst burst{.bytes = {rest.begin(), rest.end()}};
    for (const Arrival& arrival : arrivals) {
        const std::size_t passed = std::min(from, arrival.count);
        from -= passed;
        if (passed < arrival.count) {
            burst.arrivals.push_back({arrival.count - passed, arrival.time});
        }
    }
    return burst;
}

std::string settingsText(const LineSettings& settings) {
    return std::to_string(settings.baudRate) + ',' + settings.parity + ',' +
           std::to_string(settings.dataBits) + ',' + std::to_string(settings.stopBits);
}

} // namespace varda::core
