#pragma once

#include "window/controls/saving.h"

namespace varda::window {

class Events;
class MessageBoxes;

/// Tells and asks about files in the boxes of one window. @param boxes, events outlive what is returned
FileTalk talkOf(MessageBoxes& boxes, Events& events);

} // namespace varda::window
