#pragma once

#include "core/link/mscomm.h"

namespace varda::inline core {
class Clock;
class Controller;
} // namespace varda::core

namespace varda::window {

/// The lines of the program, whose events come in Qt's event loop.
/// @param clock @param controller both must outlive the lines
MSComm::LineFactory lineFactory(Clock& clock, Controller& controller);

} // namespace varda::window
