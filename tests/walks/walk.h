#pragma once

#include "walks/page_model.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace varda::walks {

/// A page to walk on: its mode, and a model of it on random numbers of a seed.
struct Page {
    int mode;
    std::function<std::unique_ptr<PageModel>(std::uint_fast32_t seed)> makeModel;
};

/// Walks `page` at random beside its model and reports the first difference of each walk with a list of
/// actions that shows it. VARDA_WALKS sets the number of walks, VARDA_WALK_FIRST_SEED the first one's seed,
/// VARDA_WALK_STEPS their length, VARDA_WALK_DIFFERENCES after how many differences to end, VARDA_WALK_SEED
/// the one walk to take, VARDA_WALK_REPLAY a file of actions to take instead.
/// @param share the number of walks is divided by this
void walk(const Page& page, int share = 1);

} // namespace varda::walks
