#include "shell/lines.h"

#include "device/device_line.h"
#include "platform/blanks.h"
#include "virtual/virtual_line.h"

#include <QCoreApplication>

namespace varda {
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
        return std::make_unique<DeviceLine>(name, runInEventLoop);
    };
}

} // namespace varda
