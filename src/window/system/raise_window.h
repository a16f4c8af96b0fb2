#pragma once

#include <QtGlobal>

namespace varda::window {

/// Asks the window manager to bring the window of a process, or of one that it started, to the front. Does
/// nothing where there is no such window, or no window manager of X11 to ask.
void raiseWindowOf(qint64 process);

/// Asks the window of a process, or of one that it started, to close, as its user would.
/// @return false where there is no such window, or no window manager of X11 to ask
bool closeWindowOf(qint64 process);

} // namespace varda::window
