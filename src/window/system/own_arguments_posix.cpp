#include "window/system/own_arguments.h"

#include "core/base/own_arguments.h"

namespace varda::window {

std::vector<std::string> argumentsLeftByQt(int argc, char** argv) { return ownArguments(argc, argv); }

} // namespace varda::window
