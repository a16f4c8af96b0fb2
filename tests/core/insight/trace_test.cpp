#include "core/insight/trace.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

TraceLine lineOf(std::size_t bytes) {
    TraceLine line;
    line.bytes = Bytes(bytes, 1);
    line.size = bytes;
    return line;
}

TEST(Trace, LinesKeepTheirNumbersWhileTheOldestGo) {
    Trace trace;
    for (std::size_t count = 0; count < Trace::mostLines + 10; ++count) {
        TraceLine line = lineOf(1);
        line.expected = static_cast<int>(count);
        EXPECT_EQ(trace.append(std::move(line)), count);
    }
    EXPECT_EQ(trace.size(), Trace::mostLines);
    EXPECT_EQ(trace.begin(), 10U);
    EXPECT_EQ(trace.find(9), nullptr);
    EXPECT_EQ(trace.find(10)->expected, 10);
    EXPECT_EQ(trace.find(trace.end()), nullptr);
}

TEST(Trace, FloodOfLongLinesIsBounded) {
    Trace trace;
    for (int count = 0; count < 20'000; ++count) {
        trace.append(lineOf(Trace::mostLineBytes));
    }
    EXPECT_EQ(trace.size(), Trace::mostBytes / Trace::mostLineBytes);
    trace.change(trace.end() - 1, [](TraceLine& line) { line.bytes.resize(2 * Trace::mostLineBytes); });
    EXPECT_EQ(trace.size(), Trace::mostBytes / Trace::mostLineBytes - 1);
}

TEST(Trace, NewsComeTogetherAndWakeUpOnce) {
    Trace trace;
    int woken = 0;
    trace.setWakeUp([&woken] { ++woken; });
    trace.append(lineOf(1));
    trace.append(lineOf(1));
    EXPECT_EQ(woken, 1);
    Trace::News news = trace.takeNews();
    EXPECT_EQ(news.begin, 0U);
    EXPECT_EQ(news.end, 2U);
    EXPECT_TRUE(news.changed.empty());
    const auto touch = [](TraceLine& line) { line.expected = 7; };
    trace.change(1, touch);
    trace.append(lineOf(1));
    trace.change(2, touch); // new since: not told as changed
    EXPECT_EQ(woken, 2);
    news = trace.takeNews();
    EXPECT_EQ(news.end, 3U);
    EXPECT_EQ(news.changed, std::vector<Trace::Number>{1});
    EXPECT_FALSE(news.markedFrom);
    trace.change(77, touch);
    EXPECT_EQ(woken, 2);
}

TEST(Trace, MarksAreToldOnceForAllLinesAndLeaveTheRestAlone) {
    Trace trace;
    int woken = 0;
    trace.setWakeUp([&woken] { ++woken; });
    for (int count = 0; count < 5; ++count) {
        trace.append(lineOf(1));
    }
    trace.takeNews();
    EXPECT_FALSE(trace.isWrong(3)); // nobody has read it yet; looked up once
    trace.mark(1, true);
    const std::vector<Trace::Number> some = {1, 3, 4, 77};
    trace.mark(some, true);
    EXPECT_EQ(woken, 2);
    EXPECT_TRUE(trace.find(3)->isMarked && trace.find(4)->isMarked);
    EXPECT_TRUE(trace.find(3)->isWrong.has_value()) << "is not looked up anew for a mark";
    Trace::News news = trace.takeNews();
    EXPECT_TRUE(news.changed.empty());
    EXPECT_EQ(news.markedFrom, 1U);
    trace.mark(some, true); // they are marked already
    trace.mark(77, true);
    EXPECT_EQ(woken, 2);
    EXPECT_FALSE(trace.takeNews().markedFrom);
}

TEST(Trace, ClearingKeepsTheNumbersGoingOn) {
    Trace trace;
    trace.append(lineOf(3));
    trace.clear();
    EXPECT_EQ(trace.size(), 0U);
    EXPECT_EQ(trace.append(lineOf(1)), 1U);
    EXPECT_EQ(trace.takeNews().begin, 1U);
}

TEST(Trace, TimeOfDayFollowsTheClock) {
    using namespace std::chrono_literals;
    Trace trace;
    const Clock::Time start{5s};
    const std::chrono::system_clock::time_point noon{43'200s};
    trace.setTimeOfDay(start, noon);
    EXPECT_EQ(trace.timeOfDay(start + 1500ms), noon + 1500ms);
}

TEST(Trace, LinesKeepTheirTimeOfDayWhenTheClockIsTiedAnew) {
    using namespace std::chrono_literals;
    Trace trace;
    const std::chrono::system_clock::time_point noon{43'200s};
    TraceLine line = lineOf(1);
    line.first = Clock::Time{6s};
    trace.setTimeOfDay(Clock::Time{5s}, noon);
    trace.append(line);
    trace.setTimeOfDay(Clock::Time{9s}, noon + 1h); // somebody has set the clock of the computer
    line.first = Clock::Time{10s};
    trace.append(line);
    EXPECT_EQ(trace.find(0)->timeOfDay, noon + 1s);
    EXPECT_EQ(trace.find(1)->timeOfDay, noon + 1h + 1s);
}

} // namespace
} // namespace varda::test
