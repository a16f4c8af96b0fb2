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
    if (const auto now = clock_.now(); next_ < now) { // of two requests at once one would overtake the other
        next_ += ((now - next_) / interval + 1) * interval;
    }
    wait_ = clock_.after(next_ - clock_.now(), [this] {
        waitForTick();
        tick_();
    });
}

} // namespace varda::core
