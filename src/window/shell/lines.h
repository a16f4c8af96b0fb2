#pragma once

#include "core/link/mscomm.h"

namespace varda::inline core {
class Clock;
class Controller;
} // namespace varda::inline core

namespace varda::window {

/// The port name that stands for the embedded controller.
inline constexpr const char* virtualPortName = "VIRTUAL";

/// The port named VIRTUAL is the embedded controller, every other name a serial device.
/// @param clock @param controller both must outlive the lines
MSComm::LineFactory lineFactory(Clock& clock, Controller& controller);

} // namespace varda::window
