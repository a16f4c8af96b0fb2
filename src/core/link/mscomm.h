#pragma once

#include "core/link/line.h"

#include <memory>
#include <vector>

namespace varda::inline core {

/// The serial control: takes settings as a text, opens the line that a port's name stands for, and raises its
/// events.
///
/// Calls that fail throw RuntimeError with the control's own numbers: 8002 invalid port, 8005 in use, 8012
/// not open, 8015 cannot be set up, 8020 read or write error, 380 settings text not understood. The text of
/// the exception names the port and the remedy.
///
/// Event handlers may call every function of the control, open() and close() included, but not destroy it,
/// and must not throw.
class MSComm {
public:
    /// Makes the closed line that a port's name stands for.
    using LineFactory = std::function<std::unique_ptr<Line>(const std::string& name)>;

    explicit MSComm(LineFactory makeLine);
    MSComm(const MSComm&) = delete;
    MSComm& operator=(const MSComm&) = delete;
    ~MSComm();

    void setEventHandler(CommEventHandler handler) { handler_ = std::move(handler); }

    /// Chooses the port: "COM1" .. or the name of a device as it stands. Takes effect at the next open.
    void setCommPort(const std::string& name);
    const std::string& commPort() const { return name_; }
    /// Takes baud rate, parity letter (n, e, o), data bits (5 .. 8) and stop bits (1, 2), for the next open:
    /// "9600,n,8,1".
    /// @throws RuntimeError 380 where one of them is missing or out of range; the settings stay as they were
    void setSettings(const std::string& settings);
    const LineSettings& settings() const { return settings_; }

    /// A line that goes away while it opens leaves the port closed.
    /// @throws RuntimeError 8005 where it is open already, and what the line throws
    void open();
    void close() noexcept;
    bool isOpen() const noexcept;
    /// What opening the port last came upon that its user may want to know; empty mostly. Closing keeps it.
    const std::string& notice() const { return notice_; }

    /// Number of unread bytes; 0 while the port is closed.
    std::size_t inBufferCount() const noexcept;
    /// Takes everything that waits out of the input buffer. @throws RuntimeError 8012, 8020
    Burst read();
    /// Throws away what waits in the input buffer.
    void discard() noexcept;
    /// Hands all bytes over in one write and returns at once; a line that is too slow for them leaves them
    /// unsent. @throws RuntimeError 8012, 8020
    void write(const Bytes& bytes);
    /// As Line has it.
    void keepFirst(std::size_t most) noexcept;
    /// Number of writes since the port was opened that were not sent.
    std::size_t unsentWrites() const noexcept;

private:
    void pass(const Line* source, CommEvent event, const std::string& reason);
    Line& openLine() const;
    void dropClosedLines() noexcept;

    LineFactory makeLine_;
    CommEventHandler handler_;
    std::string name_;
    LineSettings settings_;
    std::string notice_;
    /// The open line, and lines that closed inside their own event and must not be destroyed there.
    std::vector<std::unique_ptr<Line>> lines_;
    Line* open_ = nullptr;
    int eventDepth_ = 0;
};

} // namespace varda::core
