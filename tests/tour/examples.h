#pragma once

#include <QFileInfo>
#include <QString>

#include <string>

/// The path of an example file. With its drive, where the system has such: the dialogs take a name without
/// one for one in their own folder.
inline std::string example(const char* name) {
    return QFileInfo(QStringLiteral(VARDA_DATA_FOLDER "/") + QLatin1String(name))
        .absoluteFilePath()
        .toStdString();
}
