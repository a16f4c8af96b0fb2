#include "window/system/print.h"

#include <cstdio>

namespace varda::window {

void print(const std::string& text, bool isError) { std::fputs(text.c_str(), isError ? stderr : stdout); }

} // namespace varda::window
