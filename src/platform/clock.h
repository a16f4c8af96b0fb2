#pragma once

#include <chrono>
#include <functional>

namespace varda {

/// Where waits come from: a wait is a continuation that runs later, never a sleep. Tests drive it by hand.
class Clock {
public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    /// Runs `continuation` once, `wait` from now, on the interface thread and never inside this call.
    virtual void after(std::chrono::milliseconds wait, std::function<void()> continuation) = 0;
};

} // namespace varda
