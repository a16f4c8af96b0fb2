#pragma once

class QMainWindow;
class QWidget;

namespace varda::window {

/// Puts a part of a window into an area that scrolls up and down where there is not room for all of it.
/// @return the area, to be laid out in the part's place
QWidget* lettingScroll(QWidget* part);

/// Lets a window be as small as any screen: its whole content scrolls where it has shrunk as far as it can.
/// Its first size is no more than the screen has room for; where it comes to stand is the window manager's
/// matter.
void fitScreen(QMainWindow* window);

} // namespace varda::window
