#pragma once

#include "window/bench/controller_panel.h"
#include "window/bench/pairs_panel.h"

#include <functional>
#include <string>

namespace varda::inline core {
class Clock;
} // namespace varda::core

namespace varda::window {

class FaultSwitch;
class RecordingPlayer;
class ScenarioExpectations;

/// What the window of the bench shows, and where from.
struct BenchSources {
    Clock& clock; ///< its continuations pass a guard
    FaultSwitch& faults;
    SimulatedController simulated;
    ScenarioExpectations& expectations;
    std::function<std::string(int row)> scenarioLine;
    RecordingPlayer& player;
    PreparedPairs pairs;
};

} // namespace varda::window
