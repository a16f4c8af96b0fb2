#include "core/link/routes.h"

#include "core/link/form.h"
#include "core/protocol/frame.h"

#include <algorithm>
#include <array>

namespace varda::inline core {
namespace {

constexpr std::array<Route, 4> routes = {{
    {.bitMode = command::bitRead,
     .wordMode = command::wordRead,
     .bitOption = "optRead_0",
     .wordOption = "optRead_1",
     .destination = "txtRDDA",
     .source = "txtRDSA",
     .length = "cbRLength",
     .registerKind = "cbRegister",
     .registerNumber = "cbRegAddress",
     .registerBit = "cbRegBit",
     .sendButton = "cmdRDSend",
     .enabledByOpening = "cmdRDSend",
     .continuousBox = "chkRTimer",
     .periodField = "txtReadTimerValue",
     .repeatsOnlyWhenAnswered = false,
     .request = "txtSendRData",
     .answer = "txtReceiveRData",
     .status = "txtRStatus",
     .completionStatus = "txtRStatus",
     .silenceStatus = "txtRStatus"},
    {.bitMode = command::bitWrite,
     .wordMode = command::wordWrite,
     .bitOption = "optWrite_0",
     .wordOption = "optWrite_1",
     .destination = "txtWDDA",
     .source = "txtWDSA",
     .length = "cbWLength",
     .registerKind = "cbWRegister",
     .registerNumber = "cbWRegAddress",
     .registerBit = "cbWRegBit",
     .sendButton = "cmdWDSend",
     .enabledByOpening = "cmdWDSend",
     .continuousBox = "chkWTimer",
     .periodField = "txtWriteTimerValue",
     .repeatsOnlyWhenAnswered = true,
     .request = "txtSendWData",
     .answer = "txtReceiveWData",
     .status = "txtWStatus",
     .completionStatus = "txtWStatus",
     .silenceStatus = "txtWStatus"},
    {.bitMode = command::mixedRead,
     .wordMode = command::mixedRead,
     .bitOption = "optMRead_0",
     .wordOption = "optMRead_1",
     .destination = "txtMRDDA",
     .source = "txtMRDSA",
     .length = "cbMRLength",
     .registerKind = "cbMRegister",
     .registerNumber = "cbMRegAddress",
     .registerBit = "cbMRegBit",
     .sendButton = "cmdMRDSend",
     .enabledByOpening = "cmdRDSend", // kept: opening on this page enables the read page's button
     .continuousBox = "chkMRTimer",
     .periodField = "txtMReadTimerValue",
     .repeatsOnlyWhenAnswered = false,
     .request = "txtSendMRData",
     .answer = "txtReceiveMRData",
     .status = "txtMRStatus",
     .completionStatus = "txtWStatus", // kept: the completion is told on the write page
     .silenceStatus = "txtMRStatus"},
    {.bitMode = command::mixedWrite,
     .wordMode = command::mixedWrite,
     .bitOption = "optMWrite_0",
     .wordOption = "optMWrite_1",
     .destination = "txtMWDDA",
     .source = "txtMWDSA",
     .length = "",
     .registerKind = "cbMWRegister",
     .registerNumber = "cbMWRegAddress",
     .registerBit = "cbMWRegBit",
     .sendButton = "cmdMWDSend",
     .enabledByOpening = "cmdMWDSend",
     .continuousBox = "chkMWTimer",
     .periodField = "txtMWriteTimerValue",
     .repeatsOnlyWhenAnswered = true,
     .request = "txtSendMWData",
     .answer = "txtReceiveMWData",
     .status = "txtMWStatus",
     .completionStatus = "txtWStatus", // kept: completion and silence are told on the write page
     .silenceStatus = "txtWStatus"},
}};

} // namespace

std::span<const Route> masterRoutes() { return routes; }

const Route* findRoute(std::int16_t commMode) {
    const auto* const found = std::ranges::find_if(routes, [commMode](const Route& route) {
        return commMode == route.bitMode || commMode == route.wordMode;
    });
    return found != routes.end() ? found : nullptr;
}

std::vector<std::string_view> fieldsNeededToSend(const Route& route, const Form& form) {
    if (form.isTicked(route.bitOption)) {
        return {route.registerKind, route.registerNumber, route.registerBit};
    }
    if (form.isTicked(route.wordOption)) {
        return {route.registerKind, route.registerNumber};
    }
    return {};
}

std::vector<std::string_view> fieldsNeededToRepeat(const Route& route, const Form& form) {
    std::vector<std::string_view> fields = fieldsNeededToSend(route, form);
    fields.insert(fields.end(), {route.destination, route.source});
    if (!route.length.empty()) {
        fields.push_back(route.length);
    }
    return fields;
}

bool allFilled(const Form& form, std::span<const std::string_view> fields) {
    return std::ranges::none_of(fields, [&form](std::string_view field) { return form.text(field).empty(); });
}

} // namespace varda::inline core
