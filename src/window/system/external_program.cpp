#include "window/system/external_program.h"

#include "core/base/runtime_error.h"
#include "window/system/desktop_opener.h"
#include "window/system/program_arguments.h"
#include "window/system/raise_window.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#include <chrono>
#include <utility>

namespace varda::window {
namespace {

using Failed = std::function<void(const RuntimeError& error)>;

/// A program that ends with a failure within this time has shown nothing: it is another one of that name.
constexpr auto longestFailure = std::chrono::seconds(2);
/// An opener looks for a viewer for so long at most. One that fails later has found a viewer, which ended
/// badly.
constexpr auto longestSearch = std::chrono::seconds(10);

/// A window manager that brings a window to the front at all has done so by then.
constexpr auto longestRaising = std::chrono::milliseconds(700);

/// How a program ended, or that it never began.
struct End {
    bool started;
    bool well;
    int exitCode;
};

RuntimeError nothingStarted(const QString& file, const QString& reason, const QString& remedy) {
    RuntimeError error = fileNotFound(file.toStdString() + ": " + reason.toStdString());
    error.advise(remedy.toStdString());
    return error;
}

RuntimeError endedBadly(const QString& file) {
    RuntimeError error(run_time_error::invalidProcedureCall,
                       "Invalid procedure call or argument: the viewer of " + file.toStdString() +
                           " ended with a failure.");
    error.advise("Open the file yourself, or install another viewer " + remedyForNoViewer().toStdString());
    return error;
}

QString nameOf(const ProgramCall& call) {
    return (QStringList(call.program) + call.arguments).join(QChar(0));
}

/// What shows a file.
struct Viewer {
    QString call;
    QProcess* process = nullptr;
    QDeadlineTimer opening{longestFailure}; ///< as long as it may have no window yet

    bool runs() const { return process != nullptr && process->state() != QProcess::NotRunning; }
};

/// By their files: of each there is one. Never taken down: viewers are let go at the end of this program,
/// where deleting them would end them as well.
QHash<QString, Viewer>& viewers() {
    static auto* const running = new QHash<QString, Viewer>;
    return *running;
}

/// A viewer that shows another place of the file makes room for the next one, and how it ends is no news.
void letGo(const QString& file) {
    const Viewer viewer = viewers().take(file);
    if (viewer.runs() && !closeWindowOf(viewer.process->processId())) {
        viewer.process->terminate();
    }
}

/// Starts a process that is deleted when it ends.
void start(const ProgramCall& call, const QString& file, QObject* context,
           const std::function<void(const End& end)>& ended) {
    letGo(file);
    auto* const process = new QProcess;
    viewers().insert(file, {nameOf(call), process});
    const auto isCurrent = [file, process] { return viewers().value(file).process == process; };
    QObject::connect(process, &QObject::destroyed, [file, isCurrent] {
        if (isCurrent()) {
            viewers().remove(file);
        }
    });
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    QObject::connect(process, &QProcess::finished, context,
                     [ended, isCurrent](int exitCode, QProcess::ExitStatus status) {
                         if (isCurrent()) {
                             ended({true, exitCode == 0 && status == QProcess::NormalExit, exitCode});
                         }
                     });
    QObject::connect(process, &QProcess::errorOccurred, context,
                     [process, ended](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart) {
                             process->deleteLater(); // it never ends
                             ended({false, false, 0});
                         }
                     });
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    process->setProgram(call.program);
    setArguments(*process, call);
    process->start();
}

Raising& ownRaising() {
    static Raising raising{raiseWindowOf, isInFront};
    return raising;
}

/// Looks again and again whether the window of a file's viewer has come to the front; `unseen` runs where it
/// has not, for a desktop may refuse in silence.
void lookForWindow(const QString& file, qint64 processId, const QDeadlineTimer& patience, QObject* context,
                   const std::function<void()>& unseen) {
    constexpr auto fromLookToLook = std::chrono::milliseconds(50);
    const Viewer viewer = viewers().value(file);
    const bool isCurrent = viewer.runs() && viewer.process->processId() == processId;
    if (!isCurrent || ownRaising().isInFront(processId)) {
        return;
    }
    if (patience.hasExpired()) {
        unseen();
        return;
    }
    QTimer::singleShot(fromLookToLook, context, [file, processId, patience, context, unseen] {
        lookForWindow(file, processId, patience, context, unseen);
    });
}

/// @param unseen runs later where the window does not come to the front
/// @return false where no program runs from that call, or nobody can bring its window there though it has had
/// the time to open one
bool showAgain(const ProgramCall& call, const QString& file, QObject* context,
               const std::function<void()>& unseen) {
    const Viewer viewer = viewers().value(file);
    if (!viewer.runs() || viewer.call != nameOf(call)) {
        return false;
    }
    if (!ownRaising().ask(viewer.process->processId())) {
        return !viewer.opening.hasExpired(); // started anew, a slow one would never come up
    }
    lookForWindow(file, viewer.process->processId(), QDeadlineTimer(longestRaising), context, unseen);
    return true;
}

/// What an opener says by its exit code: 2, no such file; 3, no program for it.
bool foundNoViewer(const End& end) { return !end.started || end.exitCode == 2 || end.exitCode == 3; }

/// Hands a file to the desktop's opener.
void startOpener(const ProgramCall& call, const QString& file, QObject* context, const Failed& failed) {
    const QDeadlineTimer search(longestSearch);
    start(call, file, context, [file, failed, search](const End& end) {
        if (end.well || search.hasExpired()) {
            return;
        }
        failed(foundNoViewer(end) ? nothingStarted(file, QStringLiteral("no program opens it."),
                                                   QStringLiteral("Install a viewer ") + remedyForNoViewer())
                                  : endedBadly(file));
    });
}

/// @throws RuntimeError 53 where the file is not there, or there is no opener
void openWithDesktop(const QString& file, QObject* context, const Failed& failed) {
    if (!QFileInfo::exists(file)) {
        throw nothingStarted(
            file, QStringLiteral("it was not installed with the program."),
            QStringLiteral(
                "Install the program again, or open docs/help/index.html of its sources in a browser."));
    }
    const ProgramCall call = desktopOpener(file);
    if (call.program.isEmpty()) {
        throw nothingStarted(desktopOpenerName(), QStringLiteral("it is not installed."),
                             remedyForNoOpener(file));
    }
    const auto startAnew = [call, file, context, failed] { startOpener(call, file, context, failed); };
    if (!showAgain(call, file, context, startAnew)) {
        startAnew();
    }
}

/// The same where nobody waits for what it throws.
void tryNext(const QList<ProgramCall>& calls, const QString& file, QObject* context, const Failed& failed) {
    try {
        startFirstOf(calls, file, context, failed);
    } catch (const RuntimeError& error) {
        failed(error);
    }
}

} // namespace

QString ownName(QString file) {
    const QLatin1String others("\\\\");
    const qsizetype place = file.lastIndexOf(others); // at its beginning they may be a server's
    return QDir::cleanPath(place > 0 ? file.replace(place, others.size(), QLatin1Char('/')) : file);
}

void startProgram(const QString& commandText, QObject* context, const Failed& failed) {
    const qsizetype blank = commandText.indexOf(QLatin1Char(' '));
    const QString file = commandText.mid(blank + 1);
    startFirstOf({{commandText.left(blank), {file}, true}}, ownName(file), context, failed);
}

void startFirstOf(const QList<ProgramCall>& calls, const QString& file, QObject* context,
                  const Failed& failed) {
    if (calls.isEmpty()) {
        openWithDesktop(file, context, failed);
        return;
    }
    const QList<ProgramCall> others = calls.mid(1);
    ProgramCall call = calls.first();
    call.program = QStandardPaths::findExecutable(call.program);
    if (call.program.isEmpty()) {
        startFirstOf(others, file, context, failed);
        return;
    }
    const auto startAnew = [call, others, file, context, failed] {
        const QDeadlineTimer atOnce(longestFailure);
        start(call, file, context, [others, file, context, failed, atOnce](const End& end) {
            if (!end.started || (!end.well && !atOnce.hasExpired())) {
                tryNext(others, file, context, failed);
            }
        });
    };
    if (!showAgain(call, file, context, startAnew)) {
        startAnew();
    }
}

Raising raiseBy(Raising raising) { return std::exchange(ownRaising(), std::move(raising)); }

} // namespace varda::window
