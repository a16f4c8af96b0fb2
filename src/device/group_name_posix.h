#pragma once

#include <sys/types.h>

#include <string>

namespace varda::device {

/// The name of a group, or its number where it has none.
std::string groupName(gid_t id);

} // namespace varda::device
