#pragma once

#include "walks/world.h"

namespace varda::window_model {

/// Draws the next step of a walk from what the model shows.
using DrawStep = std::function<Action(const World& world, Draw& draw)>;

/// Walks the window beside the model, step by step, and compares all that the model knows. VARDA_WALKS and
/// VARDA_WALK_STEPS say how many walks and steps, VARDA_WALK_SEED where the seeds begin; VARDA_WALK_ACTIONS
/// names a file whose steps are done instead of drawn ones. A difference is told with its seed, and with the
/// fewest steps that still lead to one.
void walk(std::uint32_t firstSeed, int steps, const DrawStep& drawStep);

} // namespace varda::window_model
