#include "device/input_buffer.h"

#include <gtest/gtest.h>

#include <numeric>

namespace varda {

using namespace device;
namespace {

using namespace std::chrono_literals;

Bytes counting(std::size_t count) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

class InputBufferTest : public testing::Test {
protected:
    void append(const Bytes& bytes) { buffer.append(bytes, time += 1ms); }

    static std::vector<std::size_t> countsOf(const Burst& burst) {
        std::vector<std::size_t> counts;
        for (const Arrival& arrival : burst.arrivals) {
            counts.push_back(arrival.count);
        }
        return counts;
    }

    InputBuffer buffer;
    InputBuffer::Time time;
};

TEST_F(InputBufferTest, GivesItsPiecesInOrderWithTheTimesOfTheirArrival) {
    append({1, 2});
    append({3});
    EXPECT_EQ(buffer.count(), 3U);
    const Burst taken = buffer.take();
    EXPECT_EQ(taken.bytes, (Bytes{1, 2, 3}));
    EXPECT_EQ(countsOf(taken), (std::vector<std::size_t>{2, 1}));
    EXPECT_EQ(taken.arrivals.at(0).time, InputBuffer::Time(1ms));
    EXPECT_EQ(taken.arrivals.at(1).time, InputBuffer::Time(2ms));
    EXPECT_EQ(taken.counted, 0U);
    EXPECT_EQ(buffer.count(), 0U);
    const Burst nothing = buffer.take();
    EXPECT_TRUE(nothing.bytes.empty());
    EXPECT_TRUE(nothing.arrivals.empty());
}

TEST_F(InputBufferTest, ClearedKeepsNothing) {
    append({1, 2});
    buffer.clear();
    EXPECT_EQ(buffer.count(), 0U);
    EXPECT_TRUE(buffer.take().bytes.empty());
}

TEST_F(InputBufferTest, IsFullAtItsLimitUntilItIsTaken) {
    append(Bytes(InputBuffer::limit - 1));
    EXPECT_FALSE(buffer.isFull());
    append(Bytes(10));
    EXPECT_TRUE(buffer.isFull());
    EXPECT_EQ(buffer.take().bytes.size(), InputBuffer::limit + 9) << "no byte is lost";
    EXPECT_FALSE(buffer.isFull());
}

TEST_F(InputBufferTest, CountsWhatItIsNotToKeep) {
    buffer.keepFirst(4);
    append(counting(3));
    append(counting(3));
    append(counting(3));
    EXPECT_EQ(buffer.count(), 9U);
    const Burst taken = buffer.take();
    EXPECT_EQ(taken.bytes, (Bytes{0, 1, 2, 0}));
    EXPECT_EQ(countsOf(taken), (std::vector<std::size_t>{3, 1}));
    EXPECT_EQ(taken.counted, 5U);
}

TEST_F(InputBufferTest, DropsWhatItHasTooMuchAlready) {
    append(counting(3));
    append(counting(3));
    append(counting(3));
    buffer.keepFirst(4);
    append(counting(3));
    EXPECT_EQ(buffer.count(), 12U);
    const Burst taken = buffer.take();
    EXPECT_EQ(taken.bytes, (Bytes{0, 1, 2, 0}));
    EXPECT_EQ(countsOf(taken), (std::vector<std::size_t>{3, 1}));
    EXPECT_EQ(taken.counted, 8U);
}

TEST_F(InputBufferTest, KeepsEverythingAgainOnceItWasTakenOrCleared) {
    buffer.keepFirst(1);
    append(counting(3));
    buffer.take();
    append(counting(3));
    EXPECT_EQ(buffer.take().bytes, counting(3));
    buffer.keepFirst(1);
    buffer.clear();
    append(counting(3));
    EXPECT_EQ(buffer.take().bytes, counting(3));
}

TEST_F(InputBufferTest, IsNeverFullWhereItOnlyCounts) {
    buffer.keepFirst(1000);
    for (std::size_t total = 0; total <= 2 * InputBuffer::limit; total += 4096) {
        append(Bytes(4096));
        ASSERT_FALSE(buffer.isFull());
    }
    EXPECT_GT(buffer.count(), 2 * InputBuffer::limit);
    EXPECT_EQ(buffer.take().bytes.size(), 1000U);
}

TEST_F(InputBufferTest, TellsOnlySoManyArrivalsApart) {
    for (std::size_t piece = 0; piece < InputBuffer::mostArrivals + 10; ++piece) {
        append({1});
    }
    const Burst taken = buffer.take();
    EXPECT_EQ(taken.bytes.size(), InputBuffer::mostArrivals + 10);
    EXPECT_EQ(taken.arrivals.size(), InputBuffer::mostArrivals);
    EXPECT_EQ(taken.arrivals.back().count, 11U);
}

TEST_F(InputBufferTest, ShowsWhatItKeepsWithoutGivingItAway) {
    append({1, 2, 3});
    append({4});
    EXPECT_EQ(buffer.look(0).bytes, (Bytes{1, 2, 3, 4}));
    const Burst rest = buffer.look(2);
    EXPECT_EQ(rest.bytes, (Bytes{3, 4}));
    ASSERT_EQ(rest.arrivals.size(), 2U);
    EXPECT_EQ(rest.arrivals[0].count, 1U);
    EXPECT_EQ(rest.arrivals[0].time, InputBuffer::Time(1ms));
    EXPECT_EQ(rest.arrivals[1].time, InputBuffer::Time(2ms));
    EXPECT_TRUE(buffer.look(4).bytes.empty());
    EXPECT_TRUE(buffer.look(5).arrivals.empty());
    EXPECT_EQ(buffer.take().bytes, (Bytes{1, 2, 3, 4}));
}

} // namespace
} // namespace varda
