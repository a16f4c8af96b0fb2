#include "shell/lines.h"

#include "platform/blanks.h"
#include "platform/device_line.h"
#include "virtual/virtual_line.h"

namespace varda {

MSComm::LineFactory lineFactory(Clock& clock, Controller& controller) {
    return [&clock, &controller](const std::string& name) -> std::unique_ptr<Line> {
        if (withoutBlanksAround(name) == virtualPortName) {
            return std::make_unique<VirtualLine>(controller, clock);
        }
        return std::make_unique<DeviceLine>(name);
    };
}

} // namespace varda
