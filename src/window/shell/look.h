#pragma once

#include <QList>

class QWidget;

namespace varda::window {

/// Gives every frame text and every list of frames the fixed-width font, so that bytes stand below one
/// another.
void useFixedWidthForFrames(QWidget* window);

/// What a page shows of an answer stays readable while the page's mode has its fields disabled.
void keepDisabledTextsReadable(QWidget* window);

/// Gives each list that has a name but no label one that is not shown: on Linux screen readers call a list by
/// its label alone.
void nameListsBeside(QWidget* window);

/// Joins the tab orders of the parts of a window, each part in the order of its own form.
void chainTabOrder(const QList<QWidget*>& parts);

/// Draws the edges of lists and texts two pixels wide: one pixel gets lost at some places where the desktop
/// is scaled.
void drawWholeFrames();

} // namespace varda::window
