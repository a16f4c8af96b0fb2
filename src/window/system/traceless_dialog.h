#pragma once

class QFileDialog;
class QWidget;

namespace varda::window {

/// A file dialog that writes no history: dialogs would write down the folders they have been in, at a place
/// of the user's that all programs of Qt share; and read what others wrote.
QFileDialog* makeTracelessDialog(QWidget* window);

} // namespace varda::window
