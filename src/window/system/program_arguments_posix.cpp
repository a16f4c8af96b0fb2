#include "window/system/program_arguments.h"

#include <QProcess>

namespace varda::window {

void setArguments(QProcess& process, const ProgramCall& call) { process.setArguments(call.arguments); }

} // namespace varda::window
