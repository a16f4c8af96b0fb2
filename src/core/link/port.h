#pragma once

#include "core/base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace varda::inline core {

/// What a port's event tells.
enum class CommEvent {
    Received, ///< unread bytes wait in the input buffer
    Unsent,   ///< bytes were not sent, because too many before them still wait to be sent
    HungUp,   ///< the line went away (adapter pulled out, far end gone); the port has closed itself
};

/// The serial control as the link sees it: one port, its settings, its input buffer.
///
/// Calls that fail throw RuntimeError with the control's own numbers: 8002 invalid port, 8005 in use, 8012
/// not open, 8015 cannot be set up, 8020 read or write error, 380 settings text not understood. The text of
/// the exception names the port and the remedy.
class Port {
public:
    /// `event` tells what happened, `reason` why the line hung up (empty else).
    using EventHandler = std::function<void(CommEvent event, const std::string& reason)>;

    Port() = default;
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;
    virtual ~Port() = default;

    /// Chooses the port: "COM1" .. or the name of a device as it stands. Takes effect at the next open.
    virtual void setCommPort(const std::string& name) = 0;
    /// Chooses the line settings, for example "9600,n,8,1". @throws RuntimeError 380
    virtual void setSettings(const std::string& settings) = 0;

    virtual void open() = 0;
    virtual void close() noexcept = 0;
    virtual bool isOpen() const noexcept = 0;

    /// Number of unread bytes; 0 while the port is closed.
    virtual std::size_t inBufferCount() const noexcept = 0;
    /// Takes everything that waits out of the input buffer.
    virtual Bytes read() = 0;
    /// Throws away what waits in the input buffer.
    virtual void discard() noexcept = 0;
    /// Hands all bytes over in one write and returns at once; a line that is too slow for them leaves them
    /// unsent. @throws RuntimeError 8012, 8020
    virtual void write(const Bytes& bytes) = 0;

    /// For a reader who has no use for more: until the next read() or discard(), of all that waits no more
    /// than the first `most` bytes have to be kept, the others are only counted.
    virtual void keepFirst(std::size_t /*most*/) noexcept {}
    /// Number of writes since the port was opened that were not sent.
    virtual std::size_t unsentWrites() const noexcept { return 0; }

    void setEventHandler(EventHandler handler) { handler_ = std::move(handler); }

protected:
    void raise(CommEvent event, const std::string& reason = {}) const {
        if (handler_) {
            handler_(event, reason);
        }
    }

private:
    EventHandler handler_;
};

} // namespace varda::inline core
