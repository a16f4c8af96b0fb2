#pragma once

#include "platform/clock.h"
#include "platform/period_timer.h"
#include "platform/runtime_error.h"

#include <map>
#include <memory>
#include <utility>

namespace varda::test {

/// Time that passes only when a test says so. Continuations run in the order in which they fall due.
class ManualClock : public Clock {
public:
    void after(std::chrono::milliseconds wait, std::function<void()> continuation) override {
        waits_.emplace(now_ + wait, std::move(continuation));
    }

    /// Lets `milliseconds` pass and runs all that falls due, waits begun meanwhile included.
    void advance(int milliseconds) {
        const auto end = now_ + std::chrono::milliseconds(milliseconds);
        while (!waits_.empty() && waits_.begin()->first <= end) {
            auto due = waits_.extract(waits_.begin());
            now_ = due.key();
            due.mapped()();
        }
        now_ = end;
    }

    std::size_t pending() const { return waits_.size(); }

    /// How much time has passed since the clock was made.
    std::chrono::milliseconds now() const { return now_; }

private:
    std::chrono::milliseconds now_{0};
    std::multimap<std::chrono::milliseconds, std::function<void()>> waits_; ///< by due time
};

/// A period timer on the time of a ManualClock, which must outlive it.
class ManualTimer : public PeriodTimer {
public:
    ManualTimer(ManualClock& clock, std::function<void()> tick) : clock_(clock), tick_(std::move(tick)) {}

    void setInterval(int milliseconds) override {
        if (milliseconds < 0) {
            throw invalidPropertyValue();
        }
        interval_ = milliseconds;
        if (isRunning()) {
            start();
        }
    }
    int interval() const override { return interval_; }
    void start() override {
        run_ = std::make_shared<Run>();
        waitForTick();
    }
    void stop() override { run_.reset(); }
    bool isRunning() const override { return run_ != nullptr; }

private:
    /// Ends with stop(), the next start() and the timer itself; a wait of an ended run does nothing.
    struct Run {};

    void waitForTick() {
        if (interval_ == 0) {
            return;
        }
        clock_.after(std::chrono::milliseconds(interval_), [this, run = std::weak_ptr<Run>(run_)] {
            if (!run.expired()) {
                waitForTick();
                tick_();
            }
        });
    }

    ManualClock& clock_;
    std::function<void()> tick_;
    int interval_ = 0;
    std::shared_ptr<Run> run_;
};

} // namespace varda::test
