#include "window/system/raise_window.h"

namespace varda::window {

bool raiseWindowOf(qint64 /*process*/) { return false; }

bool isInFront(qint64 /*process*/) { return false; }

bool closeWindowOf(qint64 /*process*/) { return false; }

} // namespace varda::window
