#pragma once

#include <QComboBox>
#include <QFontMetrics>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QString>

#include <algorithm>
#include <string>

namespace varda::window {

/// Shows a text; caret and selection of one that is shown already stay.
inline void showText(QLineEdit* line, const std::string& text) {
    const QString shown = QString::fromStdString(text);
    if (line->text() != shown) {
        line->setText(shown);
    }
}

inline void showText(QPlainTextEdit* field, const std::string& text) {
    const QString shown = QString::fromStdString(text);
    if (field->toPlainText() != shown) {
        field->setPlainText(shown);
    }
}

inline std::string textOf(const QComboBox* list) { return list->currentText().toStdString(); }

/// The width of every character of a fixed-width font.
inline int characterWidth(const QFontMetrics& font) {
    return std::max(1, font.horizontalAdvance(QLatin1Char('0')));
}

} // namespace varda::window
