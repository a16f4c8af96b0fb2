#pragma once

#include "platform/line.h"
#include "platform/node_claim.h"

#include <QSerialPort>

#include <optional>

namespace varda {

/// A line on a serial device of this computer: binary, without handshake, with an input buffer that does not
/// fill up.
class DeviceLine : public Line {
public:
    /// @param name the port's name as deviceNode() takes it
    explicit DeviceLine(const std::string& name);
    DeviceLine(const DeviceLine&) = delete;
    DeviceLine& operator=(const DeviceLine&) = delete;
    ~DeviceLine() override;

    /// @throws RuntimeError 8002 no such device, no serial device, or no permission; 8005 in use; 8015 cannot
    /// be set up
    void open(const LineSettings& settings) override;
    void close() noexcept override;
    std::size_t inBufferCount() const noexcept override;
    Bytes read() override;
    void discard() noexcept override;
    /// Hands the bytes to a buffer that the event loop empties. @throws RuntimeError 8020
    void write(const Bytes& bytes) override;

private:
    std::string label() const;
    void setUp(const std::string& node, const LineSettings& settings);
    void received();
    void failed(QSerialPort::SerialPortError error);

    std::string name_;
    std::optional<NodeClaim> claim_;
    QSerialPort port_;
    /// False while the line opens and closes, when Qt reports errors that are none of the open line.
    bool isLive_ = false;
    bool isWriting_ = false;
    /// Bytes that were in the driver when the input was discarded and are still to be dropped.
    std::size_t discarded_ = 0;
};

} // namespace varda
