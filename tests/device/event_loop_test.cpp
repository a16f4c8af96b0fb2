#include "device/event_loop.h"

#include "core/base/runtime_error.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <thread>
#include <vector>

namespace varda::test {

using namespace device;

namespace {

using namespace std::chrono_literals;

TEST(EventLoopTest, WaitsEndInTheirOrderAndNotBeforeTheirTime) {
    EventLoop loop;
    std::vector<int> ended;
    const auto begin = loop.now();
    const Wait later = loop.after(30ms, [&] {
        ended.push_back(2);
        loop.stop();
    });
    const Wait sooner = loop.after(10ms, [&] { ended.push_back(1); });
    loop.run();
    EXPECT_EQ(ended, (std::vector<int>{1, 2}));
    EXPECT_GE(loop.now() - begin, 30ms);
}

TEST(EventLoopTest, CancelledWaitDoesNotEnd) {
    EventLoop loop;
    bool ended = false;
    {
        const Wait gone = loop.after(5ms, [&] { ended = true; });
    }
    const Wait end = loop.after(20ms, [&] { loop.stop(); });
    loop.run();
    EXPECT_FALSE(ended);
}

TEST(EventLoopTest, TasksOfAnotherThreadRunOnTheLoopsInTheirOrder) {
    EventLoop loop;
    std::vector<int> ran;
    std::thread::id where;
    std::thread other([&] {
        for (int task = 0; task < 100; ++task) {
            loop.post([&, task] {
                where = std::this_thread::get_id();
                ran.push_back(task);
            });
        }
        loop.post([&] { loop.stop(); });
    });
    loop.run();
    other.join();
    EXPECT_EQ(where, std::this_thread::get_id());
    ASSERT_EQ(ran.size(), 100U);
    EXPECT_TRUE(std::is_sorted(ran.begin(), ran.end()));
}

TEST(EventLoopTest, ExceptionOfATaskLeavesALoopThatRunsOn) {
    EventLoop loop;
    loop.post([] { throw std::runtime_error("a defect"); });
    EXPECT_THROW(loop.run(), std::runtime_error);
    bool ran = false;
    loop.post([&] {
        ran = true;
        loop.stop();
    });
    loop.run();
    EXPECT_TRUE(ran);
}

TEST(EventLoopTest, TimerTicksUntilItIsStoppedFromInsideATick) {
    EventLoop loop;
    int ticks = 0;
    std::unique_ptr<PeriodTimer> timer;
    timer = loop.makeTimer([&] {
        if (++ticks == 3) {
            timer->stop();
        }
    });
    timer->setInterval(5);
    EXPECT_FALSE(timer->isRunning());
    timer->start();
    EXPECT_TRUE(timer->isRunning());
    const Wait end = loop.after(60ms, [&] { loop.stop(); });
    loop.run();
    EXPECT_EQ(ticks, 3);
    EXPECT_FALSE(timer->isRunning());
    EXPECT_EQ(timer->interval(), 5);
}

TEST(EventLoopTest, TimerWithoutAnIntervalDoesNotTick) {
    EventLoop loop;
    int ticks = 0;
    const auto timer = loop.makeTimer([&] { ++ticks; });
    timer->setInterval(0);
    timer->start();
    const Wait end = loop.after(20ms, [&] { loop.stop(); });
    loop.run();
    EXPECT_EQ(ticks, 0);
    EXPECT_THROW(timer->setInterval(-1), RuntimeError);
}

} // namespace
} // namespace varda::test
