#pragma once

#include <QtGlobal>

namespace varda::window {

/// Asks the system to bring the window of a process, or of one that it started, to the front. Does nothing
/// where there is no such window, or nobody to ask: a window manager of X11, or Windows, where only a process
/// of its own is found.
/// @return false where it does nothing, as on Wayland. That a window came is seen by isInFront() alone, later
bool raiseWindowOf(qint64 process);

/// Whether the window that has the keyboard is of a process, or of one that it started.
bool isInFront(qint64 process);

/// Asks the window of a process, or of one that it started, to close, as its user would.
/// @return false where there is no such window, or nobody to ask
bool closeWindowOf(qint64 process);

} // namespace varda::window
