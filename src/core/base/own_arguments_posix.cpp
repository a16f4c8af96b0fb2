#include "core/base/own_arguments.h"

namespace varda::inline core {

std::vector<std::string> ownArguments(int argc, char** argv) {
    return argc > 0 ? std::vector<std::string>{argv + 1, argv + argc} : std::vector<std::string>();
}

} // namespace varda::core
