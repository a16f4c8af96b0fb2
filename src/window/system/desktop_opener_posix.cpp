#include "window/system/desktop_opener.h"

#include <QStandardPaths>

namespace varda::window {

QString desktopOpenerName() {
#if defined(Q_OS_MACOS)
    return QStringLiteral("open");
#else
    return QStringLiteral("xdg-open");
#endif
}

ProgramCall desktopOpener(const QString& file) {
    return {QStandardPaths::findExecutable(desktopOpenerName()), {file}, false};
}

QString remedyForNoOpener(const QString& file) {
    return QStringLiteral("Install xdg-utils, or open %1 yourself.").arg(file);
}

QString remedyForNoViewer() { return QStringLiteral("for CHM files, for example xchm."); }

} // namespace varda::window
