#pragma once

#include <QComboBox>
#include <QFontMetricsF>

#include <algorithm>
#include <string>

namespace varda::window {

inline std::string textOf(const QComboBox* list) { return list->currentText().toStdString(); }

/// The width of every character of a fixed-width font; not always whole pixels, which adds up in a long line.
inline double characterWidth(const QFont& font) {
    return std::max(1.0, QFontMetricsF(font).horizontalAdvance(QLatin1Char('0')));
}

} // namespace varda::window
