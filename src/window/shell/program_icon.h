#pragma once

#include <QIcon>

namespace varda::window {

/// The program's icon, drawn for every size that desktops ask for.
/// @param largest of its pictures, in pixels. To read the two above 64, and to hand them to the desktop,
/// takes a twentieth of the time until the window is painted.
QIcon programIcon(int largest = 256);

} // namespace varda::window
