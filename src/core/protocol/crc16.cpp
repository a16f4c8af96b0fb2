#include "core/protocol/crc16.h"

#include <numeric>

namespace varda::inline core {
namespace {

constexpr std::uint16_t polynomial = 0xA001;
constexpr std::uint16_t startValue = 0xFFFF;

constexpr std::uint16_t entry(unsigned value) {
    for (int bit = 0; bit < 8; ++bit) {
        value = (value & 1U) != 0 ? (value >> 1U) ^ polynomial : value >> 1U;
    }
    return static_cast<std::uint16_t>(value);
}

constexpr std::array<std::uint16_t, 256> makeTable() {
    std::array<std::uint16_t, 256> table{};
    for (unsigned value = 0; value < table.size(); ++value) {
        table.at(value) = entry(value);
    }
    return table;
}

constexpr std::array<std::uint16_t, 256> checkTable = makeTable();

std::uint16_t step(std::uint16_t check, std::uint8_t byte) {
    return static_cast<std::uint16_t>((check >> 8U) ^ checkTable.at((check ^ byte) & 0xFFU));
}

} // namespace

const std::array<std::uint16_t, 256>& crc16Table() { return checkTable; }

std::uint16_t crc16(std::span<const std::uint8_t> bytes) {
    return std::accumulate(bytes.begin(), bytes.end(), startValue, step);
}

} // namespace varda::core
