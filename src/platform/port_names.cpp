#include "platform/port_names.h"

#include <QSerialPortInfo>

#include <algorithm>

namespace varda {

QList<PortName> portNames() {
    QList<PortName> names;
    const auto ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& port : ports) {
        names.append({port.systemLocation(), port.description(), port.serialNumber()});
    }
    std::sort(names.begin(), names.end(),
              [](const PortName& left, const PortName& right) { return left.node < right.node; });
    return names;
}

QString describe(const PortName& port) {
    QString text = port.node;
    if (!port.description.isEmpty()) {
        text += QStringLiteral(" - ") + port.description;
    }
    if (!port.serialNumber.isEmpty()) {
        text += QStringLiteral(" (serial number %1)").arg(port.serialNumber);
    }
    return text;
}

} // namespace varda
