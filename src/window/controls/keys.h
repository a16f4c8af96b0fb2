#pragma once

#include <QKeyEvent>

namespace varda::window {

/// Whether a key is pressed for a shortcut.
inline bool isShortcut(const QKeyEvent& key) {
    return (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
}

/// Whether a key is one that types, Enter and Backspace included. Keys that move the focus, Delete and
/// shortcuts type nothing, though they bear a text.
inline bool typesCharacter(const QKeyEvent& key) {
    const bool typesNothing =
        key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab || key.key() == Qt::Key_Delete;
    return !key.text().isEmpty() && !isShortcut(key) && !typesNothing;
}

} // namespace varda::window
