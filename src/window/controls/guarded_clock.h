#pragma once

#include "core/base/clock.h"
#include "window/controls/events.h"

#include <QPointer>

#include <utility>

namespace varda::window {

/// A clock whose continuations pass the same guard as the handlers of a window: what one of them throws
/// becomes a report.
class GuardedClock : public Clock {
public:
    /// @param clock outlives the window whose handlers these are
    GuardedClock(Clock& clock, Events& events) : clock_(clock), events_(events) {}

    Time now() const override { return clock_.now(); }

    void schedule(Duration wait, std::function<void()> due) override {
        clock_.schedule(wait, [events = QPointer(&events_), due = std::move(due)] {
            if (events) { // else the window is gone, and whoever waited with it
                events->guard(due);
            }
        });
    }

private:
    Clock& clock_;
    Events& events_;
};

} // namespace varda::window
