#pragma once

#include "cli/streams.h"

#include <string>
#include <vector>

namespace varda::cli {

/// The whole tool. @param arguments those behind its name @return the exit code
int run(std::vector<std::string> arguments, const Streams& streams);

} // namespace varda::cli
