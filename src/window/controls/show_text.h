#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

#include <string>

namespace varda::window {

// A text that stands there already is left alone, and with it caret and selection.

inline void showText(QLineEdit* field, const std::string& text) {
    if (const QString shown = QString::fromStdString(text); field->text() != shown) {
        field->setText(shown);
    }
}

inline void showText(QPlainTextEdit* field, const std::string& text) {
    if (const QString shown = QString::fromStdString(text); field->toPlainText() != shown) {
        field->setPlainText(shown);
    }
}

} // namespace varda::window
