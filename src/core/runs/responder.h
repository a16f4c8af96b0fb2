#pragma once

#include "core/link/serial_link.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace varda::inline core {

class PacketTable;

/// Knows the answers while the program stands in for a controller.
class Responder {
public:
    explicit Responder(const PacketTable& table) : table_(table) {}

    /// The answer of the lowest pair whose request is exactly these bytes, as an upper-case frame text.
    /// @return nothing where no request equals them
    std::optional<PreparedAnswer> answerTo(std::span<const std::uint8_t> request) const;

private:
    std::optional<std::size_t> FindSimReceivePacket(std::span<const std::uint8_t> received) const;

    const PacketTable& table_;
};

} // namespace varda::core
