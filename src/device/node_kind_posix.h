#pragma once

#include <sys/stat.h>

#include <string>

namespace varda::device {

/// What a node is instead of a serial port, one of refusal::; null where it may be one. Told before the node
/// is opened: to open a pipe or a file would leave traces, and a console looks like a serial port then.
const char* otherKind(const struct stat& node);

/// Whether the claim of a program that was killed stays on the node: a pseudo-terminal keeps it for as long
/// as its far end is open, other ports until they are closed. @param node without links
bool keepsClaims(const std::string& node);

} // namespace varda::device
