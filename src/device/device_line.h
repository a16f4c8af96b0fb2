#pragma once

#include "core/link/line.h"

#include <functional>
#include <memory>

namespace varda::device {

class Connection;
class NodeClaim;

/// A line on a serial port of this computer: binary, without handshake.
///
/// A thread of its own moves the bytes, so that none is lost while the owner is busy. The line itself belongs
/// to one thread, on which its events are raised.
class DeviceLine : public Line {
public:
    /// Has the owner's thread run a task soon. Called from any thread; tasks are run in their order.
    using Post = std::function<void(std::function<void()> task)>;

    /// @param name the port's name as deviceNode() takes it
    DeviceLine(const std::string& name, Post post);
    DeviceLine(const DeviceLine&) = delete;
    DeviceLine& operator=(const DeviceLine&) = delete;
    ~DeviceLine() override;

    /// @throws RuntimeError 8002 no such device, no serial port, or no permission; 8005 in use; 8015 cannot
    /// be set up
    void open(const LineSettings& settings) override;
    /// What the far end has not taken yet is not sent any more.
    void close() noexcept override;
    std::size_t inBufferCount() const noexcept override;
    Burst read() override;
    void discard() noexcept override;
    /// Hands the bytes to the driver, what it does not take at once later. @throws RuntimeError 8020
    void write(const Bytes& bytes) override;
    void keepFirst(std::size_t most) noexcept override;
    std::size_t unsentWrites() const noexcept override;
    Burst look(std::size_t from) const override;
    std::string notice() const override;

private:
    std::string label() const;
    void claim(const std::string& node);
    void connect(const LineSettings& settings);
    void deliverNews();

    std::string name_;
    Post post_;
    std::unique_ptr<NodeClaim> claim_;
    /// Null while closed. Tasks on their way know by it whether the connection that they speak of still
    /// stands.
    std::shared_ptr<Connection> connection_;
};

} // namespace varda::device
