#pragma once

#include <QString>

#include <string_view>

class QLineEdit;
class QPlainTextEdit;

namespace varda::window {

/// A text of ours. @param text in UTF-8
QString inQt(std::string_view text);

// A text that stands there already is left alone, and with it caret and selection. Texts are in UTF-8.

void showText(QLineEdit* field, std::string_view text);
void showText(QPlainTextEdit* field, std::string_view text);

/// What stands in grey in a field while its text is empty.
void showPlaceholder(QLineEdit* field, std::string_view text);
void showPlaceholder(QPlainTextEdit* field, std::string_view text);

/// Greys a text that is no longer of now; it stays as it is, and can be selected.
void showAsOld(QPlainTextEdit* field, bool old);

} // namespace varda::window
