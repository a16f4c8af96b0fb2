#pragma once

#include <string>
#include <vector>

namespace varda::window {

/// What stands behind the program's name on its command line, without what was meant for Qt. Once there is an
/// application object, which takes that out of argc and argv.
std::vector<std::string> argumentsLeftByQt(int argc, char** argv);

} // namespace varda::window
