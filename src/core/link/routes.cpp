#include "core/link/routes.h"

#include <algorithm>
#include <array>

namespace varda::inline core {
namespace {

constexpr std::array<Route, 4> routes = {{
    {.bitMode = Mode::BitRead, .wordMode = Mode::WordRead, .repeatsOnlyWhenAnswered = false},
    {.bitMode = Mode::BitWrite, .wordMode = Mode::WordWrite, .repeatsOnlyWhenAnswered = true},
    {.bitMode = Mode::MixedRead, .wordMode = Mode::MixedRead, .repeatsOnlyWhenAnswered = false},
    {.bitMode = Mode::MixedWrite, .wordMode = Mode::MixedWrite, .repeatsOnlyWhenAnswered = true},
}};

} // namespace

std::span<const Route> masterRoutes() { return routes; }

const Route* findRoute(Mode mode) {
    const auto* const found = std::ranges::find_if(
        routes, [mode](const Route& route) { return mode == route.bitMode || mode == route.wordMode; });
    return found != routes.end() ? found : nullptr;
}

} // namespace varda::core
