#include "turns.h"

#include <algorithm>
#include <cstdio>

#include <ctime>

namespace varda::bench {
namespace {

std::string listed(const std::vector<double>& values) {
    std::string text;
    for (const double value : values) {
        text.append(text.empty() ? "" : " ").append(std::to_string(value));
    }
    return text;
}

using Milliseconds = std::chrono::duration<double, std::milli>;

Milliseconds timeOfDay() { return std::chrono::steady_clock::now().time_since_epoch(); }

Milliseconds processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

double leastBy(Milliseconds (*now)(), const std::function<void()>& call,
               const std::function<void()>& before) {
    constexpr int repeats = 5;
    double least = 0;
    for (int repeat = 0; repeat < repeats; ++repeat) {
        before();
        const Milliseconds start = now();
        call();
        const double time = (now() - start).count();
        least = repeat == 0 ? time : std::min(least, time);
    }
    return least;
}

} // namespace

double leastTime(const std::function<void()>& call) {
    return leastBy(timeOfDay, call, [] {});
}

double leastProcessorTime(const std::function<void()>& call, const std::function<void()>& before) {
    return leastBy(processorTime, call, before);
}

Turns byTurns(const std::function<double()>& ours, const std::function<double()>& theirs) {
    Turns result;
    for (int turn = 0; turn < turnCount; ++turn) {
        result.ours.push_back(ours());
        result.theirs.push_back(theirs());
    }
    return result;
}

void print(const std::string& what, const std::string& beside, const std::string& unit, const Turns& turns) {
    std::printf("turns\t%s\t%s\t%s\t%s\t%s\n", what.c_str(), beside.c_str(), unit.c_str(),
                listed(turns.ours).c_str(), listed(turns.theirs).c_str());
    std::fflush(stdout);
}

} // namespace varda::bench
