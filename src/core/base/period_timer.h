#pragma once

namespace varda::inline core {

/// A timer that ticks once per interval until it is stopped. Where its tick goes is decided where it is made.
class PeriodTimer {
public:
    PeriodTimer() = default;
    PeriodTimer(const PeriodTimer&) = delete;
    PeriodTimer& operator=(const PeriodTimer&) = delete;
    virtual ~PeriodTimer() = default;

    /// Sets the interval in milliseconds without starting or stopping the timer; a running one restarts its
    /// period.
    virtual void setInterval(int milliseconds) = 0;
    virtual int interval() const = 0;
    virtual void start() = 0;
    virtual void stop() = 0;
    virtual bool isRunning() const = 0;
};

} // namespace varda::core
