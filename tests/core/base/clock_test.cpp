#include "support/manual_clock.h"

#include <gtest/gtest.h>

#include <optional>

namespace varda::test {
namespace {

using namespace std::chrono_literals;

class WaitTest : public testing::Test {
protected:
    ManualClock clock;
    int runs = 0;
    Wait::Continuation count = [this] { ++runs; };
};

TEST_F(WaitTest, RunsOnceWhenItFallsDue) {
    const Wait wait = clock.after(10ms, count);
    clock.advance(9ms);
    EXPECT_TRUE(wait.isPending());
    EXPECT_EQ(runs, 0);
    clock.advance(1ms);
    EXPECT_FALSE(wait.isPending());
    clock.advance(100ms);
    EXPECT_EQ(runs, 1);
}

TEST_F(WaitTest, EndsWithItsObject) {
    { const Wait wait = clock.after(10ms, count); }
    clock.advance(100ms);
    EXPECT_EQ(runs, 0);
}

TEST_F(WaitTest, EndsWhereItIsCancelledOrReplaced) {
    Wait wait = clock.after(10ms, count);
    wait.cancel();
    EXPECT_FALSE(wait.isPending());
    wait = clock.after(10ms, count);
    wait = clock.after(20ms, count);
    clock.advance(100ms);
    EXPECT_EQ(runs, 1);
}

TEST_F(WaitTest, MayBeginTheNextOneFromWithin) {
    Wait wait;
    wait = clock.after(10ms, [&] {
        EXPECT_FALSE(wait.isPending());
        wait = clock.after(10ms, count);
    });
    clock.advance(19ms);
    EXPECT_EQ(runs, 0);
    EXPECT_TRUE(wait.isPending());
    clock.advance(1ms);
    EXPECT_EQ(runs, 1);
}

TEST_F(WaitTest, ThatWaitsForNothingIsNotPending) {
    Wait wait;
    EXPECT_FALSE(wait.isPending());
    wait.cancel();
    EXPECT_FALSE(wait.isPending());
}

TEST_F(WaitTest, ClockMovesWithTheTimeThatPasses) {
    const Clock::Time begin = clock.now();
    std::optional<Clock::Time> ran;
    const Wait wait = clock.after(10ms, [&] { ran = clock.now(); });
    clock.advance(25ms);
    EXPECT_EQ(*ran - begin, 10ms);
    EXPECT_EQ(clock.now() - begin, 25ms);
}

} // namespace
} // namespace varda::test
