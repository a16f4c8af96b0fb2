#pragma once

#include "core/base/clock.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace varda::years {

/// Time that jumps from one thing that is due to the next one. What falls due together runs in the order in
/// which it was asked for.
class HandClock : public Clock {
public:
    Time now() const override { return now_; }

    void schedule(Duration wait, std::function<void()> due) override {
        if (wait != receptionWait || lost_ == 0 || --lost_ > 0) {
            at(now_ + wait, std::move(due));
        }
    }

    /// The same at a time of which milliseconds are not fine enough.
    void at(Time time, std::function<void()> due) {
        waits_.push_back({time, ++asked_, std::move(due)});
        std::push_heap(waits_.begin(), waits_.end(), later);
    }

    /// Runs what is due next. @return false where nothing is, up to `end`; it is `end` then
    bool runNext(Time end) {
        if (waits_.empty() || waits_.front().time > end) {
            now_ = std::max(now_, end);
            return false;
        }
        std::pop_heap(waits_.begin(), waits_.end(), later);
        const auto run = std::move(waits_.back());
        waits_.pop_back();
        now_ = std::max(now_, run.time);
        run.due();
        return true;
    }

    /// What is scheduled, cancelled waits included.
    std::size_t pending() const { return waits_.size(); }
    /// A fault to be found: of the waits for the rest of a burst the `count`th from now on never ends.
    void loseWait(int count) { lost_ = count; }

private:
    static constexpr std::chrono::milliseconds receptionWait{100};

    struct Due {
        Time time;
        std::uint64_t order;
        std::function<void()> due;
    };

    static bool later(const Due& one, const Due& other) {
        return one.time != other.time ? one.time > other.time : one.order > other.order;
    }

    Time now_;
    std::vector<Due> waits_; ///< a heap
    std::uint64_t asked_ = 0;
    int lost_ = 0;
};

} // namespace varda::years
