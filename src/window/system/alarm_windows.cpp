#include "window/system/alarm.h"

#include <QWinEventNotifier>

#include <algorithm>

#include <windows.h>

namespace varda::window {
namespace {

/// From Windows 10 1803 on; the headers of an older one do not name it.
constexpr DWORD highResolution = 2;

using Ticks = std::chrono::duration<LONGLONG, std::ratio<1, 10'000'000>>; ///< what the system counts in

/// A timer that can be waited for.
class WaitableTimer : public Alarm {
public:
    /// @param handle is its own from now on
    WaitableTimer(HANDLE handle, std::function<void()> ring) : handle_(handle), notifier_(handle) {
        QObject::connect(&notifier_, &QWinEventNotifier::activated, &notifier_, [ring = std::move(ring)] {
            const auto held = ring; // which may destroy this
            held();
        });
    }
    WaitableTimer(const WaitableTimer&) = delete;
    WaitableTimer& operator=(const WaitableTimer&) = delete;
    WaitableTimer(WaitableTimer&&) = delete;
    WaitableTimer& operator=(WaitableTimer&&) = delete;
    ~WaitableTimer() override {
        notifier_.setEnabled(false);
        ::CloseHandle(handle_);
    }

    void setTo(Clock::Time time) override {
        const auto wait = std::chrono::ceil<Ticks>(time - std::chrono::steady_clock::now());
        LARGE_INTEGER due;
        due.QuadPart = -std::max(wait, Ticks(1)).count(); // negative: from now on
        ::SetWaitableTimer(handle_, &due, 0, nullptr, nullptr, FALSE);
    }
    void clear() override { ::CancelWaitableTimer(handle_); }

private:
    HANDLE handle_;
    QWinEventNotifier notifier_;
};

} // namespace

/// Of high resolution it needs no finer tick of the whole system, which would cost every laptop its battery.
std::unique_ptr<Alarm> makeFineAlarm(std::function<void()> ring) {
    HANDLE const handle = ::CreateWaitableTimerExW(nullptr, nullptr, highResolution, TIMER_ALL_ACCESS);
    return handle == nullptr ? nullptr : std::make_unique<WaitableTimer>(handle, std::move(ring));
}

} // namespace varda::window
