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
    trace.mark(1, true);
    trace.append(lineOf(1));
    trace.mark(2, true); // new since: not told as changed
    EXPECT_EQ(woken, 2);
    news = trace.takeNews();
    EXPECT_EQ(news.end, 3U);
    EXPECT_EQ(news.changed, std::vector<Trace::Number>{1});
    trace.mark(77, true);
    EXPECT_EQ(woken, 2);
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

} // namespace
} // namespace varda::test
