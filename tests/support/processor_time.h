#pragma once

#include <chrono>
#include <ratio>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/resource.h>
#endif

namespace varda::test {

/// The processor time that all threads of this process have used.
inline std::chrono::duration<double> processorTime() {
#ifdef _WIN32
    FILETIME started{};
    FILETIME ended{};
    FILETIME inSystem{};
    FILETIME inProgram{};
    ::GetProcessTimes(::GetCurrentProcess(), &started, &ended, &inSystem, &inProgram);
    using Ticks = std::chrono::duration<double, std::ratio<1, 10'000'000>>;
    const auto duration = [](const FILETIME& time) {
        return Ticks(static_cast<double>(time.dwHighDateTime) * 4294967296.0 + time.dwLowDateTime);
    };
    return duration(inSystem) + duration(inProgram);
#else
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto duration = [](const timeval& time) {
        return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
    };
    return duration(usage.ru_utime) + duration(usage.ru_stime);
#endif
}

} // namespace varda::test
