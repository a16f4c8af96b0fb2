#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace varda::inline core {

// Captures in the form that Wireshark reads, pcapng: a heading, then the packets.

/// Link type of what is nobody's but the user's, the first of sixteen.
constexpr int linkTypeUser0 = 147;

struct CapturedPacket {
    std::chrono::system_clock::time_point time;
    bool isSent = false;
    std::span<const std::uint8_t> bytes; ///< as many as were kept
    std::size_t size = 0;                ///< as many as there were
    std::string comment;                 ///< in UTF-8; longer ones are cut
};

std::string captureHeading();
std::string captured(const CapturedPacket& packet);

} // namespace varda::core
