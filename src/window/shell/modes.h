#pragma once

#include "core/link/form.h"
#include "core/link/routes.h"
#include "core/protocol/frame.h"

#include <array>
#include <cstdint>

namespace varda::window {

/// What choosing a mode sets, whatever its page does beyond that.
struct Mode {
    std::int16_t commMode;
    std::array<bool, 6> groups; ///< state of each ControlGroup, in the order of the enumeration
};

/// The six modes in the order of their options and tabs.
constexpr std::array<Mode, 6> modes = {{
    //                        read   write  mixed  mixed  simul. scenario
    {command::bitRead, {true, false, false, false, false, true}},
    {command::bitWrite, {false, true, false, false, false, true}},
    {command::mixedRead, {false, false, true, false, false, true}},
    {command::mixedWrite, {false, false, false, true, false, true}},
    {comm_mode::simulation, {false, false, false, false, true, false}},
    {comm_mode::monitorIdle, {false, false, false, false, false, false}},
}};

} // namespace varda::window
