#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace varda::test {

/// A thread's own loop, as a program without a window has it: tasks are posted from any thread and run on
/// this one.
class TaskLoop {
public:
    using Task = std::function<void()>;
    using Clock = std::chrono::steady_clock;

    /// What a DeviceLine takes. The loop must outlive it.
    std::function<void(Task)> post() {
        return [this](Task task) {
            const std::lock_guard lock(mutex_);
            tasks_.push_back(std::move(task));
            added_.notify_one();
        };
    }

    /// Runs tasks for `time`.
    void runFor(std::chrono::milliseconds time) {
        const auto end = Clock::now() + time;
        while (runNext(end)) {
        }
    }

    /// Runs tasks until `condition` holds, at most for `limit`, which only a failure, or a machine that has
    /// no time, takes; returns whether it holds.
    bool runUntil(const std::function<bool()>& condition,
                  std::chrono::milliseconds limit = std::chrono::seconds(30)) {
        const auto end = Clock::now() + limit;
        while (!condition() && Clock::now() < end) {
            runNext(Clock::now() + std::chrono::milliseconds(2));
        }
        return condition();
    }

    std::size_t waitingTasks() {
        const std::lock_guard lock(mutex_);
        return tasks_.size();
    }

private:
    bool runNext(Clock::time_point end) {
        Task task;
        {
            std::unique_lock lock(mutex_);
            if (!added_.wait_until(lock, end, [this] { return !tasks_.empty(); })) {
                return false;
            }
            task = std::move(tasks_.front());
            tasks_.pop_front();
        }
        task();
        return Clock::now() < end;
    }

    std::mutex mutex_;
    std::condition_variable added_;
    std::deque<Task> tasks_;
};

} // namespace varda::test
