#pragma once

#include "core/base/bytes.h"
#include "core/link/serial_link.h"
#include "core/runs/responder.h"
#include "core/virtual/controller.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace varda::inline core {

/// Answers like a responder, and where no prepared pair does, like a controller with its memory, if that is
/// switched on.
class LivingController {
public:
    /// @param table, controller outlive this
    LivingController(const PacketTable& table, Controller& controller)
        : responder_(table), controller_(controller) {}

    bool isOn() const { return isOn_; }
    void switchOn(bool isOn) { isOn_ = isOn; }

    /// The answer of a prepared pair; else that of the memory, which names no pair. A write has changed the
    /// memory then.
    std::optional<PreparedAnswer> answerTo(std::span<const std::uint8_t> request);

private:
    Responder responder_;
    Controller& controller_;
    bool isOn_ = false;
};

/// A prepared pair as the packet table holds it.
struct PairTexts {
    std::string request;
    std::string answer;

    bool operator==(const PairTexts&) const = default;
};

/// The pair of a request with the answer that a memory gives, which stays as it is.
/// @return nothing where it gives none
std::optional<PairTexts> pairFromMemory(std::span<const std::uint8_t> request,
                                        const ControllerMemory& memory);

} // namespace varda::core
