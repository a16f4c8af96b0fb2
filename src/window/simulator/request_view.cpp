#include "window/simulator/request_view.h"

#include "core/protocol/hex_text.h"
#include "ui_simulation_page.h"
#include "window/controls/show_text.h"
#include "window/simulator/packet_lists.h"

namespace varda::window {

void RequestView::told(const Exchange& exchange) {
    const bool isFromMemory = exchange.outcome == Outcome::AnsweredFromMemory;
    const bool isAnswered =
        isFromMemory ? !isRefusedFromMemory(exchange) : exchange.outcome == Outcome::AnsweredByPair;
    if (!exchange.pair && !isFromMemory && exchange.outcome != Outcome::Unknown) { // no request that came in
        return;
    }
    showText(ui_.txtSimRP, hexRun(exchange.request));
    if (isAnswered) {
        showText(ui_.txtSimSP,
                 isFromMemory ? hexRun(exchange.answer) : lists_.table().answer(*exchange.pair));
    }
    showAsOld(ui_.txtSimSP, !isAnswered);
    lists_.selectPair(exchange.pair ? static_cast<int>(*exchange.pair) : -1);
}

} // namespace varda::window
