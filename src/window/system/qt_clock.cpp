#include "window/system/timers.h"

#include "core/base/runtime_error.h"

#include <utility>

namespace varda::window {

Clock::Time QtClock::now() const { return std::chrono::steady_clock::now(); }

void QtClock::schedule(std::chrono::milliseconds wait, std::function<void()> due) {
    QTimer::singleShot(wait, Qt::PreciseTimer, &context_, std::move(due));
}

QtPeriodTimer::QtPeriodTimer(std::function<void()> tick) {
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, std::move(tick));
}

void QtPeriodTimer::setInterval(int milliseconds) {
    if (milliseconds < 0) {
        throw invalidPropertyValue();
    }
    interval_ = milliseconds;
    if (isRunning_) {
        start();
    }
}

int QtPeriodTimer::interval() const { return interval_; }

void QtPeriodTimer::start() {
    isRunning_ = true;
    if (interval_ > 0) {
        timer_.start(interval_);
    } else {
        timer_.stop(); // QTimer would tick without a pause
    }
}

void QtPeriodTimer::stop() {
    isRunning_ = false;
    timer_.stop();
}

bool QtPeriodTimer::isRunning() const { return isRunning_; }

} // namespace varda::window
