#include "device/port_doctor.h"

#include "core/base/blanks.h"
#include "core/virtual/virtual_line.h"
#include "device/node_target.h"
#include "device/serial_node.h"

#include <algorithm>

namespace varda::device {
namespace {

/// What the system tells without the port being opened. Who has it, it does not tell.
PortFindings findingsOf(const PortName& port) {
    return {port,
            {"Windows does not tell who has it open: Test says whether another program has."},
            {{"devmgmt.msc", "Its driver and settings, in the device manager"}}};
}

/// The chosen port; empty where none is chosen, or the embedded controller, which is no port of this
/// computer.
std::string chosenPort(const std::string& chosen) {
    return withoutBlanksAround(chosen) == virtualPortName ? std::string() : nodeTarget(deviceNode(chosen));
}

/// @param meant in capitals, perhaps; empty where nothing of the kind is known
PortFindings notThere(const std::string& name, const std::string& meant) {
    return {{name, {}},
            {"There is no such port." + (meant.empty() ? "" : " Did you mean " + meant + ", in capitals?")},
            {{"devmgmt.msc", "What is plugged in, in the device manager"}}};
}

} // namespace

std::vector<PortFindings> examinePorts(const std::string& chosen, const std::string& root) {
    auto ports = portNames(root);
    const std::string name = chosenPort(chosen);
    const auto others = std::stable_partition(ports.begin(), ports.end(),
                                              [&name](const PortName& port) { return port.node == name; });
    std::vector<PortFindings> findings;
    if (!name.empty() && others == ports.begin()) {
        findings.push_back(notThere(name, meantInCapitals(chosen)));
    }
    for (const PortName& port : ports) {
        findings.push_back(findingsOf(port));
    }
    return findings;
}

} // namespace varda::device
