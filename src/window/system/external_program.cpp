#include "window/system/external_program.h"

#include "core/base/runtime_error.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>

#include <chrono>

namespace varda::window {
namespace {

#if defined(Q_OS_MACOS)
constexpr QLatin1String opener("open");
#else
constexpr QLatin1String opener("xdg-open");
#endif

/// A program that ends with a failure within this time has shown nothing: it is another one of that name.
constexpr auto longestFailure = std::chrono::seconds(2);

RuntimeError nothingStarted(const QString& file, const QString& reason) {
    return fileNotFound(file.toStdString() + ": " + reason.toStdString());
}

/// The programs that run yet. Never taken down: they are let go at the end of this program, where deleting
/// them would end them as well.
QSet<QObject*>& running() {
    static auto* const processes = new QSet<QObject*>;
    return *processes;
}

/// Starts a process that is deleted when it ends.
/// @param ended told whether it could be started, and ended well
void start(const QString& program, const QString& argument, QObject* context,
           const std::function<void(bool started, bool endedWell)>& ended) {
    auto* const process = new QProcess;
    running().insert(process);
    QObject::connect(process, &QObject::destroyed, [process] { running().remove(process); });
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    QObject::connect(process, &QProcess::finished, context,
                     [ended](int exitCode, QProcess::ExitStatus status) {
                         ended(true, exitCode == 0 && status == QProcess::NormalExit);
                     });
    QObject::connect(process, &QProcess::errorOccurred, context,
                     [process, ended](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart) {
                             process->deleteLater(); // it never ends
                             ended(false, false);
                         }
                     });
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    process->start(program, {argument});
}

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
    start(program, file, context, [file, failed](bool /*started*/, bool endedWell) {
        if (!endedWell) {
            failed(nothingStarted(file,
                                  QStringLiteral("no program opens it. Install a viewer for CHM files, for "
                                                 "example xchm.")));
        }
    });
}

/// The file's name as this system writes it: the command names it with the separators of another one.
QString ownName(QString file) {
    return QDir::cleanPath(file.replace(QLatin1String("\\\\"), QLatin1String("/")));
}

/// The same where nobody waits for what it throws.
void tryDesktop(const QString& file, QObject* context,
                const std::function<void(const RuntimeError& error)>& failed) {
    try {
        openWithDesktop(file, context, failed);
    } catch (const RuntimeError& error) {
        failed(error);
    }
}

} // namespace

void startProgram(const QString& commandText, QObject* context,
                  const std::function<void(const RuntimeError& error)>& failed) {
    const qsizetype blank = commandText.indexOf(QLatin1Char(' '));
    const QString file = commandText.mid(blank + 1);
    const QString program = QStandardPaths::findExecutable(commandText.left(blank));
    if (program.isEmpty()) {
        openWithDesktop(ownName(file), context, failed);
        return;
    }
    const QDeadlineTimer atOnce(longestFailure);
    // How a viewer that was at work ends is its own matter.
    start(program, file, context, [file, context, failed, atOnce](bool started, bool endedWell) {
        if (!started || (!endedWell && !atOnce.hasExpired())) {
            tryDesktop(ownName(file), context, failed);
        }
    });
}

} // namespace varda::window
