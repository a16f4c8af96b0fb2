#pragma once

class QWidget;

namespace varda {

/// Lets every frame text and every list of frames of a window be copied from its context menu: what is
/// selected, or else the whole frame. Works where the mode has the field disabled, too, and leaves out lists
/// whose form asks for no menu.
void offerCopy(QWidget* window);

} // namespace varda
