#include "device/connection.h"
#include "device/device_line.h"

#include "support/pseudo_terminal.h"
#include "support/task_loop.h"

#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include <atomic>
#include <random>
#include <thread>

namespace varda {

using namespace device;
namespace {

using namespace std::chrono_literals;
using test::PseudoTerminal;
using test::TaskLoop;

/// A line that is too slow, or too busy, for what is asked of it.
class DeviceLineFlowTest : public testing::Test {
protected:
    DeviceLineFlowTest() {
        line.setEventHandler([this](CommEvent event, const std::string&) {
            events.push_back(event);
            sizesAtEvents.push_back(line.inBufferCount());
        });
        line.open({});
    }

    std::ptrdiff_t told(CommEvent event) const { return std::count(events.begin(), events.end(), event); }

    /// Sends frames of `length` bytes, each of another value, until one is left unsent. @return the sent ones
    std::size_t fillUp(std::size_t length) {
        std::size_t sent = 0;
        while (line.unsentWrites() == 0 && sent < 100000) {
            line.write(Bytes(length, static_cast<std::uint8_t>(sent)));
            sent += line.unsentWrites() == 0 ? 1 : 0;
        }
        return sent;
    }

    /// What the far end gets of all this, the event loop running.
    Bytes drained(std::size_t count) {
        Bytes bytes;
        loop.runUntil([&] {
            const Bytes more = terminal.readAvailable();
            bytes.insert(bytes.end(), more.begin(), more.end());
            return bytes.size() >= count;
        });
        return bytes;
    }

    /// Waits until so many bytes are in the driver, or have been fetched from there.
    void waitAtTheNearEnd(std::size_t count) const {
        std::size_t waiting = 0;
        do {
            waiting = line.inBufferCount();
            int inDriver = 0; // asked second: what moves meanwhile is counted once at the most
            ::ioctl(terminal.nearEnd(), FIONREAD, &inDriver);
            waiting += static_cast<std::size_t>(inDriver);
        } while (waiting < count);
    }

    TaskLoop loop;
    PseudoTerminal terminal;
    DeviceLine line{terminal.path(), loop.post()};
    std::vector<CommEvent> events;
    std::vector<std::size_t> sizesAtEvents;
};

TEST_F(DeviceLineFlowTest, ASlowLineIsNoDeadLine) {
    constexpr std::size_t length = 500;
    const std::size_t sent = fillUp(length);
    for (int more = 0; more < 1000; ++more) {
        line.write(Bytes(length, 0xEE));
    }
    const std::size_t fitted =
        1001 - line.unsentWrites(); // of the later ones, where the driver made room meanwhile
    EXPECT_LT(fitted, 100U);
    loop.runFor(20ms);
    EXPECT_EQ(events, std::vector<CommEvent>{CommEvent::Unsent});
    const Bytes far = drained((sent + fitted) * length);
    loop.runFor(20ms);
    EXPECT_TRUE(terminal.readAvailable().empty());
    ASSERT_EQ(far.size(), (sent + fitted) * length) << "whole frames, and none that was counted as unsent";
    for (std::size_t i = 0; i < far.size(); ++i) {
        const std::size_t frame = i / length;
        ASSERT_EQ(far[i], frame < sent ? static_cast<std::uint8_t>(frame) : 0xEE) << "byte " << i;
    }
}

TEST_F(DeviceLineFlowTest, OnceTheSlowLineHasCaughtUpFramesAreSentAgain) {
    const std::size_t sent = fillUp(500);
    EXPECT_EQ(drained(sent * 500).size(), sent * 500);
    line.write({1, 2, 3});
    EXPECT_EQ(drained(3), (Bytes{1, 2, 3}));
    EXPECT_EQ(line.unsentWrites(), 1U);
}

TEST_F(DeviceLineFlowTest, NoMoreThanTheLimitWaitsBehindWhatTheDriverTook) {
    line.write(Bytes(300000, 0x11)); // of any length, where nothing waits
    const std::size_t before = line.unsentWrites();
    line.write(Bytes(1, 0x22));
    EXPECT_EQ(before, 0U);
    EXPECT_EQ(line.unsentWrites(), 1U);
    EXPECT_EQ(drained(300000).size(), 300000U);
}

TEST_F(DeviceLineFlowTest, ClosesAtOnceWhileTheFarEndTakesNothing) {
    fillUp(500);
    line.close();
    line.open({});
    EXPECT_EQ(line.unsentWrites(), 0U);
    EXPECT_EQ(line.inBufferCount(), 0U);
}

TEST_F(DeviceLineFlowTest, EveryByteOfAFloodArrivesThoughTheReaderComesOnlyNowAndThen) {
    constexpr std::size_t total = 30'000'000;
    std::thread sender([this] {
        Bytes piece(10007);
        std::size_t sent = 0;
        while (sent < total) {
            piece.resize(std::min(piece.size(), total - sent));
            for (auto& byte : piece) {
                byte = static_cast<std::uint8_t>(sent++ % 251);
            }
            terminal.write(piece, 60s);
        }
    });
    std::size_t count = 0;
    std::size_t largest = 0;
    bool isInOrder = true;
    while (count < total && told(CommEvent::HungUp) == 0) {
        loop.runFor(5ms);
        const Bytes bytes = line.read().bytes;
        largest = std::max(largest, bytes.size());
        for (const std::uint8_t byte : bytes) {
            isInOrder = isInOrder && byte == count++ % 251;
        }
    }
    sender.join();
    EXPECT_EQ(count, total);
    EXPECT_TRUE(isInOrder);
    EXPECT_LE(largest, InputBuffer::limit + 4096);
}

TEST_F(DeviceLineFlowTest, NobodyReadsAndStillMemoryEndsAtTheLimit) {
    std::atomic<bool> isStopped = false;
    std::size_t sent = 0;
    std::thread sender([&] {
        try {
            while (!isStopped) {
                terminal.write(Bytes(10000, 0x55), 2s);
                sent += 10000;
            }
        } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): the line takes no more
        }
    });
    EXPECT_TRUE(loop.runUntil([this] { return line.inBufferCount() >= InputBuffer::limit; }, 60s));
    loop.runFor(50ms);
    EXPECT_LE(line.inBufferCount(), InputBuffer::limit + 4096);
    std::size_t read = 0;
    isStopped = true;
    loop.runUntil(
        [&] {
            read += line.read().bytes.size();
            return false;
        },
        300ms);
    sender.join();
    loop.runUntil([&] {
        read += line.read().bytes.size();
        return read >= sent;
    });
    EXPECT_GE(read, sent) << "and nothing is lost when the reader comes back";
}

TEST_F(DeviceLineFlowTest, WhatIsOnlyCountedIsNotKept) {
    line.keepFirst(1000);
    for (int piece = 0; piece < 500; ++piece) {
        terminal.write(Bytes(10000, static_cast<std::uint8_t>(piece)));
    }
    ASSERT_TRUE(loop.runUntil([this] { return line.inBufferCount() == 5'000'000; }));
    EXPECT_EQ(line.read().bytes, Bytes(1000, 0));
    EXPECT_EQ(line.inBufferCount(), 0U);
    terminal.write(Bytes(2000, 7));
    ASSERT_TRUE(loop.runUntil([this] { return line.inBufferCount() == 2000; }));
    EXPECT_EQ(line.read().bytes.size(), 2000U);
}

TEST_F(DeviceLineFlowTest, TellsOfEveryPieceThatComesToUnreadOnes) {
    for (std::size_t count = 1; count <= 5; ++count) {
        terminal.write({1});
        ASSERT_TRUE(loop.runUntil([&] { return events.size() == count; }));
    }
    EXPECT_EQ(told(CommEvent::Received), 5);
    EXPECT_EQ(line.inBufferCount(), 5U);
}

TEST_F(DeviceLineFlowTest, TellsOfUnreadBytesNoMoreThanTenTimesASecond) {
    const auto start = std::chrono::steady_clock::now();
    for (int piece = 0; piece < 100; ++piece) {
        terminal.write({1});
        loop.runFor(2ms);
    }
    const auto tenths = (std::chrono::steady_clock::now() - start) / 100ms;
    EXPECT_LE(told(CommEvent::Received), tenths + 2); // the first at once, and one that was under way
    EXPECT_TRUE(loop.runUntil([this] { return !sizesAtEvents.empty() && sizesAtEvents.back() == 100; }))
        << "the last piece is told of too";
}

TEST_F(DeviceLineFlowTest, TellsOfThePieceBehindARead) {
    terminal.write({1});
    ASSERT_TRUE(loop.runUntil([this] { return told(CommEvent::Received) == 1; }));
    line.read();
    terminal.write({2});
    ASSERT_TRUE(loop.runUntil([this] { return told(CommEvent::Received) == 2; }));
    EXPECT_EQ(line.read().bytes, Bytes{2});
}

/// While several gatherings end, each of which has something to tell.
TEST_F(DeviceLineFlowTest, KeepsNoMoreThanOneTaskOnTheWay) {
    const auto end = std::chrono::steady_clock::now() + 3 * Connection::gatheringTime;
    std::size_t pieces = 0;
    for (; std::chrono::steady_clock::now() < end; ++pieces) {
        terminal.write({1});
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(loop.waitingTasks(), 1U);
    EXPECT_TRUE(loop.runUntil([&] { return line.inBufferCount() == pieces; }));
}

TEST_F(DeviceLineFlowTest, NoEventFindsTheInputEmptyWhenItWasDiscardedMeanwhile) {
    std::mt19937 random(20261122);
    for (int round = 0; round < 2000; ++round) {
        terminal.write(Bytes(1 + random() % 5, 1));
        for (auto spin = random() % 3000; spin > 0; --spin) {
            std::atomic_signal_fence(std::memory_order_seq_cst);
        }
        line.discard();
        if (round % 10 == 0) {
            loop.runFor(1ms);
        }
    }
    loop.runFor(20ms);
    line.discard();
    EXPECT_EQ(std::count(sizesAtEvents.begin(), sizesAtEvents.end(), 0U), 0);
    terminal.write({42});
    ASSERT_TRUE(loop.runUntil([this] { return line.inBufferCount() > 0; }));
    EXPECT_EQ(line.read().bytes, Bytes{42});
}

TEST_F(DeviceLineFlowTest, WhatHasComeWhenItIsDiscardedNeverComesBackWhereverItIs) {
    for (int round = 0; round < 2000; ++round) {
        terminal.write({1, 2, 3});
        waitAtTheNearEnd(3); // from the driver it is on its way to the line by now
        line.discard();
        terminal.write({9});
        ASSERT_TRUE(loop.runUntil([this] { return line.inBufferCount() > 0; })) << "round " << round;
        ASSERT_EQ(line.read().bytes, Bytes{9}) << "round " << round;
    }
}

TEST_F(DeviceLineFlowTest, TellsWhenEachPieceCame) {
    const auto before = Arrival::Time::clock::now();
    terminal.write({1, 2});
    ASSERT_TRUE(loop.runUntil([this] { return line.inBufferCount() == 2; }));
    terminal.write({3});
    ASSERT_TRUE(loop.runUntil([this] { return line.inBufferCount() == 3; }));
    const auto after = Arrival::Time::clock::now();
    const auto arrivals = line.read().arrivals;
    ASSERT_EQ(arrivals.size(), 2U);
    EXPECT_EQ(arrivals[0].count, 2U);
    EXPECT_EQ(arrivals[1].count, 1U);
    EXPECT_LT(before, arrivals[0].time);
    EXPECT_LT(arrivals[0].time, arrivals[1].time);
    EXPECT_LT(arrivals[1].time, after);
}

TEST_F(DeviceLineFlowTest, OpensAndClosesInTheMiddleOfEverything) {
    std::atomic<bool> isStopped = false;
    std::thread farEnd([&] {
        while (!isStopped) {
            terminal.readAvailable();
            try {
                terminal.write(Bytes(100, 3), 10ms);
            } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): nobody reads just now
            }
        }
    });
    line.setEventHandler([this](CommEvent, const std::string&) {
        line.close();
        line.open({});
        line.write(Bytes(1000, 4));
    });
    for (int round = 0; round < 200; ++round) {
        loop.runFor(1ms);
        line.write(Bytes(3000, 5));
        if (round % 3 == 0) {
            line.close();
            line.open({});
        }
    }
    isStopped = true;
    farEnd.join();
    line.close();
    line.setEventHandler(
        [](CommEvent, const std::string&) { FAIL() << "a closed line has nothing to tell"; });
    loop.runFor(20ms);
}

/// A full input buffer is not read on: the end of the line lies behind what nobody has read yet.
TEST_F(DeviceLineFlowTest, TheEndOfALineThatWasFullIsToldOnceItWasRead) {
    std::thread sender([&] {
        try {
            terminal.write(Bytes(2 * InputBuffer::limit, 0x55), 1s);
        } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): the line takes no more
        }
    });
    EXPECT_TRUE(loop.runUntil([this] { return line.inBufferCount() >= InputBuffer::limit; }, 60s));
    sender.join();
    terminal.closeFarEnd();
    loop.runFor(20ms);
    EXPECT_EQ(told(CommEvent::HungUp), 0);
    EXPECT_GE(line.read().bytes.size(), InputBuffer::limit);
    EXPECT_TRUE(loop.runUntil([this] { return told(CommEvent::HungUp) == 1; }));
    EXPECT_EQ(events.back(), CommEvent::HungUp);
}

/// A line that is destroyed inside its own event.
class DeviceLineEnd : public testing::Test {
protected:
    void destroyInside(CommEvent event) {
        line->setEventHandler([this, event](CommEvent told, const std::string&) {
            events.push_back(told);
            if (told == event) {
                line.reset();
            }
        });
        line->open({});
    }

    void expectNoMoreThan(CommEvent last) {
        EXPECT_TRUE(loop.runUntil([this] { return line == nullptr; }));
        loop.runFor(20ms);
        EXPECT_EQ(std::count(events.begin(), events.end(), last), 1);
        EXPECT_EQ(events.back(), last);
    }

    TaskLoop loop;
    PseudoTerminal terminal;
    std::unique_ptr<DeviceLine> line = std::make_unique<DeviceLine>(terminal.path(), loop.post());
    std::vector<CommEvent> events;
};

TEST_F(DeviceLineEnd, MayComeInsideAReception) {
    destroyInside(CommEvent::Received);
    terminal.write({1, 2, 3});
    expectNoMoreThan(CommEvent::Received);
}

TEST_F(DeviceLineEnd, MayComeInsideAReceptionThatMoreFollows) {
    destroyInside(CommEvent::Received);
    for (int write = 0; write < 20; ++write) {
        line->write(Bytes(5000, 1)); // unsent, most of it
    }
    terminal.write({1, 2, 3});
    while (line->inBufferCount() < 3) {
        std::this_thread::yield();
    }
    terminal.closeFarEnd();
    expectNoMoreThan(CommEvent::Received);
}

TEST_F(DeviceLineEnd, MayComeWhereFramesWereNotSent) {
    destroyInside(CommEvent::Unsent);
    for (int write = 0; write < 20; ++write) {
        line->write(Bytes(5000, 1));
    }
    expectNoMoreThan(CommEvent::Unsent);
}

TEST_F(DeviceLineEnd, MayComeInsideAHangUp) {
    destroyInside(CommEvent::HungUp);
    terminal.closeFarEnd();
    expectNoMoreThan(CommEvent::HungUp);
}

TEST_F(DeviceLineEnd, LeavesTasksOnTheWayWithoutHarm) {
    line->setEventHandler([](CommEvent, const std::string&) { FAIL(); });
    line->open({});
    terminal.write({1});
    while (loop.waitingTasks() == 0) {
        std::this_thread::yield();
    }
    line.reset();
    loop.runFor(5ms);
}

} // namespace
} // namespace varda
