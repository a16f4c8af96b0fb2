#include "core/protocol/crc16.h"

#include <cstddef>
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

using Table = std::array<std::uint16_t, 256>;

constexpr std::size_t slice = 8; ///< bytes taken at a time: their entries do not wait for one another

/// For each place of a slice what its byte has become behind the last one; the plain table is the first.
constexpr std::array<Table, slice> makeTables() {
    std::array<Table, slice> tables{makeTable()};
    for (std::size_t behind = 1; behind < slice; ++behind) {
        for (std::size_t value = 0; value < tables[0].size(); ++value) {
            const unsigned before = tables.at(behind - 1).at(value);
            tables.at(behind).at(value) =
                static_cast<std::uint16_t>((before >> 8U) ^ tables[0].at(before & 0xFFU));
        }
    }
    return tables;
}

constexpr std::array<Table, slice> checkTables = makeTables();
constexpr const Table& checkTable = checkTables[0];

/// The first two bytes meet the check, the others enter as they are.
std::uint16_t sliceStep(std::uint16_t check, std::span<const std::uint8_t, slice> bytes) {
    unsigned result =
        checkTables[slice - 1][(check ^ bytes[0]) & 0xFFU] ^ checkTables[slice - 2][(check >> 8U) ^ bytes[1]];
    for (std::size_t place = 2; place < slice; ++place) {
        result ^= checkTables[slice - 1 - place][bytes[place]];
    }
    return static_cast<std::uint16_t>(result);
}

std::uint16_t step(std::uint16_t check, std::uint8_t byte) {
    return static_cast<std::uint16_t>((check >> 8U) ^ checkTable.at((check ^ byte) & 0xFFU));
}

} // namespace

const std::array<std::uint16_t, 256>& crc16Table() { return checkTable; }

std::uint16_t crc16(std::span<const std::uint8_t> bytes) {
    std::uint16_t check = startValue;
    for (; bytes.size() >= slice; bytes = bytes.subspan(slice)) {
        check = sliceStep(check, bytes.first<slice>());
    }
    return std::accumulate(bytes.begin(), bytes.end(), check, step);
}

} // namespace varda::core
