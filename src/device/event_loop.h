#pragma once

#include "core/base/clock.h"
#include "core/base/period_timer.h"

#include <functional>
#include <memory>

namespace varda::device {

/// The loop of a program that has no window: one thread on which waits end, timers tick and lines tell their
/// events.
class EventLoop : public Clock {
public:
    EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;
    /// Whatever was made with the loop is gone before it.
    ~EventLoop() override;

    Time now() const override;
    void schedule(std::chrono::milliseconds wait, std::function<void()> due) override;

    /// Runs a task soon. Called from any thread; tasks run in their order.
    void post(std::function<void()> task);
    /// Makes a stopped timer that runs `tick` at each of its ticks.
    std::unique_ptr<PeriodTimer> makeTimer(std::function<void()> tick);

    /// Serves until stop() is called meanwhile. @throws what a task throws; the loop can be run on then
    void run();
    void stop();

private:
    struct Context;
    std::unique_ptr<Context> context_;
};

} // namespace varda::device
