#pragma once

#include "core/link/serial_link.h"
#include "core/runs/monitor_line.h"
#include "core/runs/monitor_log.h"

#include <cstddef>
#include <optional>
#include <string>

namespace varda::inline core {

/// The lines that a monitor shows. Where a list on the screen is the only store, it is asked through this.
class MonitorLines {
public:
    MonitorLines() = default;
    MonitorLines(const MonitorLines&) = delete;
    MonitorLines& operator=(const MonitorLines&) = delete;
    virtual ~MonitorLines() = default;

    virtual std::size_t count() const = 0;
    virtual void append(MonitorLine line) = 0;
    virtual void clear() = 0;
};

/// Lists what an open port receives, and keeps a log of it.
class MonitorRun {
public:
    MonitorRun(SerialLink& link, Clock& clock, MonitorLines& lines)
        : link_(link), log_(clock), lines_(lines) {}

    void start();
    /// Logs what is listed from now on. @throws RuntimeError of MonitorLog::open
    void openLog(const std::string& path) { log_.open(path); }
    bool isLogging() const { return log_.isOpen(); }
    /// Closes the log.
    void stop();
    /// From start to stop, whatever the link does meanwhile.
    bool isRunning() const { return isRunning_; }

    /// Lists a burst, also between two runs. A list that has grown beyond its limit begins anew.
    /// @param time of the stamp; nothing for a line without one @param asCharacters else in hexadecimal
    /// digits
    /// @return false where the log could not be written whole
    bool list(const Bytes& burst, const std::optional<TimeOfDay>& time, bool asCharacters);

private:
    SerialLink& link_;
    MonitorLog log_;
    MonitorLines& lines_;
    bool isRunning_ = false;
};

} // namespace varda::core
