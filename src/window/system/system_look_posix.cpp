#include "window/system/system_look.h"

namespace varda::window {

void followSystemLook() {}

QString styleForSystemLook() { return {}; }

} // namespace varda::window
