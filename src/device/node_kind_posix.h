#pragma once

#include <sys/stat.h>

namespace varda::device {

/// What a node is instead of a serial port, one of refusal::; null where it may be one. Told before the node
/// is opened: to open a pipe or a file would leave traces, and a console looks like a serial port then.
const char* otherKind(const struct stat& node);

} // namespace varda::device
