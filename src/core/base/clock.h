#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace varda::inline core {

/// A continuation that is to run later. It does not run any more once this object is gone, or holds another
/// wait.
class [[nodiscard]] Wait {
public:
    using Continuation = std::function<void()>;

    /// Waits for nothing.
    Wait() = default;
    explicit Wait(std::shared_ptr<Continuation> continuation) : continuation_(std::move(continuation)) {}
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
    Wait(Wait&&) noexcept = default;
    Wait& operator=(Wait&&) noexcept = default;
    ~Wait() = default;

    /// Whether the continuation is still to run; not so any more while it runs.
    bool isPending() const { return continuation_ != nullptr && *continuation_ != nullptr; }
    void cancel() { continuation_.reset(); }

private:
    std::shared_ptr<Continuation> continuation_;
};

/// Where time and waits come from: a wait is a continuation that runs later, never a sleep. Tests drive it by
/// hand.
class Clock {
public:
    /// A point on a scale that only goes forward; setting the computer's clock does not move it.
    using Time = std::chrono::steady_clock::time_point;
    using Duration = Time::duration;

    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    virtual Time now() const = 0;

    /// Runs `continuation` once, `wait` from now, on the interface thread and never inside this call.
    Wait after(Duration wait, Wait::Continuation continuation) {
        const auto held = std::make_shared<Wait::Continuation>(std::move(continuation));
        schedule(wait, [waiting = std::weak_ptr(held)] {
            if (const auto due = waiting.lock()) {
                const auto run = std::exchange(*due, nullptr); // which may begin the next wait
                run();
            }
        });
        return Wait(held);
    }

    /// Runs `due` once, `wait` from now; after() hands it what looks whether somebody still waits.
    virtual void schedule(Duration wait, std::function<void()> due) = 0;
};

} // namespace varda::core
