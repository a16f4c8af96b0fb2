#pragma once

#include "window/system/external_program.h"

namespace varda::window {

QString desktopOpenerName();

/// What shows a file as the desktop would on a double click. The program is empty where there is no such
/// opener.
ProgramCall desktopOpener(const QString& file);

/// What to do where there is none.
QString remedyForNoOpener(const QString& file);

/// What to do where it has found no program for a help file, or one that failed.
QString remedyForNoViewer();

} // namespace varda::window
