#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace varda::window {

/// The file dialogs of one window. Opening one returns at once; cancelling it does nothing. They leave
/// nothing behind on the disk.
///
/// Opening one throws RuntimeError 67 where no more files can be opened.
class FileDialogs {
public:
    using Chosen = std::function<void(const QString& path)>;

    /// One kind of file.
    struct Kind {
        QString extension; ///< with its dot; added to a chosen name that has none
        QString folder;    ///< below the program's own folder; where the dialogs start
        QString title{};   ///< the system's own where it is empty
    };

    /// @param programFolder the program's own folder
    FileDialogs(QWidget* window, QString programFolder)
        : window_(window), programFolder_(std::move(programFolder)) {}

    void chooseToOpen(const Kind& kind, Chosen chosen);
    /// Asks before a file is chosen that exists. Starts in the user's documents where the folder of the kind
    /// may not be written, as where the program is installed for everybody.
    void chooseToSave(const Kind& kind, Chosen chosen);

private:
    QString folderOf(const Kind& kind) const;
    QString folderToSave(const Kind& kind) const;

    QWidget* window_;
    QString programFolder_;
};

} // namespace varda::window
