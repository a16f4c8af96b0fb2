#pragma once

#include <QComboBox>
#include <QFontMetrics>

#include <algorithm>
#include <string>

namespace varda::window {

inline std::string textOf(const QComboBox* list) { return list->currentText().toStdString(); }

/// The width of every character of a fixed-width font.
inline int characterWidth(const QFontMetrics& font) {
    return std::max(1, font.horizontalAdvance(QLatin1Char('0')));
}

} // namespace varda::window
