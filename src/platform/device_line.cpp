#include "platform/device_line.h"

#include "platform/blanks.h"
#include "platform/comm_error.h"
#include "platform/serial_node.h"

#include <QTimer>

#include <algorithm>
#include <filesystem>

namespace varda {
namespace {

QSerialPort::Parity parityOf(char letter) {
    switch (letter) {
    case 'e':
        return QSerialPort::EvenParity;
    case 'o':
        return QSerialPort::OddParity;
    default:
        return QSerialPort::NoParity;
    }
}

std::string textOf(const LineSettings& settings) {
    return std::to_string(settings.baudRate) + ',' + settings.parity + ',' +
           std::to_string(settings.dataBits) + ',' + std::to_string(settings.stopBits);
}

/// The path that other programs name their lock files after, also where the node was chosen by a link to it.
QString withoutLinks(const std::string& node) {
    std::error_code error;
    const auto path = std::filesystem::canonical(node, error);
    return QString::fromStdString(error ? node : path.string());
}

/// The node is claimed by now, so a refusal to open it can only come from a lock file or from the settings;
/// where nothing can be claimed, Qt's error tells the rest.
RuntimeError openFailure(QSerialPort::SerialPortError error, const std::string& label,
                         const std::string& settings, const std::string& reason) {
    switch (error) {
    case QSerialPort::DeviceNotFoundError:
        return noSuchDevice(label);
    case QSerialPort::PermissionError:
        return portInUse(label);
    default:
        return {comm_error::cannotBeSetUp,
                label + " cannot be set up as " + settings + " (" + reason + "). Choose other settings."};
    }
}

} // namespace

DeviceLine::DeviceLine(const std::string& name) : name_(withoutBlanksAround(name)) {
    QObject::connect(&port_, &QSerialPort::readyRead, &port_, [this] { received(); });
    QObject::connect(&port_, &QSerialPort::errorOccurred, &port_,
                     [this](QSerialPort::SerialPortError error) { failed(error); });
}

DeviceLine::~DeviceLine() {
    port_.disconnect(); // what it says while it is destroyed concerns no line any more
    DeviceLine::close();
}

void DeviceLine::open(const LineSettings& settings) {
    const std::string node = deviceNode(name_);
    if (node.empty()) {
        throw RuntimeError(comm_error::invalidPort, "No port is chosen. Type or choose its name.");
    }
    if (port_.isOpen()) {
        throw portInUse(label());
    }
    claim_.emplace(node, label());
    try {
        setUp(node, settings);
    } catch (...) {
        claim_.reset();
        throw;
    }
    isLive_ = true;
}

void DeviceLine::close() noexcept {
    isLive_ = false;
    discarded_ = 0;
    port_.close();
    claim_.reset();
}

std::size_t DeviceLine::inBufferCount() const noexcept {
    return static_cast<std::size_t>(port_.bytesAvailable());
}

Bytes DeviceLine::read() {
    const QByteArray bytes = port_.readAll();
    return {bytes.begin(), bytes.end()};
}

/// Bytes that Qt has not fetched yet are left in the driver: flushed there, they would let Qt's pending read
/// find nothing, which it takes for the end of the line.
void DeviceLine::discard() noexcept {
    port_.readAll();
    discarded_ = claim_ ? claim_->waitingInDriver() : 0;
}

void DeviceLine::write(const Bytes& bytes) {
    const auto length = static_cast<qint64>(bytes.size());
    if (port_.write(reinterpret_cast<const char*>(bytes.data()), length) != length) {
        throw RuntimeError(comm_error::readError,
                           "Nothing can be sent on " + label() + ". Open the port again.");
    }
    // Left to Qt, the bytes would go out in the event loop's next turn, behind whatever the window has to
    // paint.
    isWriting_ = true;
    port_.flush();
    isWriting_ = false;
}

std::string DeviceLine::label() const {
    const std::string node = deviceNode(name_);
    return node == name_ ? node : name_ + " (" + node + ")";
}

void DeviceLine::setUp(const std::string& node, const LineSettings& settings) {
    port_.setPortName(withoutLinks(node));
    port_.setBaudRate(settings.baudRate);
    port_.setDataBits(static_cast<QSerialPort::DataBits>(settings.dataBits));
    port_.setParity(parityOf(settings.parity));
    port_.setStopBits(settings.stopBits == 2 ? QSerialPort::TwoStop : QSerialPort::OneStop);
    port_.setFlowControl(QSerialPort::NoFlowControl);
    if (!port_.open(QIODevice::ReadWrite)) {
        throw openFailure(port_.error(), label(), textOf(settings), port_.errorString().toStdString());
    }
    // Adapters may draw their power from these lines; a pseudo-terminal has none, which does no harm.
    port_.setDataTerminalReady(true);
    port_.setRequestToSend(true);
    // What came while nobody listened; safe here, unlike in discard(), as Qt has no read pending yet.
    port_.clear(QSerialPort::Input);
}

void DeviceLine::received() {
    const auto stale = port_.skip(static_cast<qint64>(discarded_));
    discarded_ -= static_cast<std::size_t>(std::max<qint64>(stale, 0));
    if (isLive_ && inBufferCount() > 0) {
        raise(CommEvent::Received);
    }
}

/// Qt reports a lost line over and over while the port is open, hence closed here. Its error text is of no
/// use: it belongs to whatever system call failed last.
void DeviceLine::failed(QSerialPort::SerialPortError error) {
    if (!isLive_ || error == QSerialPort::NoError) {
        return;
    }
    if (isWriting_) { // whoever writes is not told in the middle of it
        QTimer::singleShot(0, &port_, [this, error] { failed(error); });
        return;
    }
    close();
    raise(CommEvent::HungUp, label() + " went away: it was unplugged, or its far end was closed.");
}

} // namespace varda
