#pragma once

#include "core/link/comm_error.h"

#include <string>

namespace varda::device {

/// Why a port cannot be opened, in the same words on every system.
namespace refusal {

inline constexpr const char* console = "a console";
inline constexpr const char* directory = "a directory";
inline constexpr const char* regularFile = "a regular file";
inline constexpr const char* noDeviceOfCharacters = "no device of characters";
inline constexpr const char* anotherDevice = "another kind of device";

} // namespace refusal

/// 8002: the name leads to something else. @param kind one of refusal::
inline RuntimeError noSerialPort(const std::string& label, const char* kind) {
    return {comm_error::invalidPort, label + " is " + kind + ", not a serial port."};
}

/// 8015: the system refuses for a reason that lies in itself, not in the port.
inline RuntimeError cannotBeOpened(const std::string& label, const std::string& reason) {
    return {comm_error::cannotBeSetUp, label + " cannot be opened: " + reason + "."};
}

} // namespace varda::device
