#include "window/system/desktop_opener.h"

#include <QDir>
#include <QStandardPaths>

namespace varda::window {

QString desktopOpenerName() { return QStringLiteral("rundll32"); }

/// As a double click would; it asks by itself which program to take where none is known.
ProgramCall desktopOpener(const QString& file) {
    return {QStandardPaths::findExecutable(desktopOpenerName()),
            {QStringLiteral("url.dll,FileProtocolHandler"), QDir::toNativeSeparators(file)},
            false};
}

QString remedyForNoOpener(const QString& file) {
    return QStringLiteral("Open %1 yourself.").arg(QDir::toNativeSeparators(file));
}

QString remedyForNoViewer() { return QStringLiteral("for CHM files; Windows comes with one, hh.exe."); }

} // namespace varda::window
