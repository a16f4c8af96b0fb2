#include "window/shell/program_icon.h"

#include <QDir>
#include <QFileInfo>

/// Links the pictures in: nothing else names them. The macro works outside of namespaces only.
static void loadPictures() { Q_INIT_RESOURCE(icon); }

namespace varda::window {

QIcon programIcon(int largest) {
    loadPictures();
    QIcon icon;
    for (const QFileInfo& picture : QDir(QStringLiteral(":/icon")).entryInfoList()) {
        if (picture.baseName().toInt() <= largest) { // each is named by its size
            icon.addFile(picture.filePath());
        }
    }
    return icon;
}

} // namespace varda::window
