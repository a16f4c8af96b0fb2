#pragma once

#include <QObject>

#include <functional>

class QLineEdit;

namespace varda::window {

/// Lets only some characters be typed into a field; letters "a" .. "f" are turned into upper case first. Keys
/// that type no character (arrows, shortcuts, backspace, tab) always pass. What is pasted is not looked at.
class KeyFilter : public QObject {
    Q_OBJECT

public:
    using Accepts = std::function<bool(char16_t character)>;

    /// @param accepts decides on a character that is already upper case
    KeyFilter(QLineEdit* field, Accepts accepts);

    /// "0" .. "9" and the characters that every key filter lets through.
    static bool isDigitOrKept(char16_t character);
    /// "A" .. "F".
    static bool isHexLetter(char16_t character);
    /// kept: "%" and "'" bear the codes of two arrow keys and pass as characters too
    static bool isKept(char16_t character);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLineEdit* field_;
    Accepts accepts_;
};

} // namespace varda::window
