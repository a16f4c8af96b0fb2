#pragma once

#include "core/link/mscomm.h"
#include "device/device_line.h"

namespace varda::inline core {
class Clock;
class Controller;
} // namespace varda::core

namespace varda::device {

/// Makes the lines that port names stand for: "VIRTUAL" is the embedded controller, any other name a serial
/// port of this computer.
/// @param clock, controller outlive the lines @param post brings the events of a port to the owner's thread
MSComm::LineFactory lineFactory(Clock& clock, Controller& controller, DeviceLine::Post post);

} // namespace varda::device
