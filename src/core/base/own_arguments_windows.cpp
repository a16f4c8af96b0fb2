#include "core/base/own_arguments.h"

#include "core/base/utf8_windows.h"

// In this order: the first defines what the second uses.
#include <windows.h>

#include <shellapi.h>

namespace varda::inline core {

/// The letters of argv are those of the system's code page, into which few names fit.
std::vector<std::string> ownArguments(int /*argc*/, char** /*argv*/) {
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    for (int index = 1; index < count; ++index) {
        arguments.push_back(utf8(words[index]));
    }
    ::LocalFree(words);
    return arguments;
}

} // namespace varda::core
