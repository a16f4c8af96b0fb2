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
    void schedule(Duration wait, std::function<void()> due) override;

    /// Runs a task soon. Called from any thread; tasks run in their order.
    void post(std::function<void()> task);
    /// Makes a stopped timer that runs `tick` at each of its ticks.
    std::unique_ptr<PeriodTimer> makeTimer(std::function<void()> tick);

    /// Runs `end` once when something asks the program to end: a signal of the terminal or of another
    /// program. Without it the program would be gone at once, and what it holds would be left as it stands. A
    /// signal that was ignored when the program was started, as nohup does, stays ignored.
    /// @return listens while it lives
    [[nodiscard]] std::shared_ptr<void> whenAskedToEnd(std::function<void()> end);

    /// Serves until stop() is called meanwhile. @throws what a task throws; the loop can be run on then
    void run();
    void stop();

private:
    struct Context;
    std::unique_ptr<Context> context_;
};

} // namespace varda::device
