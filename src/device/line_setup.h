#pragma once

#include "core/link/line.h"

#include <asio/serial_port.hpp>

namespace varda::device {

/// Makes an open port binary, without handshake, with these settings, and sees that the driver holds them.
/// @throws std::runtime_error where it does not
void setUp(asio::serial_port& port, const LineSettings& settings);

/// Whether a driver that holds one baud rate does as well as with another: its clock may not divide evenly.
bool isNearBaudRate(int held, int asked);

} // namespace varda::device
