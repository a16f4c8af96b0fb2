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

    void after(std::chrono::milliseconds wait, std::function<void()> continuation) override {
        clock_.after(wait, [&events = events_, continuation = std::move(continuation)] {
            events.guard(continuation);
        });
    }

private:
    Clock& clock_;
    Events& events_;
};

} // namespace varda
