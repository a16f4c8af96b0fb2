#include "window/shell/control_groups.h"

#include <algorithm>
#include <array>

namespace varda::window {
namespace {

// kept: where fewer or more characters are compared than the prefix has, the comparison never succeeds, so
// check boxes, the grid and the mixed pages are never switched
constexpr std::array<NamePrefix, 4> readControls = {{{"cbR", 3}, {"txtR", 4}, {"chkR", 3}, {"optR", 4}}};
constexpr std::array<NamePrefix, 5> writeControls = {
    {{"cbW", 3}, {"txtW", 4}, {"chkW", 3}, {"optW", 4}, {"gridW", 4}}};
constexpr std::array<NamePrefix, 4> mixedReadControls = {
    {{"cbMR", 3}, {"txtMR", 4}, {"chkMR", 3}, {"optMR", 4}}};
constexpr std::array<NamePrefix, 5> mixedWriteControls = {
    {{"cbMW", 3}, {"txtMW", 4}, {"chkMW", 3}, {"optMW", 4}, {"gridMW", 4}}};
constexpr std::array<NamePrefix, 5> simulationControls = {
    {{"cbSim", 5}, {"txtSim", 6}, {"chkSim", 6}, {"optSim", 6}, {"cmdSim", 6}}};
constexpr std::array<NamePrefix, 4> scenarioControls = {
    {{"cmdAddScenario", 14}, {"cmdDelScenario", 14}, {"cmdLoadScenario", 15}, {"cmdSaveScenario", 15}}};

} // namespace

std::span<const NamePrefix> namePrefixes(ControlGroup group) {
    switch (group) {
    case ControlGroup::Read:
        return readControls;
    case ControlGroup::Write:
        return writeControls;
    case ControlGroup::MixedRead:
        return mixedReadControls;
    case ControlGroup::MixedWrite:
        return mixedWriteControls;
    case ControlGroup::Simulation:
        return simulationControls;
    case ControlGroup::Scenario:
        return scenarioControls;
    }
    return {};
}

bool isInGroup(ControlGroup group, std::string_view controlName) {
    return std::ranges::any_of(namePrefixes(group), [controlName](const NamePrefix& row) {
        return controlName.substr(0, row.compared) == row.prefix;
    });
}

} // namespace varda::window
