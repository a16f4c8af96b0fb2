#include "device/lines.h"

#include "core/base/blanks.h"
#include "core/virtual/virtual_line.h"

#include <utility>

namespace varda::device {

MSComm::LineFactory lineFactory(Clock& clock, Controller& controller, DeviceLine::Post post) {
    return [&clock, &controller, post = std::move(post)](const std::string& name) -> std::unique_ptr<Line> {
        if (withoutBlanksAround(name) == virtualPortName) {
            return std::make_unique<VirtualLine>(controller, clock);
        }
        return std::make_unique<DeviceLine>(name, post);
    };
}

} // namespace varda::device
