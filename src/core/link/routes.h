#pragma once

#include "core/protocol/frame.h"

#include <cstdint>
#include <span>

namespace varda::inline core {

/// What the link is doing: the request code of the master page that is shown, or one of the runs.
enum class Mode : std::int16_t {
    BitRead = command::bitRead,
    BitWrite = command::bitWrite,
    WordRead = command::wordRead,
    WordWrite = command::wordWrite,
    MixedRead = command::mixedRead,
    MixedWrite = command::mixedWrite,
    MonitorIdle = 0x80, ///< monitor page shown, nothing listed
    Monitoring = 0x81,
    Scenario = 0xC0,
    Simulation = 0xFF
};

/// How the link serves a master page.
struct Route {
    Mode bitMode;                 ///< while the bit option is chosen
    Mode wordMode;                ///< while the word option is chosen
    bool repeatsOnlyWhenAnswered; ///< continuous sending waits for the answer
};

/// The four master pages, in the order of their mode options.
std::span<const Route> masterRoutes();

/// The route of a master page's mode; nullptr for a run.
const Route* findRoute(Mode mode);

} // namespace varda::core
