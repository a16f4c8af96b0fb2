#include "device/port_identity.h"

#include "device/node_target.h"
#include "device/port_names.h"
#include "device/serial_node.h"

#include <algorithm>
#include <vector>

namespace varda::device {
namespace {

bool isSharedBy(const std::vector<PortName>& ports, const std::string& identity) {
    return std::ranges::count(ports, identity, &PortName::identity) > 1;
}

} // namespace

std::string identityOfPort(const std::string& name, const std::string& root) {
    const std::string node = deviceNode(name);
    const std::string target = nodeTarget(node, root);
    const auto ports = portNames(root);
    const auto port = std::ranges::find(ports, target, &PortName::node);
    if (port == ports.end()) {
        return identityOfLink(node, target, root);
    }
    return isSharedBy(ports, port->identity) ? std::string() : port->identity;
}

std::string nameOfDevice(const std::string& identity, const std::string& lastName, const std::string& root) {
    if (identity.empty() || identityOfPort(lastName, root) == identity) {
        return identity.empty() ? std::string() : lastName;
    }
    const auto ports = portNames(root);
    const auto port = std::ranges::find(ports, identity, &PortName::identity);
    return port == ports.end() || isSharedBy(ports, identity) ? std::string() : port->node;
}

} // namespace varda::device
