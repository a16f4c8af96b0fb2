#pragma once

#include "support/sanitized.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <functional>

#include <sys/resource.h>

namespace varda::test {

/// The processor time that all threads of this process have used.
inline std::chrono::duration<double> processorTime() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto duration = [](const timeval& time) {
        return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
    };
    return duration(usage.ru_utime) + duration(usage.ru_stime);
}

/// Whether this process has nothing to do while `wait` passes three seconds: less than 20 ms of processor
/// time. A sanitizer makes every step several times as long, so that its figure says nothing.
inline testing::AssertionResult restsFor(const std::function<void(std::chrono::seconds)>& wait) {
    constexpr std::chrono::seconds time(3);
    constexpr std::chrono::duration<double> bound(0.02);
    const auto before = processorTime();
    wait(time);
    const auto used = processorTime() - before;
    std::printf("processor time of three seconds: %.4f s\n", used.count());
    return isSanitized || used < bound
               ? testing::AssertionSuccess()
               : testing::AssertionFailure() << used.count() << " s of processor time";
}

} // namespace varda::test
