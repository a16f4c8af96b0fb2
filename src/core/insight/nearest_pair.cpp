#include "core/insight/nearest_pair.h"

#include "core/base/name_index.h"
#include "core/pairs/packet_table.h"
#include "core/protocol/frame.h"
#include "core/protocol/hex_text.h"

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

namespace varda::inline core {
namespace {

constexpr std::size_t digitsOfByte = 2;

/// Number of bytes in which two frame texts differ, a missing one included; no more than `most` are counted.
/// The packet table has requests as they were typed, in letters of either case.
std::size_t differences(std::string_view left, std::string_view right, std::size_t most) {
    const auto [shorter, longer] = std::minmax({left.size(), right.size()});
    std::size_t count = (longer - shorter) / digitsOfByte;
    const std::size_t check = frame_size::check * digitsOfByte;
    const std::size_t compared = shorter > check ? shorter - check : shorter;
    for (std::size_t place = 0; place < compared && count < most; place += digitsOfByte) {
        count += equalNames(left.substr(place, digitsOfByte), right.substr(place, digitsOfByte)) ? 0 : 1;
    }
    return count;
}

NearestPair compared(std::size_t row, Bytes request, std::span<const std::uint8_t> received,
                     std::size_t size) {
    const auto [came, prepared] = std::ranges::mismatch(received, request);
    const auto place = static_cast<std::size_t>(came - received.begin());
    const auto differing = came != received.end() ? std::optional(*came) : std::nullopt;
    return {row, std::move(request), place, differing, received.size(), size};
}

} // namespace

std::optional<NearestPair> nearestPair(const PacketTable& table, std::span<const std::uint8_t> received,
                                       std::size_t came) {
    const std::string text = hexRun(received);
    const auto& requests = table.requests();
    std::optional<std::size_t> nearest;
    std::size_t fewest = std::numeric_limits<std::size_t>::max();
    for (std::size_t row = 0; row < requests.size() && fewest > 0; ++row) {
        const std::size_t count = differences(text, requests[row], fewest);
        if (count < fewest && readHexRun(requests[row])) {
            fewest = count;
            nearest = row;
        }
    }
    return nearest ? std::optional(compared(*nearest, *readHexRun(requests[*nearest]), received, came))
                   : std::nullopt;
}

} // namespace varda::core
