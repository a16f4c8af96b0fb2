#pragma once

#include <string>
#include <vector>

namespace varda::inline core {

/// What stands behind the program's name on its command line; names of files as the core takes them (see
/// filePath in core/files/file_path.h).
std::vector<std::string> ownArguments(int argc, char** argv);

} // namespace varda::core
