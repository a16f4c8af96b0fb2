#pragma once

#include "core/base/clock.h"

#include <functional>
#include <memory>

namespace varda::window {

/// Rings once on the event loop, at a point in time.
class Alarm {
public:
    Alarm() = default;
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;
    Alarm(Alarm&&) = delete;
    Alarm& operator=(Alarm&&) = delete;
    virtual ~Alarm() = default;

    /// Rings then, or soon where that is past, and not at the time that it was set to before.
    virtual void setTo(Clock::Time time) = 0;
    virtual void clear() = 0;
};

/// The system's own, which rings some hundredths of a millisecond behind its time; nullptr where there is
/// none.
/// @param ring may set the alarm anew, and destroy it
std::unique_ptr<Alarm> makeFineAlarm(std::function<void()> ring);

/// That one, or else one of Qt's, whose timers know whole milliseconds.
std::unique_ptr<Alarm> makeAlarm(const std::function<void()>& ring);

} // namespace varda::window
