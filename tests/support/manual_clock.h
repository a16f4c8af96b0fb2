#pragma once

#include "core/base/clock_timer.h"

#include <map>
#include <utility>

namespace varda::test {

/// Time that passes only when a test says so. Continuations run in the order in which they fall due.
class ManualClock : public Clock {
public:
    Time now() const override { return now_; }

    void schedule(Duration wait, std::function<void()> due) override {
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

    /// Goes to what falls due next, and runs that alone.
    void step() {
        if (!waits_.empty()) {
            auto due = waits_.extract(waits_.begin());
            now_ = due.key();
            due.mapped()();
        }
    }

    /// What is scheduled, cancelled waits included.
    std::size_t pending() const { return waits_.size(); }

private:
    Time now_;
    std::multimap<Time, std::function<void()>> waits_; ///< by due time
};

using ManualTimer = ClockTimer; ///< on a ManualClock it ticks when a test says so

} // namespace varda::test
