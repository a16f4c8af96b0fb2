#pragma once

#include <QIcon>

namespace varda::window {

/// The program's icon, drawn for every size that desktops ask for.
QIcon programIcon();

} // namespace varda::window
