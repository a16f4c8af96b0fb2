#pragma once

#include "core/base/bytes.h"
#include "core/virtual/controller_memory.h"

#include <cstdint>
#include <optional>
#include <span>

namespace varda::inline core {

/// A controller in memory that answers host-link requests, so that the program does its job with no hardware.
///
/// It answers for every station, with DA and SA exchanged. It takes frames as a master sends them, one call a
/// request, and says nothing where a real controller would say nothing.
///
/// Two registers move, so that a continuous read shows life. Both take one step after each answered request
/// (its answer still shows the value before the step), from the value last written to them:
/// - word "SR" number 0 counts up by one and wraps from 65535 to 0;
/// - bit 0 of "F" number 0 changes between OFF and ON.
class Controller {
public:
    /// Words of the memory, addresses 0 .. 3583. Bit b of word w has the bit address w * 16 + b.
    static constexpr int wordCount = ControllerMemory::wordCount;

    Controller() = default;
    Controller(const Controller&) = delete;
    Controller& operator=(const Controller&) = delete;
    ~Controller() = default;

    /// Carries out one request.
    ///
    /// A bit is written as 0x00 for OFF; every other value (0xFF by the protocol) is ON. A mixed request may
    /// be followed by one byte of any value after its CRC. A mixed request that names no point is answered; a
    /// single write that brings no value is not.
    /// @return the answer frame; nothing where CRC or length are wrong, the command or its body is not known,
    ///         or any part of what it names lies outside the memory. No word has changed then, not even a
    ///         moving one.
    std::optional<Bytes> answer(std::span<const std::uint8_t> request);

    /// @param address word address, 0 .. 3583
    /// @throws RuntimeError 9 outside the memory
    std::uint16_t word(int address) const;
    /// @throws RuntimeError 9 outside the memory
    void setWord(int address, std::uint16_t value);

    const ControllerMemory& memory() const { return memory_; }
    void setMemory(const ControllerMemory& memory) { memory_ = memory; }

    /// Takes the one socket of the controller, to be given back with unplug().
    /// @return false where it is taken already
    bool plugIn() noexcept;
    void unplug() noexcept;

private:
    void moveRegisters();

    ControllerMemory memory_;
    bool pluggedIn_ = false;
};

} // namespace varda::core
