#pragma once

#include "support/processor_time.h"
#include "support/sanitized.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <functional>

namespace varda::test {

/// Whether this process has nothing to do while `wait` passes three seconds: less than 20 ms of processor
/// time. A system that counts that time in whole ticks of 10 ms or more is allowed a few. A sanitizer makes
/// every step several times as long, so that its figure says nothing.
inline testing::AssertionResult restsFor(const std::function<void(std::chrono::seconds)>& wait) {
    constexpr std::chrono::seconds time(3);
#ifdef _WIN32
    constexpr std::chrono::duration<double> bound(0.05);
#else
    constexpr std::chrono::duration<double> bound(0.02);
#endif
    const auto before = processorTime();
    wait(time);
    const auto used = processorTime() - before;
    std::printf("processor time of three seconds: %.4f s\n", used.count());
    return isSanitized || used < bound
               ? testing::AssertionSuccess()
               : testing::AssertionFailure() << used.count() << " s of processor time";
}

} // namespace varda::test
