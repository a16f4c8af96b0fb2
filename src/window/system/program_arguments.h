#pragma once

#include "window/system/external_program.h"

class QProcess;

namespace varda::window {

/// Hands a process what it is called with, as this system does.
void setArguments(QProcess& process, const ProgramCall& call);

} // namespace varda::window
