#include "window/system/own_arguments.h"

#include "core/base/utf8_windows.h"

#include <QCoreApplication>

// In this order: the first defines what the second uses.
#include <windows.h>

#include <shellapi.h>

namespace varda::window {

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

std::vector<std::string> argumentsLeftByQt(int /*argc*/, char** /*argv*/) {
    std::vector<std::string> arguments;
    for (const QString& argument : QCoreApplication::arguments().mid(1)) {
        arguments.push_back(argument.toStdString());
    }
    return arguments;
}

} // namespace varda::window
