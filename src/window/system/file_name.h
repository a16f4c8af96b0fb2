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

} // namespace varda::window
