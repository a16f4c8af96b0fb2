#include "window/shell/lines.h"

#include "core/base/blanks.h"
#include "core/virtual/virtual_line.h"
#include "device/device_line.h"

#include <QCoreApplication>

namespace varda::window {
namespace {

void runInEventLoop(std::function<void()> task) {
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(task), Qt::QueuedConnection);
}

} // namespace

MSComm::LineFactory lineFactory(Clock& clock, Controller& controller) {
    return [&clock, &controller](const std::string& name) -> std::unique_ptr<Line> {
        if (withoutBlanksAround(name) == virtualPortName) {
            return std::make_unique<VirtualLine>(controller, clock);
        }
        return std::make_unique<device::DeviceLine>(name, runInEventLoop);
    };
}

} // namespace varda::window
