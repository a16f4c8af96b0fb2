#pragma once

#include "core/base/clock.h"
#include "core/base/period_timer.h"
#include "core/base/runtime_error.h"

#include <map>
#include <utility>

namespace varda::test {

/// Time that passes only when a test says so. Continuations run in the order in which they fall due.
class ManualClock : public Clock {
public:
    Time now() const override { return now_; }

    void schedule(std::chrono::milliseconds wait, std::function<void()> due) override {
        waits_.emplace(now_ + wait, std::move(due));
    }

    /// Lets `milliseconds` pass and runs all that falls due, waits begun meanwhile included.
    void advance(int milliseconds) { advance(std::chrono::milliseconds(milliseconds)); }
    void advance(std::chrono::milliseconds time) {
        const auto end = now_ + time;
        while (!waits_.empty() && waits_.begin()->first <= end) {
            auto due = waits_.extract(waits_.begin());
            now_ = due.key();
            due.mapped()();
        }
        now_ = end;
    }

    /// What is scheduled, cancelled waits included.
    std::size_t pending() const { return waits_.size(); }

private:
    Time now_;
    std::multimap<Time, std::function<void()>> waits_; ///< by due time
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
        isRunning_ = true;
        waitForTick();
    }
    void stop() override {
        isRunning_ = false;
        wait_.cancel();
    }
    bool isRunning() const override { return isRunning_; }

private:
    void waitForTick() {
        if (interval_ == 0) {
            wait_.cancel();
            return;
        }
        wait_ = clock_.after(std::chrono::milliseconds(interval_), [this] {
            waitForTick();
            tick_();
        });
    }

    ManualClock& clock_;
    std::function<void()> tick_;
    int interval_ = 0;
    bool isRunning_ = false;
    Wait wait_;
};

} // namespace varda::test
