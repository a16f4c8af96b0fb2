#include "window/system/alarm.h"

#include <QSocketNotifier>

#include <algorithm>
#include <cstdint>

#include <sys/timerfd.h>
#include <unistd.h>

namespace varda::window {
namespace {

/// A handle that can be read once the time has come.
class TimerHandle : public Alarm {
public:
    /// @param handle is its own from now on
    TimerHandle(int handle, std::function<void()> ring)
        : handle_(handle), notifier_(handle, QSocketNotifier::Read) {
        QObject::connect(
            &notifier_, &QSocketNotifier::activated, &notifier_, [handle, ring = std::move(ring)] {
                std::uint64_t times = 0;
                if (::read(handle, &times, sizeof(times)) == static_cast<ssize_t>(sizeof(times))) {
                    const auto held = ring; // which may destroy this
                    held();
                }
            });
    }
    TimerHandle(const TimerHandle&) = delete;
    TimerHandle& operator=(const TimerHandle&) = delete;
    TimerHandle(TimerHandle&&) = delete;
    TimerHandle& operator=(TimerHandle&&) = delete;
    ~TimerHandle() override {
        notifier_.setEnabled(false);
        ::close(handle_);
    }

    void setTo(Clock::Time time) override {
        // The steady clock counts what CLOCK_MONOTONIC counts; 0 would mean never.
        const auto since = std::max(time.time_since_epoch(), Clock::Duration(1));
        const auto seconds = std::chrono::floor<std::chrono::seconds>(since);
        set({.tv_sec = seconds.count(), .tv_nsec = std::chrono::nanoseconds(since - seconds).count()});
    }
    void clear() override { set({}); }

private:
    void set(const timespec& time) const {
        const itimerspec once{.it_interval = {}, .it_value = time};
        ::timerfd_settime(handle_, TFD_TIMER_ABSTIME, &once, nullptr);
    }

    int handle_;
    QSocketNotifier notifier_;
};

} // namespace

std::unique_ptr<Alarm> makeFineAlarm(std::function<void()> ring) {
    const int handle = ::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    return handle < 0 ? nullptr : std::make_unique<TimerHandle>(handle, std::move(ring));
}

} // namespace varda::window
