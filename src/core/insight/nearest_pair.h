#pragma once

#include "core/base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace varda::inline core {

class PacketTable;

/// The prepared request that is most like one that came in.
struct NearestPair {
    std::size_t row = 0;
    Bytes request;                        ///< as it is prepared
    std::size_t place = 0;                ///< of the first byte that differs
    std::optional<std::uint8_t> received; ///< what came there; nothing where the one that came ends before it
    std::size_t looked = 0;               ///< bytes of the one that came which the link looks at
    std::size_t size = 0;                 ///< of the one that came
};

/// Finds the prepared request that the fewest bytes of one that came in differ from, the lowest row of
/// equals. The frame check, which differs with anything else, does not count, nor do small letters, which the
/// link takes for other ones.
/// @param received what the link looks at
/// @param came bytes that there were
/// @return nothing where none is prepared that is a frame
std::optional<NearestPair> nearestPair(const PacketTable& table, std::span<const std::uint8_t> received,
                                       std::size_t came);

} // namespace varda::core
