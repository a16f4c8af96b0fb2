#pragma once

#include "core/base/bytes.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace varda::inline core {

/// What a port's event tells.
enum class CommEvent {
    Received, ///< unread bytes wait in the input buffer
    Unsent,   ///< bytes were not sent, because too many before them still wait to be sent
    HungUp,   ///< the line went away (adapter pulled out, far end gone); the port has closed itself
};

/// `event` tells what happened, `reason` why the line hung up (empty else).
using CommEventHandler = std::function<void(CommEvent event, const std::string& reason)>;

/// When some of the bytes came in that a read returned.
struct Arrival {
    using Time = std::chrono::steady_clock::time_point;

    std::size_t count = 0; ///< bytes that came together
    Time time;
};

/// What a read takes out of the input buffer.
struct Burst {
    Bytes bytes;
    std::vector<Arrival> arrivals{}; ///< of the bytes, in order; empty where the line does not know
    std::size_t counted = 0;         ///< further bytes, which were not kept
};

/// The bytes of a burst behind its first `from` ones, with their arrivals.
Burst burstBehind(std::size_t from, std::span<const std::uint8_t> bytes, std::span<const Arrival> arrivals);

/// Line settings as the serial control reads them from its settings text.
struct LineSettings {
    int baudRate = 9600;
    char parity = 'n'; ///< 'n' none, 'e' even, 'o' odd
    int dataBits = 8;  ///< 5 .. 8
    int stopBits = 1;  ///< 1 or 2
};

/// The settings as the serial control takes them: "9600,n,8,1".
std::string settingsText(const LineSettings& settings);

/// What a port's name stands for: a device node, or the embedded controller. MSComm drives one while it is
/// open.
class Line {
public:
    Line() = default;
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;
    virtual ~Line() = default;

    /// @throws RuntimeError 8002, 8005, 8015 with a text that names the line and the remedy
    virtual void open(const LineSettings& settings) = 0;
    virtual void close() noexcept = 0;
    virtual std::size_t inBufferCount() const noexcept = 0;
    /// Takes everything that waits.
    virtual Burst read() = 0;
    virtual void discard() noexcept = 0;
    /// Sends all of the bytes or none of them: where too much waits to be sent already, they are counted as
    /// unsent. @throws RuntimeError 8020
    virtual void write(const Bytes& bytes) = 0;
    /// For a reader who has no use for more: until the next read() or discard(), of all that waits no more
    /// than the first `most` bytes have to be kept, the others are only counted.
    virtual void keepFirst(std::size_t /*most*/) noexcept {}
    /// Number of writes since the line was opened that were not sent.
    virtual std::size_t unsentWrites() const noexcept { return 0; }
    /// What waits behind the first `from` bytes, for those who only watch: it waits on. Empty where the line
    /// does not tell before it is read.
    virtual Burst look(std::size_t /*from*/) const { return {}; }
    /// What opening the line came upon that its user may want to know; empty mostly.
    virtual std::string notice() const { return {}; }

    void setEventHandler(CommEventHandler handler) { handler_ = std::move(handler); }

protected:
    /// HungUp is raised once; the line has closed itself by then. The line may be destroyed inside the call.
    void raise(CommEvent event, const std::string& reason = {}) const {
        if (const CommEventHandler handler = handler_) { // a copy, which outlives the line
            handler(event, reason);
        }
    }

private:
    CommEventHandler handler_;
};

} // namespace varda::core
