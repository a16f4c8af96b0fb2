#pragma once

#include "core/link/routes.h"
#include "window/controls/form.h"

#include <array>

namespace varda::window {

/// What choosing a mode sets, whatever its page does beyond that.
struct ModeSettings {
    Mode linkMode;
    std::array<bool, 6> groups; ///< state of each ControlGroup, in the order of the enumeration
};

/// The six modes in the order of their options and tabs.
constexpr std::array<ModeSettings, 6> modes = {{
    //                        read   write  mixed  mixed  simul. scenario
    {Mode::BitRead, {true, false, false, false, false, true}},
    {Mode::BitWrite, {false, true, false, false, false, true}},
    {Mode::MixedRead, {false, false, true, false, false, true}},
    {Mode::MixedWrite, {false, false, false, true, false, true}},
    {Mode::Simulation, {false, false, false, false, true, false}},
    {Mode::MonitorIdle, {false, false, false, false, false, false}},
}};

} // namespace varda::window
