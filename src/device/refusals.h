#pragma once

#include "core/link/comm_error.h"
#include "core/link/line.h"

#include <stdexcept>
#include <string>
#include <system_error>

namespace varda::device {

/// Why a port cannot be opened, in the same words on every system.
namespace refusal {

inline constexpr const char* console = "a console";
inline constexpr const char* directory = "a directory";
inline constexpr const char* regularFile = "a regular file";
inline constexpr const char* blockDevice = "a block device";
inline constexpr const char* pipe = "a pipe";
inline constexpr const char* socket = "a socket";
inline constexpr const char* anotherDevice = "another kind of device";

/// Of a pseudo-terminal that nobody has open and that is in use all the same; goes behind a condition.
inline constexpr const char* claimLeftBehind =
    "a program was killed on it: end what made the line (socat) and start that anew.";

} // namespace refusal

/// 8002: the name leads to something else. @param kind one of refusal::
RuntimeError noSerialPort(const std::string& label, const char* kind);

/// 8002 where the system says that there is no device, 8015 with its reason where it lies in the system
/// itself.
RuntimeError cannotBeOpened(const std::string& label, const std::error_code& reason);

/// Of an open port that was not brought to its settings: to choose others is a remedy only where the driver
/// does not take these. Elsewhere the port cannot be opened.
RuntimeError cannotBeSetUp(const std::string& label, const LineSettings& settings,
                           const std::runtime_error& reason);

} // namespace varda::device
