#include "window/system/own_arguments.h"

#include <QCoreApplication>

namespace varda::window {

std::vector<std::string> argumentsLeftByQt(int /*argc*/, char** /*argv*/) {
    std::vector<std::string> arguments;
    for (const QString& argument : QCoreApplication::arguments().mid(1)) {
        arguments.push_back(argument.toStdString());
    }
    return arguments;
}

} // namespace varda::window
