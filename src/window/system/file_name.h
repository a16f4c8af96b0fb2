#pragma once

#include <QFile>
#include <QString>

#include <string>

namespace varda::window {

/// A file's name as the core takes it (see filePath in core/files/file_path.h).
inline std::string fileName(const QString& name) {
#ifdef Q_OS_WIN
    return name.toStdString(); // not encodeName: the names of Windows do not fit into its 8-bit letters
#else
    return QFile::encodeName(name).toStdString();
#endif
}

/// The way back: a name of the core's as the window shows it and hands it on.
inline QString shownName(const std::string& name) {
#ifdef Q_OS_WIN
    return QString::fromStdString(name);
#else
    return QFile::decodeName(QByteArray::fromStdString(name));
#endif
}

} // namespace varda::window
