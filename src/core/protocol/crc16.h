#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace varda::inline core {

/// The 256 entries of the reflected CRC-16 with polynomial 0xA001, one for each value of a byte.
const std::array<std::uint16_t, 256>& crc16Table();

/// The frame check: polynomial 0xA001 reflected, start value 0xFFFF, no final inversion.
/// @return the check; on the wire its low byte goes first
std::uint16_t crc16(std::span<const std::uint8_t> bytes);

} // namespace varda::core
