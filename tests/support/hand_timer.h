#pragma once

#include "core/base/period_timer.h"
#include "core/base/runtime_error.h"

#include <functional>
#include <utility>

namespace varda::test {

/// A period timer that ticks when a test says so, whatever its interval.
class HandTimer : public PeriodTimer {
public:
    explicit HandTimer(std::function<void()> tick) : tick_(std::move(tick)) {}

    void setInterval(int milliseconds) override {
        if (milliseconds < 0) {
            throw invalidPropertyValue();
        }
        interval_ = milliseconds;
    }
    int interval() const override { return interval_; }
    void start() override { running_ = true; }
    void stop() override { running_ = false; }
    bool isRunning() const override { return running_; }

    /// One tick, where the timer runs.
    void tick() {
        if (running_ && interval_ > 0) {
            tick_();
        }
    }

private:
    std::function<void()> tick_;
    int interval_ = 0;
    bool running_ = false;
};

} // namespace varda::test
