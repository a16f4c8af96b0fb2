#pragma once

#include "controls/events.h"
#include "platform/clock.h"

#include <utility>

namespace varda {

/// A clock whose continuations pass the same guard as the handlers of a window: what one of them throws
/// becomes a report.
class GuardedClock : public Clock {
public:
    /// @param clock @param events both must outlive the waits
    GuardedClock(Clock& clock, Events& events) : clock_(clock), events_(events) {}

    Time now() const override { return clock_.now(); }

    void schedule(std::chrono::milliseconds wait, std::function<void()> due) override {
        clock_.schedule(wait, [&events = events_, due = std::move(due)] { events.guard(due); });
    }

private:
    Clock& clock_;
    Events& events_;
};

} // namespace varda
