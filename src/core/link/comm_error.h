#pragma once

#include "core/base/runtime_error.h"

namespace varda::inline core {

/// The numbers with which a RuntimeError of the serial control tells what went wrong.
namespace comm_error {

inline constexpr int invalidPort = 8002;   ///< no such device, no serial device, or no right to use it
inline constexpr int inUse = 8005;         ///< another program or another handle has the port
inline constexpr int notOpen = 8012;       ///< read or write while the port is closed
inline constexpr int cannotBeSetUp = 8015; ///< the driver refuses the line settings
inline constexpr int readError = 8020;     ///< the line failed while it was open

} // namespace comm_error

/// 8002: the port's node does not exist, or has no device behind it.
inline RuntimeError noSuchDevice(const std::string& label) {
    return {comm_error::invalidPort,
            "No such device: " + label + ". Check its name, and that it is plugged in."};
}

/// 8005: another program or another handle has the port.
inline RuntimeError portInUse(const std::string& label) {
    return {comm_error::inUse,
            label + " is in use by another program. Close it there or choose another port."};
}

} // namespace varda::core
