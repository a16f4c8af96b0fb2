#pragma once

#include <chrono>
#include <functional>

#include <ctime>
#include <sys/types.h>

namespace varda::bench {

/// Work in a process of its own, so that the time it takes is told apart from ours. It is killed at the end
/// of this.
class SideProcess {
public:
    /// @param work ends the process where it comes back or throws
    explicit SideProcess(const std::function<void()>& work);
    SideProcess(const SideProcess&) = delete;
    SideProcess& operator=(const SideProcess&) = delete;
    ~SideProcess();

    pid_t id() const { return process_; }
    /// The processor time that it has used.
    std::chrono::duration<double> processorTime() const;

private:
    pid_t process_;
    clockid_t clock_ = {};
};

} // namespace varda::bench
