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
/// What runs yet from the same call is not started again: its window comes to the front, where the desktop
/// lets that be asked. What shows another place of the file is closed first, so that there is one viewer.
void startFirstOf(const QList<ProgramCall>& calls, const QString& file, QObject* context,
                  const std::function<void(const RuntimeError& error)>& failed);

/// The name of a file as this system writes it: the help command names it with the separators of another one.
QString ownName(QString file);

} // namespace varda::window
