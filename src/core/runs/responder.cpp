#include "core/runs/responder.h"

#include "core/pairs/packet_table.h"
#include "core/protocol/hex_text.h"

namespace varda::inline core {

std::optional<PreparedAnswer> Responder::answerTo(std::span<const std::uint8_t> request) const {
    const auto pair = FindSimReceivePacket(request);
    if (!pair) {
        return std::nullopt;
    }
    // an answer that is no frame has no bytes, and nothing is sent
    return PreparedAnswer{*pair, readHexRun(table_.answer(*pair)).value_or(Bytes())};
}

std::optional<std::size_t> Responder::FindSimReceivePacket(std::span<const std::uint8_t> received) const {
    return table_.find(hexRun(received));
}

} // namespace varda::core
