#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextCursor>

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

/// Greys a text that is no longer of now; it stays as it is, and can be selected.
inline void showAsOld(QPlainTextEdit* field, bool old) {
    QTextEdit::ExtraSelection whole;
    whole.cursor = field->textCursor();
    whole.cursor.select(QTextCursor::Document);
    whole.format.setForeground(field->palette().placeholderText());
    field->setExtraSelections(old ? QList{whole} : QList<QTextEdit::ExtraSelection>());
}

} // namespace varda::window
