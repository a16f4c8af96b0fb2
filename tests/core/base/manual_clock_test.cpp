#include "support/manual_clock.h"

#include "support/raises.h"

#include <gtest/gtest.h>

#include <vector>

namespace varda::test {
namespace {

using namespace std::chrono_literals;

TEST(ManualClock, RunsWhatFallsDueInOrder) {
    ManualClock clock;
    std::vector<int> order;
    clock.schedule(20ms, [&order] { order.push_back(3); });
    clock.schedule(10ms, [&order] { order.push_back(1); });
    clock.schedule(10ms, [&order] { order.push_back(2); });
    clock.advance(9);
    EXPECT_TRUE(order.empty());
    clock.advance(1);
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    clock.advance(100);
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(clock.pending(), 0U);
}

TEST(ManualClock, CountsAWaitInsideAContinuationFromWhenItRan) {
    ManualClock clock;
    int runs = 0;
    clock.schedule(10ms, [&] { clock.schedule(10ms, [&runs] { ++runs; }); });
    clock.advance(19);
    EXPECT_EQ(runs, 0);
    clock.advance(1);
    EXPECT_EQ(runs, 1);
}

TEST(ManualTimer, TicksOncePerIntervalUntilItIsStopped) {
    ManualClock clock;
    int ticks = 0;
    ManualTimer timer(clock, [&ticks] { ++ticks; });
    timer.setInterval(100);
    clock.advance(500);
    EXPECT_EQ(ticks, 0);
    timer.start();
    clock.advance(350);
    EXPECT_EQ(ticks, 3);
    timer.stop();
    clock.advance(500);
    EXPECT_EQ(ticks, 3);
    EXPECT_FALSE(timer.isRunning());
}

TEST(ManualTimer, RestartsItsPeriodWithANewInterval) {
    ManualClock clock;
    int ticks = 0;
    ManualTimer timer(clock, [&ticks] { ++ticks; });
    timer.setInterval(100);
    timer.start();
    clock.advance(99);
    timer.setInterval(100);
    clock.advance(99);
    EXPECT_EQ(ticks, 0);
    clock.advance(1);
    EXPECT_EQ(ticks, 1);
}

TEST(ManualTimer, LetsItsTickStopIt) {
    ManualClock clock;
    int ticks = 0;
    ManualTimer timer(clock, [&] {
        ++ticks;
        timer.stop();
    });
    timer.setInterval(10);
    timer.start();
    clock.advance(100);
    EXPECT_EQ(ticks, 1);
}

TEST(ManualTimer, NeverTicksAtZeroAndRefusesLess) {
    ManualClock clock;
    int ticks = 0;
    ManualTimer timer(clock, [&ticks] { ++ticks; });
    timer.start();
    clock.advance(100);
    EXPECT_EQ(ticks, 0);
    EXPECT_EQ(numberRaisedBy([&timer] { timer.setInterval(-1); }), 380);
}

} // namespace
} // namespace varda::test
