#include "platform/file_dialogs.h"

#include <QFileDialog>

#include <utility>

namespace varda {
namespace {

QFileDialog* makeDialog(QWidget* window, const QString& programFolder, const FileDialogs::Kind& kind) {
    auto* const dialog = new QFileDialog(window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilter(QStringLiteral("*") + kind.extension);
    dialog->setDefaultSuffix(kind.extension.mid(1));
    dialog->setDirectory(programFolder + QLatin1Char('/') + kind.folder);
    return dialog;
}

void show(QFileDialog* dialog, FileDialogs::Chosen chosen) {
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog, std::move(chosen));
    dialog->open();
}

} // namespace

void FileDialogs::chooseToOpen(const Kind& kind, Chosen chosen) {
    QFileDialog* const dialog = makeDialog(window_, programFolder_, kind);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
    show(dialog, std::move(chosen));
}

void FileDialogs::chooseToSave(const Kind& kind, Chosen chosen) {
    QFileDialog* const dialog = makeDialog(window_, programFolder_, kind);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    show(dialog, std::move(chosen));
}

} // namespace varda
