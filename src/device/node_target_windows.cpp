#include "device/node_target.h"

#include <algorithm>
#include <string_view>

namespace varda::device {

/// A port's name is no path here: to look it up as one would open the port. It counts in letters of either
/// size, and with the system's folder of devices before it.
std::string nodeTarget(const std::string& node, const std::string& /*root*/) {
    constexpr std::string_view deviceFolder = R"(\\.\)";
    std::string name = node.starts_with(deviceFolder) ? node.substr(deviceFolder.size()) : node;
    std::ranges::transform(name, name.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return name;
}

/// There is none here.
std::string identityOfLink(const std::string& /*node*/, const std::string& /*target*/,
                           const std::string& /*root*/) {
    return {};
}

} // namespace varda::device
