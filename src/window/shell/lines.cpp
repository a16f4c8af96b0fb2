#include "window/shell/lines.h"

#include "device/lines.h"

#include <QCoreApplication>

namespace varda::window {

MSComm::LineFactory lineFactory(Clock& clock, Controller& controller) {
    return device::lineFactory(clock, controller, [](std::function<void()> task) {
        QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(task), Qt::QueuedConnection);
    });
}

} // namespace varda::window
