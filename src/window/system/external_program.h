#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class QObject;

namespace varda::inline core {
class RuntimeError;
} // namespace varda::core

namespace varda::window {

/// A program by its name, as it is found on the path, and what it is called with.
struct ProgramCall {
    QString program;
    QStringList arguments;
    /// Where a program is called with one text, as on Windows, they stand in it without quotes.
    bool asTheyStand = false;
};

/// Starts another program in a window of its own and returns at once. It lives on when this program ends.
///
/// Where the desktop has no such program, or it fails at once, the desktop's opener gets the file that the
/// command names, for example xdg-open.
/// @param commandText the program, a blank and one file, whose name may hold blanks
/// @param failed told later where the opener found nothing that shows the file, or what it found failed at
/// once; not once `context` is gone. How a viewer that was at work ends is its own matter
/// @throws RuntimeError 53 where nothing can be started
void startProgram(const QString& commandText, QObject* context,
                  const std::function<void(const RuntimeError& error)>& failed);

/// The same with more than one program to choose from: the first that is there and does not fail at once, and
/// the opener with the file behind them all.
///
/// What runs yet from the same call is not started again: its window comes to the front. Where it is not seen
/// to come there, because the desktop lets nobody ask for example, it is started anew, but not within the two
/// seconds that it may take to open a window. There is one viewer of a file: the one before, which shows
/// another place of it or cannot be seen, is closed first.
void startFirstOf(const QList<ProgramCall>& calls, const QString& file, QObject* context,
                  const std::function<void(const RuntimeError& error)>& failed);

/// How the windows of other programs are brought to the front; see raise_window.
struct Raising {
    std::function<bool(qint64 process)> ask;
    std::function<bool(qint64 process)> isInFront;
};

/// Exchanges how that is done, for tests. @return how it was done before
Raising raiseBy(Raising raising);

/// The name of a file as this system writes it: the help command names it with the separators of another one.
QString ownName(QString file);

} // namespace varda::window
