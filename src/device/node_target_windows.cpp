#include "device/node_target.h"

#include "device/windows_words.h"

namespace varda::device {

/// A port's name is no path here: to look it up as one would open the port.
std::string nodeTarget(const std::string& node, const std::string& /*root*/) {
    return windows_words::listedName(node);
}

/// There is none here.
std::string identityOfLink(const std::string& /*node*/, const std::string& /*target*/,
                           const std::string& /*root*/) {
    return {};
}

} // namespace varda::device
