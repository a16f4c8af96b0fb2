#include "device/port_doctor.h"

namespace varda::device {

std::string describe(const PortFindings& findings) {
    std::string text = describe(findings.port) + '\n';
    for (const std::string& fact : findings.facts) {
        text += "  " + fact + '\n';
    }
    for (const PortRemedy& remedy : findings.remedies) {
        text += "  " + remedy.purpose + ":\n    " + remedy.command + '\n';
    }
    return text;
}

std::string reportOf(const std::vector<PortFindings>& findings) {
    std::string text;
    for (const PortFindings& port : findings) {
        text += text.empty() ? "" : "\n";
        text += describe(port);
    }
    return text.empty() ? "No serial port is there. Plug the adapter in, and look again.\n" : text;
}

} // namespace varda::device
