#pragma once

class QWidget;

namespace varda::window {

/// Lets every frame text of a window be read and copied whole, also where the mode has it disabled: the wheel
/// and the scroll bar move it, and its context menu copies what is selected, or else all of it. A list of
/// frames gets the same menu for the line under the pointer, unless its form asks for no menu.
void keepFramesReadable(QWidget* window);

} // namespace varda::window
