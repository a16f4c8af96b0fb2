#include "window/shell/open_port_words.h"

#include "core/base/blanks.h"

namespace varda::window {
namespace {

std::string trimmed(const std::string& text) { return std::string(withoutBlanksAround(text)); }

/// Opening gives an empty list its start value.
std::string orStart(const std::string& text, const char* start) { return text.empty() ? start : text; }

std::string settingsText(const PortState& state) {
    const std::string parity = orStart(state.parity, "NONE");
    const bool isKnown = parity == "NONE" || parity == "EVEN" || parity == "ODD";
    return orStart(state.baudRate, "9600") + ' ' + orStart(state.dataBits, "8") + '-' +
           (isKnown ? parity.substr(0, 1) : parity) + '-' + orStart(state.stopBits, "1");
}

} // namespace

std::string openPortText(const PortState& state) {
    const std::string name = portInText(state);
    const std::string port = name + ", " + settingsText(state);
    if (state.isOpen) {
        return "Open: " + port;
    }
    if (!state.awaited.empty()) {
        return "Waiting for " + name + " to come back";
    }
    return name.empty() ? "No port is tested yet" : "Open Port opens " + port;
}

std::string portInText(const PortState& state) {
    const bool isAwaited = !state.isOpen && !state.awaited.empty();
    return trimmed(isAwaited ? state.awaited : state.tested);
}

bool waitsForTest(const PortState& state) { return trimmed(state.field) != trimmed(state.tested); }

std::string fieldText(const PortState& state) {
    if (!waitsForTest(state)) {
        return state.isOpen ? "It is open." : "It is tested: Open Port opens it.";
    }
    const std::string other = trimmed(state.tested);
    if (other.empty()) {
        return "Press Test, then Open Port.";
    }
    return state.isOpen ? "This text waits for Test: " + other + " is open."
                        : "This text waits for Test: until then Open Port opens " + other + '.';
}

} // namespace varda::window
