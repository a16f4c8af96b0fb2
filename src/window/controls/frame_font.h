#pragma once

#include <QFont>
#include <QStringList>

namespace varda::window {

/// The wished font, where what the desktop has for it is really of fixed width, else the first of the other
/// families that is; a theme may name a font that is not there, and gets one that is not fixed.
QFont fixedWidthFont(const QFont& wished, const QStringList& otherwise);

/// The fixed-width font of every frame, so that bytes stand below one another.
QFont frameFont();

} // namespace varda::window
