#include "window/controls/file_dialogs.h"

#include "core/files/free_handles.h"
#include "window/system/traceless_dialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace varda::window {
namespace {

QFileDialog* makeDialog(QWidget* window, const QString& folder, const FileDialogs::Kind& kind) {
    requireFreeHandles();
    auto* const dialog = makeTracelessDialog(window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilter(QStringLiteral("*") + kind.extension);
    dialog->setDefaultSuffix(kind.extension.mid(1));
    dialog->setDirectory(folder);
    if (!kind.title.isEmpty()) {
        dialog->setWindowTitle(kind.title);
    }
    return dialog;
}

void show(QFileDialog* dialog, FileDialogs::Chosen chosen) {
    QObject::connect(
        dialog, &QFileDialog::fileSelected, dialog,
        [chosen = std::move(chosen)](const QString& file) { chosen(QDir::toNativeSeparators(file)); });
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
