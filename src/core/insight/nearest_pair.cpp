#include "core/insight/nearest_pair.h"

#include "core/pairs/packet_table.h"
#include "core/protocol/frame.h"
#include "core/protocol/hex_text.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace varda::inline core {
namespace {

constexpr std::size_t digitsOfByte = 2;

/// Number of bytes in which two frame texts differ, a missing one included; no more than `most` are counted.
std::size_t differences(std::string_view left, std::string_view right, std::size_t most) {
    const auto [shorter, longer] = std::minmax({left.size(), right.size()});
    std::size_t count = (longer - shorter) / digitsOfByte;
    const std::size_t check = frame_size::check * digitsOfByte;
    const std::size_t compared = shorter > check ? shorter - check : shorter;
    for (std::size_t place = 0; place < compared && count < most; place += digitsOfByte) {
        count += left.substr(place, digitsOfByte) != right.substr(place, digitsOfByte) ? 1 : 0;
    }
    return count;
}

std::size_t firstDifference(std::span<const std::uint8_t> left, std::span<const std::uint8_t> right) {
    return static_cast<std::size_t>(std::ranges::mismatch(left, right).in1 - left.begin());
}

} // namespace

std::optional<NearestPair> nearestPair(const PacketTable& table, std::span<const std::uint8_t> received) {
    const std::string text = hexRun(received);
    const auto& requests = table.requests();
    std::optional<std::size_t> nearest;
    std::size_t fewest = text.size() + frame_size::envelope;
    for (std::size_t row = 0; row < requests.size() && fewest > 0; ++row) {
        const std::size_t count = differences(text, requests[row], fewest);
        if (count < fewest) {
            fewest = count;
            nearest = row;
        }
    }
    const auto request = nearest ? readHexRun(requests[*nearest]) : std::nullopt;
    if (!request) {
        return std::nullopt;
    }
    return NearestPair{*nearest, *request, firstDifference(received, *request)};
}

} // namespace varda::core
