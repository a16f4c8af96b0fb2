#pragma once

#include <sys/types.h>

#include <string>

namespace varda::device {

/// The name of the user that this program runs for, or the number where there is none.
std::string userName();

/// Whether that user belongs to a group by the system's own lists, whether or not since before this session.
bool hasJoined(gid_t group);

} // namespace varda::device
