#include "device/port_names.h"

namespace varda::device {

std::string describe(const PortName& port) {
    std::string device = port.description;
    if (!port.maker.empty() && port.description.find(port.maker) == std::string::npos) {
        device += (device.empty() ? "" : ", ") + port.maker;
    }
    std::string text = port.node + (device.empty() ? "" : " - " + device);
    if (!port.serialNumber.empty()) {
        text += " (serial number " + port.serialNumber + ")";
    }
    return text;
}

} // namespace varda::device
