#include "window/shell/program_icon.h"

#include <QDir>

/// Links the pictures in: nothing else names them. The macro works outside of namespaces only.
static void loadPictures() { Q_INIT_RESOURCE(icon); }

namespace varda::window {

QIcon programIcon() {
    loadPictures();
    QIcon icon;
    const QDir pictures(QStringLiteral(":/icon"));
    for (const QString& picture : pictures.entryList()) {
        icon.addFile(pictures.filePath(picture));
    }
    return icon;
}

} // namespace varda::window
