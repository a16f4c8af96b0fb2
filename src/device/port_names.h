#pragma once

#include <string>
#include <vector>

namespace varda::device {

/// A serial port that is there now. What is not known of it is empty.
struct PortName {
    std::string node;              ///< what opens it, for example "/dev/ttyUSB0" or "COM3"
    std::string description;       ///< what the device says that it is
    std::string serialNumber = {}; ///< of the device
    std::string maker = {};        ///< of the device
    std::string stableName =
        {}; ///< opens it whichever number it gets, for example "/dev/serial/by-id/usb-.."
    /// What it is known by when it comes back, perhaps under another node. Empty where it cannot be told from
    /// others.
    std::string identity = {};

    bool operator==(const PortName&) const = default;
};

/// The serial ports of this computer, sorted by node.
/// @param root where the system's folders are looked for, for tests
std::vector<PortName> portNames(const std::string& root = {});

/// One line for a list to choose from: the node, and after it what is known of the device.
std::string describe(const PortName& port);

} // namespace varda::device
