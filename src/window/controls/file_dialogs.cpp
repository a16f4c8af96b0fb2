#include "window/controls/file_dialogs.h"

#include "core/files/free_handles.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace varda::window {
namespace {

/// Dialogs would write down the folders they have been in, in a file of the user's that all programs of Qt
/// share; and read what others wrote.
void keepNoHistory() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

QFileDialog* makeDialog(QWidget* window, const QString& folder, const FileDialogs::Kind& kind) {
    requireFreeHandles();
    keepNoHistory();
    auto* const dialog = new QFileDialog(window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilter(QStringLiteral("*") + kind.extension);
    dialog->setDefaultSuffix(kind.extension.mid(1));
    dialog->setDirectory(folder);
    return dialog;
}

void show(QFileDialog* dialog, FileDialogs::Chosen chosen) {
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog, std::move(chosen));
    dialog->open();
}

} // namespace

QString FileDialogs::folderOf(const Kind& kind) const {
    return programFolder_ + QLatin1Char('/') + kind.folder;
}

QString FileDialogs::folderToSave(const Kind& kind) const {
    const QFileInfo own(folderOf(kind));
    if (own.isDir() && own.isWritable()) {
        return own.filePath();
    }
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

void FileDialogs::chooseToOpen(const Kind& kind, Chosen chosen) {
    QFileDialog* const dialog = makeDialog(window_, folderOf(kind), kind);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
    show(dialog, std::move(chosen));
}

void FileDialogs::chooseToSave(const Kind& kind, Chosen chosen) {
    QFileDialog* const dialog = makeDialog(window_, folderToSave(kind), kind);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    show(dialog, std::move(chosen));
}

} // namespace varda::window
