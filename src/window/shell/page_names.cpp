#include "window/shell/page_names.h"

#include <algorithm>
#include <array>

namespace varda::window {
namespace {

constexpr std::array<PageNames, 4> names = {{
    {.bitMode = Mode::BitRead,
     .periodField = "txtReadTimerValue",
     .sendButton = "cmdRDSend",
     .enabledByOpening = "cmdRDSend",
     .answer = "txtReceiveRData",
     .completionStatus = "txtRStatus",
     .silenceStatus = "txtRStatus"},
    {.bitMode = Mode::BitWrite,
     .periodField = "txtWriteTimerValue",
     .sendButton = "cmdWDSend",
     .enabledByOpening = "cmdWDSend",
     .answer = "txtReceiveWData",
     .completionStatus = "txtWStatus",
     .silenceStatus = "txtWStatus"},
    {.bitMode = Mode::MixedRead,
     .periodField = "txtMReadTimerValue",
     .sendButton = "cmdMRDSend",
     .enabledByOpening = "cmdRDSend", // kept: opening on this page enables the read page's button
     .answer = "txtReceiveMRData",
     .completionStatus = "txtWStatus", // kept: the completion is told on the write page
     .silenceStatus = "txtMRStatus"},
    {.bitMode = Mode::MixedWrite,
     .periodField = "txtMWriteTimerValue",
     .sendButton = "cmdMWDSend",
     .enabledByOpening = "cmdMWDSend",
     .answer = "txtReceiveMWData",
     .completionStatus = "txtWStatus", // kept: completion and silence are told on the write page
     .silenceStatus = "txtWStatus"},
}};

} // namespace

std::span<const PageNames> pageNames() { return names; }

const PageNames* findPageNames(Mode mode) {
    const Route* const route = findRoute(mode);
    return route == nullptr ? nullptr : &*std::ranges::find(names, route->bitMode, &PageNames::bitMode);
}

} // namespace varda::window
