#include "core/base/clock_timer.h"

#include "core/base/runtime_error.h"

#include <chrono>

namespace varda::inline core {

void ClockTimer::setInterval(int milliseconds) {
    if (milliseconds < 0) {
        throw invalidPropertyValue();
    }
    interval_ = milliseconds;
    if (isRunning_) {
        start();
    }
}

void ClockTimer::start() {
    isRunning_ = true;
    next_ = clock_.now();
    waitForTick();
}

void ClockTimer::stop() {
    isRunning_ = false;
    wait_.cancel();
}

void ClockTimer::waitForTick() {
    wait_.cancel();
    if (interval_ == 0) {
        return;
    }
    const std::chrono::milliseconds interval(interval_);
    next_ += interval;
    if (const auto late = clock_.now() - next_; late > late.zero()) {
        next_ += (late / interval + 1) * interval; // of two requests at once the second would overtake the first
    }
    wait_ = clock_.after(next_ - clock_.now(), [this] {
        waitForTick();
        tick_();
    });
}

} // namespace varda::core
