#include "core/base/clock_timer.h"

#include "core/base/runtime_error.h"

#include <algorithm>
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
    next_ = std::max(next_ + std::chrono::milliseconds(interval_), clock_.now());
    wait_ = clock_.after(next_ - clock_.now(), [this] {
        waitForTick();
        tick_();
    });
}

} // namespace varda::core
