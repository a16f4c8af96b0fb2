#pragma once

#include <QString>

#include <functional>

class QObject;

namespace varda::inline core {
class RuntimeError;
} // namespace varda::core

namespace varda::window {

/// Starts another program in a window of its own and returns at once. It lives on when this program ends.
///
/// Where the desktop has no such program, or it fails at once, the desktop's opener gets the file that the
/// command names, for example xdg-open.
/// @param commandText the program, a blank and one file, whose name may hold blanks
/// @param failed told later where the opener found nothing that shows the file; not once `context` is gone
/// @throws RuntimeError 53 where nothing can be started
void startProgram(const QString& commandText, QObject* context,
                  const std::function<void(const RuntimeError& error)>& failed);

} // namespace varda::window
