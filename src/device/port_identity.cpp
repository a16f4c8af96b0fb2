#include "device/port_identity.h"

#include "core/files/file_path.h"
#include "device/port_names.h"
#include "device/serial_node.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <vector>

namespace varda::device {
namespace {

namespace files = std::filesystem;

/// Where the node of a name really stands; the node as it is where it leads nowhere, or is no path.
std::string withoutLinks(const std::string& node, const std::string& root) {
    std::error_code error;
    const files::path found = files::canonical(filePath(root + node), error);
    const std::string path = error ? std::string() : found.generic_string();
    return path.starts_with(root) && !path.empty() ? path.substr(root.size()) : node;
}

bool isSharedBy(const std::vector<PortName>& ports, const std::string& identity) {
    return std::ranges::count(ports, identity, &PortName::identity) > 1;
}

std::string identityOfLink(const std::string& node, const std::string& target, const std::string& root) {
    constexpr std::string_view pseudoTerminals = "/dev/pts/";
    std::error_code error;
    const bool isLink = files::is_symlink(filePath(root + node), error);
    return isLink && target.starts_with(pseudoTerminals) ? "link " + node : std::string();
}

} // namespace

std::string identityOfPort(const std::string& name, const std::string& root) {
    const std::string node = deviceNode(name);
    const std::string target = withoutLinks(node, root);
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
