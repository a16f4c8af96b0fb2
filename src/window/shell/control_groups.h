#pragma once

#include "window/controls/form.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace varda::window {

/// One comparison of a group procedure: so many leading characters of a control's name against a prefix.
struct NamePrefix {
    std::string_view prefix;
    std::size_t compared;
};

/// The groups in the order in which a mode switches them.
inline constexpr std::array controlGroups = {ControlGroup::Read,       ControlGroup::Write,
                                             ControlGroup::MixedRead,  ControlGroup::MixedWrite,
                                             ControlGroup::Simulation, ControlGroup::Scenario};

/// The comparisons of a group, for example EnableReadControls.
std::span<const NamePrefix> namePrefixes(ControlGroup group);

/// Whether a group switches the control of that name.
bool isInGroup(ControlGroup group, std::string_view controlName);

} // namespace varda::window
