#pragma once

#include <string>

namespace varda::device {

/// Where the node of a name really stands; the node as it is where it leads nowhere. Opens nothing.
/// @param root where the system's folders are looked for, for tests
std::string nodeTarget(const std::string& node, const std::string& root = {});

/// What a pseudo-terminal is known by: the link that leads there. Empty for every other node.
std::string identityOfLink(const std::string& node, const std::string& target, const std::string& root = {});

} // namespace varda::device
