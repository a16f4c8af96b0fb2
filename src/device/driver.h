#pragma once

#include "core/link/line.h"
#include "device/native_handle.h"

#include <span>
#include <system_error>

namespace varda::device::driver {

/// What Asio leaves to each system: a serial port as this program wants it, beyond Asio's own options. The
/// functions that set up throw std::system_error.

/// Whether an error means that there is no device, or none any more, behind its name.
bool isOfNoDevice(const std::error_code& error) noexcept;

/// Binary, no handshake, no translations.
void makeRaw(NativeHandle handle);

/// Bytes of wrong parity come in like others. After the parity has been chosen.
void ignoreParityErrors(NativeHandle handle);

/// Switches DTR and RTS on: adapters may draw their power from these lines. A port without them does without.
void raiseControlLines(NativeHandle handle) noexcept;

/// A rate that Asio has no name for. @return false where this system offers named rates alone
bool setAnyBaudRate(NativeHandle handle, int rate);

/// The rate that the driver holds, which may be near the one it was given; 0, which is none, where it cannot
/// be asked.
int heldBaudRate(NativeHandle handle) noexcept;

/// Whether there is no wire behind the port: then the driver takes no data bits but 8, and no parity.
bool isPseudoTerminal(NativeHandle handle) noexcept;

/// The length of a read that ends as soon as bytes are there.
std::size_t mostToAskFor(NativeHandle handle) noexcept;

/// Sends what the driver takes at once. @return the number of bytes; 0 where that cannot be done without
/// waiting, or fails
std::size_t writeAtOnce(NativeHandle handle, std::span<const std::uint8_t> bytes) noexcept;

/// Throws away what the driver has received.
void discardInput(NativeHandle handle) noexcept;

/// Throws away what the driver still has to send, for closing would wait for that; lets others open the port,
/// also where more handles of it are open.
void prepareToClose(NativeHandle handle) noexcept;

} // namespace varda::device::driver
