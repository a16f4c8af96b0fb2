#include "platform/external_program.h"

#include "platform/runtime_error.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace varda {
namespace {

#if defined(Q_OS_MACOS)
constexpr QLatin1String opener("open");
#else
constexpr QLatin1String opener("xdg-open");
#endif

RuntimeError nothingStarted(const QString& file, const QString& reason) {
    return fileNotFound(file.toStdString() + ": " + reason.toStdString());
}

/// A process that outlives its object's owner: it is deleted when it ends, and let go with this program.
QProcess* start(const QString& program, const QString& argument) {
    auto* const process = new QProcess;
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    process->start(program, {argument});
    return process;
}

/// The opener's own exit codes for "no such file", "no program for it" and "the program failed"; others are
/// the program's.
bool openerFailed(int exitCode) { return exitCode >= 2 && exitCode <= 4; }

/// Hands a file to the desktop. @throws RuntimeError 53 where it is not there, or there is no opener
void openWithDesktop(const QString& file, QObject* context,
                     const std::function<void(const RuntimeError& error)>& failed) {
    if (!QFileInfo::exists(file)) {
        throw nothingStarted(file, QStringLiteral("it was not installed with the program."));
    }
    const QString program = QStandardPaths::findExecutable(opener);
    if (program.isEmpty()) {
        throw nothingStarted(opener, QStringLiteral("install xdg-utils, or open %1 yourself.").arg(file));
    }
    QObject::connect(start(program, file), &QProcess::finished, context, [file, failed](int exitCode) {
        if (openerFailed(exitCode)) {
            failed(nothingStarted(file, QStringLiteral("no program opens it. Install a viewer for CHM "
                                                       "files, for example kchmviewer.")));
        }
    });
}

} // namespace

void startProgram(const QString& commandText, QObject* context,
                  const std::function<void(const RuntimeError& error)>& failed) {
    const qsizetype blank = commandText.indexOf(QLatin1Char(' '));
    const QString file = commandText.mid(blank + 1);
    const QString program = QStandardPaths::findExecutable(commandText.left(blank));
    if (!program.isEmpty()) {
        start(program, file);
        return;
    }
    // The command names its file with the separators of another system.
    openWithDesktop(QDir::cleanPath(QString(file).replace(QLatin1String("\\\\"), QLatin1String("/"))),
                    context, failed);
}

} // namespace varda
