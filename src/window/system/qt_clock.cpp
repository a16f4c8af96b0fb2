#include "window/system/qt_clock.h"

#include <utility>

namespace varda::window {

QtClock::QtClock() : alarm_(makeAlarm([this] { ring(); })) {}

Clock::Time QtClock::now() const { return std::chrono::steady_clock::now(); }

void QtClock::schedule(Duration wait, std::function<void()> due) {
    const auto place = waits_.emplace(now() + wait, std::move(due));
    if (place == waits_.begin()) {
        setAlarm();
    }
}

/// One wait a ring: what it runs may begin others, end the clock, or not come back for long.
void QtClock::ring() {
    if (waits_.empty() || waits_.begin()->first > now()) {
        setAlarm();
        return;
    }
    const auto due = waits_.extract(waits_.begin());
    setAlarm();
    due.mapped()();
}

void QtClock::setAlarm() {
    if (waits_.empty()) {
        alarm_->clear();
    } else {
        alarm_->setTo(waits_.begin()->first);
    }
}

} // namespace varda::window
