#pragma once

#include <QString>

namespace varda::window {

/// Has the window take on the colours of the desktop, light or dark, where Qt does not by itself. Before the
/// application object is made.
void followSystemLook();

/// The style that goes with these colours; empty where the system's own does.
QString styleForSystemLook();

} // namespace varda::window
