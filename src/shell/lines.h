#pragma once

#include "platform/mscomm.h"

namespace varda {

class Clock;
class Controller;

/// The port name that stands for the embedded controller.
inline constexpr const char* virtualPortName = "VIRTUAL";

/// The port named VIRTUAL is the embedded controller, every other name a serial device.
/// @param clock @param controller both must outlive the lines
MSComm::LineFactory lineFactory(Clock& clock, Controller& controller);

} // namespace varda
