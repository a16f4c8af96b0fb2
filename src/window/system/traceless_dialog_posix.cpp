#include "window/system/traceless_dialog.h"

#include <QFileDialog>
#include <QSettings>

namespace varda::window {

QFileDialog* makeTracelessDialog(QWidget* window) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
    return new QFileDialog(window);
}

} // namespace varda::window
