#include "window/system/own_arguments.h"

namespace varda::window {

std::vector<std::string> ownArguments(int argc, char** argv) {
    return argc > 0 ? std::vector<std::string>{argv + 1, argv + argc} : std::vector<std::string>();
}

std::vector<std::string> argumentsLeftByQt(int argc, char** argv) { return ownArguments(argc, argv); }

} // namespace varda::window
