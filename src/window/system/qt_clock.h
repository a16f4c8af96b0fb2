#pragma once

#include "core/base/clock.h"
#include "core/base/period_timer.h"

#include <QObject>
#include <QTimer>

namespace varda::window {

/// Waits on the event loop. A wait that is under way when the clock is destroyed does not end any more.
class QtClock : public Clock {
public:
    Time now() const override;
    void schedule(std::chrono::milliseconds wait, std::function<void()> due) override;

private:
    QObject context_;
};

/// A period timer on the event loop, to the millisecond. Its tick handler must not throw.
class QtPeriodTimer : public PeriodTimer {
public:
    explicit QtPeriodTimer(std::function<void()> tick);

    /// An interval of 0 never ticks, running or not. @throws RuntimeError 380 for a negative one; the old one
    /// stays
    void setInterval(int milliseconds) override;
    int interval() const override;
    void start() override;
    void stop() override;
    bool isRunning() const override;

private:
    QTimer timer_;
    int interval_ = 0;
    bool isRunning_ = false;
};

} // namespace varda::window
