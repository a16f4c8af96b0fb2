#pragma once

#include <functional>
#include <optional>

#include <sys/types.h>

namespace varda::bench {

/// How many system calls all threads of a process make while a function runs, counted by strace.
/// @return nothing where strace is not there, or may not look
std::optional<long long> systemCalls(pid_t process, const std::function<void()>& meanwhile);

} // namespace varda::bench
