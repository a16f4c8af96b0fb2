#pragma once

#include <string>
#include <string_view>

namespace varda::device {

/// The device node that the name of a port stands for; blanks around the name do not count.
///
/// On Linux "COM" and a number n from 1 on means "/dev/ttyS" and n - 1, a name with a slash is a path as it
/// stands, any other name is a node in "/dev". Elsewhere every name stands as it is.
/// @return the node, whether or not it exists; empty for an empty name
std::string deviceNode(std::string_view name);

/// What may stand where a port is asked for, in words; the embedded controller's name comes last.
std::string_view portNamesInWords();

/// The name that somebody may mean who writes one in small letters, "VIRTUAL" or "COM1": capitals count in
/// both. Empty for a name that stands as it should, or that is like neither.
std::string meantInCapitals(std::string_view name);

} // namespace varda::device
