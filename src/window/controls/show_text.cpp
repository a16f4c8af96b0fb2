#include "window/controls/show_text.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextCursor>

namespace varda::window {
namespace {

/// Without making a QString of what is compared.
bool isSame(const QString& shown, std::string_view text) {
    return QAnyStringView(shown) == QAnyStringView(QUtf8StringView(text.data(), qsizetype(text.size())));
}

QTextCursor wholeOf(const QPlainTextEdit* field) {
    QTextCursor whole(field->document());
    whole.select(QTextCursor::Document);
    return whole;
}

template <typename Field>
void setPlaceholder(Field* field, std::string_view text) {
    if (!isSame(field->placeholderText(), text)) {
        field->setPlaceholderText(inQt(text));
    }
}

} // namespace

QString inQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void showText(QLineEdit* field, std::string_view text) {
    if (!isSame(field->text(), text)) {
        field->setText(inQt(text));
    }
}

/// Anew, although in place it would take a quarter of the memory: the document keeps what was there then, up
/// to 96,000 characters of it.
void showText(QPlainTextEdit* field, std::string_view text) {
    if (!isSame(field->toPlainText(), text)) {
        field->setPlainText(inQt(text));
    }
}

void showPlaceholder(QLineEdit* field, std::string_view text) { setPlaceholder(field, text); }
void showPlaceholder(QPlainTextEdit* field, std::string_view text) { setPlaceholder(field, text); }

void showAsOld(QPlainTextEdit* field, bool old) {
    QTextEdit::ExtraSelection whole;
    whole.cursor = wholeOf(field);
    whole.format.setForeground(field->palette().placeholderText());
    field->setExtraSelections(old ? QList{whole} : QList<QTextEdit::ExtraSelection>());
}

} // namespace varda::window
