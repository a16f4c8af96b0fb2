#pragma once

#include <QList>
#include <QString>

namespace varda {

/// A serial port that is there now.
struct PortName {
    QString node;         ///< what opens it, for example "/dev/ttyUSB0"
    QString description;  ///< of the device, as far as it tells
    QString serialNumber; ///< empty where the device has none
};

/// The serial ports of this computer, sorted by node.
QList<PortName> portNames();

/// One line for a list to choose from: the node, and after it what is known of the device.
QString describe(const PortName& port);

} // namespace varda
