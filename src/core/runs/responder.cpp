#include "core/runs/responder.h"

#include "core/base/runtime_error.h"
#include "core/link/form.h"
#include "core/link/serial_link.h"
#include "core/pairs/packet_builders.h"
#include "core/pairs/packet_table.h"
#include "core/protocol/hex_text.h"

#include <algorithm>
#include <string>

namespace varda::inline core {
namespace {

/// An answer that is no frame text has no bytes: writing it is the failing statement that is skipped.
void writeFrameText(Port& port, const std::string& text) {
    try {
        const Bytes bytes = bytesOfFrameText(text);
        if (!bytes.empty()) {
            port.write(bytes);
        }
    } catch (const RuntimeError&) { // NOLINT(bugprone-empty-catch): skipping is the rule of the receive path
    }
}

} // namespace

bool Responder::answer() {
    form_.setText("txtCurrentData", std::to_string(state_.RxCount));
    const auto count = static_cast<std::size_t>(state_.RxCount);
    const std::size_t held = std::min(count, state_.RxBuffer.size());
    const int pair = FindSimReceivePacket(std::span(state_.RxBuffer).first(held));
    if (pair == noPair || held < count) { // of a longer request only the beginning is known
        discardRequest();
        return false;
    }
    if (commPLC_.isOpen()) {
        send(static_cast<std::size_t>(pair));
    } else {
        form_.setText("txtMRStatus", "Port Closed"); // kept: told on the mixed read page
    }
    selectPair_(pair); // behind the answer: a long list is laid out anew after an edit
    return true;
}

int Responder::FindSimReceivePacket(std::span<const std::uint8_t> received) {
    const std::string request = hexRun(received);
    form_.setText("txtSimRP", request);
    const auto row = table_.find(request);
    return row ? static_cast<int>(*row) : noPair;
}

void Responder::discardRequest() {
    commPLC_.discard();
    state_.RxCount = 0;
    selectPair_(noPair);
}

void Responder::send(std::size_t pair) {
    const auto& answers = table_.answers();
    const std::string answer = pair < answers.size() ? answers[pair] : std::string();
    commPLC_.discard();
    writeFrameText(commPLC_, answer);
    form_.setText("txtSimSP", answer);
    state_.RxCount = 0;
}

} // namespace varda::inline core
