#pragma once

#include "core/base/clock.h"
#include "core/base/period_timer.h"

#include <functional>

namespace varda::inline core {

/// A period timer on any clock, which must outlive it. A tick that comes late does not put off the next one,
/// unless that is overdue as well.
class ClockTimer : public PeriodTimer {
public:
    /// Makes a stopped timer. @param tick may start and stop the timer, but not destroy it
    ClockTimer(Clock& clock, std::function<void()> tick) : clock_(clock), tick_(std::move(tick)) {}

    /// @throws RuntimeError 380 below 0; a timer of 0 does not tick
    void setInterval(int milliseconds) override;
    int interval() const override { return interval_; }
    void start() override;
    void stop() override;
    bool isRunning() const override { return isRunning_; }

private:
    void waitForTick();

    Clock& clock_;
    std::function<void()> tick_;
    int interval_ = 0;
    bool isRunning_ = false;
    Clock::Time next_;
    Wait wait_;
};

} // namespace varda::core
