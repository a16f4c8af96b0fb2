#pragma once

#include <QKeyEvent>

namespace varda {

/// Whether a key is one that types, Enter and Backspace included. Keys that move the focus and shortcuts type
/// nothing, though they bear a text.
inline bool typesCharacter(const QKeyEvent& key) {
    const bool isShortcut =
        (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
    const bool movesFocus = key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab;
    return !key.text().isEmpty() && !isShortcut && !movesFocus;
}

} // namespace varda
