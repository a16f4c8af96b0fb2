#include "core/base/clock_timer.h"

#include "support/raises.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace varda::test {
namespace {

using namespace std::chrono_literals;

/// A clock whose waits end when the test says so, however late.
class LateClock : public Clock {
public:
    Time now() const override { return now_; }
    void schedule(Duration wait, std::function<void()> due) override {
        waits.push_back(std::chrono::duration_cast<std::chrono::milliseconds>(wait));
        due_ = std::move(due);
    }
    void endWaitAfter(std::chrono::milliseconds time) {
        now_ += time;
        std::exchange(due_, nullptr)();
    }

    std::vector<std::chrono::milliseconds> waits;

private:
    Time now_;
    std::function<void()> due_;
};

class ClockTimerTest : public testing::Test {
protected:
    LateClock clock;
    int ticks = 0;
    ClockTimer timer{clock, [this] { ++ticks; }};
};

using Waits = std::vector<std::chrono::milliseconds>;

TEST_F(ClockTimerTest, LateTickDoesNotPutOffTheNextOne) {
    timer.setInterval(100);
    timer.start();
    clock.endWaitAfter(130ms);
    clock.endWaitAfter(75ms);
    EXPECT_EQ(ticks, 2);
    EXPECT_EQ(clock.waits, (Waits{100ms, 70ms, 95ms}));
}

TEST_F(ClockTimerTest, MissedTicksAreNotMadeUpForAndTheNextOneKeepsToTheGrid) {
    timer.setInterval(100);
    timer.start();
    clock.endWaitAfter(450ms);
    EXPECT_EQ(ticks, 1);
    clock.endWaitAfter(50ms);
    clock.endWaitAfter(200ms); // due that very moment
    EXPECT_EQ(ticks, 3);
    EXPECT_EQ(clock.waits, (Waits{100ms, 50ms, 100ms, 0ms}));
}

TEST_F(ClockTimerTest, NewIntervalOfARunningTimerBeginsItsPeriodAnew) {
    timer.setInterval(100);
    EXPECT_TRUE(clock.waits.empty());
    timer.start();
    timer.setInterval(40);
    EXPECT_EQ(clock.waits, (Waits{100ms, 40ms}));
    EXPECT_EQ(timer.interval(), 40);
}

TEST_F(ClockTimerTest, IntervalBelowZeroIsRefusedAndTheOldOneStays) {
    timer.setInterval(100);
    EXPECT_EQ(numberRaisedBy([this] { timer.setInterval(-1); }), 380);
    EXPECT_EQ(timer.interval(), 100);
}

} // namespace
} // namespace varda::test
