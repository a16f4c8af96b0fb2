#include "core/runs/responder.h"

#include "core/base/runtime_error.h"
#include "core/pairs/packet_builders.h"
#include "core/pairs/packet_table.h"
#include "core/protocol/hex_text.h"

#include <string>

namespace varda::inline core {
namespace {

/// An answer that is no frame text has no bytes: writing it is a failing statement, which the receive path
/// skips.
Bytes bytesToSend(const std::string& answer) {
    try {
        return bytesOfFrameText(answer);
    } catch (const RuntimeError&) {
        return {};
    }
}

} // namespace

std::optional<PreparedAnswer> Responder::answerTo(std::span<const std::uint8_t> request) const {
    const auto pair = FindSimReceivePacket(request);
    if (!pair) {
        return std::nullopt;
    }
    return PreparedAnswer{*pair, bytesToSend(table_.answer(*pair))};
}

std::optional<std::size_t> Responder::FindSimReceivePacket(std::span<const std::uint8_t> received) const {
    return table_.find(hexRun(received));
}

} // namespace varda::core
