#include "device/port_doctor.h"

#include "device/serial_node.h"

#include <algorithm>

namespace varda::device {
namespace {

/// What the system tells without the port being opened. Who has it, it does not tell.
PortFindings findingsOf(const PortName& port) {
    return {port, {}, {{"devmgmt.msc", "Its driver and settings, in the device manager"}}};
}

} // namespace

std::vector<PortFindings> examinePorts(const std::string& chosen, const std::string& root) {
    const auto ports = portNames(root);
    std::vector<PortFindings> findings;
    findings.reserve(ports.size() + 1);
    const std::string node = deviceNode(chosen);
    if (!node.empty() && std::ranges::find(ports, node, &PortName::node) == ports.end()) {
        findings.push_back({{node, {}}, {"The system knows no port of this name."}, {}});
    }
    for (const PortName& port : ports) {
        findings.push_back(findingsOf(port));
    }
    return findings;
}

} // namespace varda::device
