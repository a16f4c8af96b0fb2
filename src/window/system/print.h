#pragma once

#include <string>

namespace varda::window {

/// Says something to whoever started the program from a command line.
/// @param isError whether it goes where errors go
void print(const std::string& text, bool isError);

} // namespace varda::window
