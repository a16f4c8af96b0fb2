#include "device/device_line.h"

#include "core/link/mscomm.h"
#include "support/pseudo_terminal.h"
#include "support/raises.h"
#include "support/resting.h"
#include "support/task_loop.h"

#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <numeric>

namespace varda {

using namespace device;
namespace {

using namespace std::chrono_literals;
using test::numberRaisedBy;
using test::PseudoTerminal;
using test::TaskLoop;

/// The serial control on a pseudo-terminal.
class DeviceLineTest : public testing::Test {
protected:
    DeviceLineTest() {
        comm.setCommPort(terminal.path());
        comm.setEventHandler([this](CommEvent event, const std::string& reason) {
            events.push_back(event);
            reasons.push_back(reason);
            if (event == CommEvent::Received && readsAtOnce) {
                const Bytes bytes = comm.read().bytes;
                received.insert(received.end(), bytes.begin(), bytes.end());
            }
        });
        comm.open();
    }

    void runFor(std::chrono::milliseconds time) { loop.runFor(time); }
    bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = 5s) {
        return loop.runUntil(condition, limit);
    }

    Bytes receivedAtFarEnd(std::size_t count) {
        Bytes bytes;
        runUntil([&] {
            const Bytes more = terminal.readAvailable();
            bytes.insert(bytes.end(), more.begin(), more.end());
            return bytes.size() >= count;
        });
        return bytes;
    }

    /// Waits until bytes have come through to the near end, with no event loop that could tell of them: to
    /// the driver, or already to the line, if it is open.
    bool reachTheNearEnd(std::size_t count, const Line* open = nullptr) const {
        const auto end = std::chrono::steady_clock::now() + 1s;
        std::size_t waiting = 0;
        while (waiting < count && std::chrono::steady_clock::now() < end) {
            waiting = open != nullptr ? open->inBufferCount() : comm.inBufferCount();
            int inDriver = 0; // asked second: what moves meanwhile is counted once at the most
            ::ioctl(terminal.nearEnd(), FIONREAD, &inDriver);
            waiting += static_cast<std::size_t>(inDriver);
        }
        return waiting == count;
    }

    int hangUps() const {
        return static_cast<int>(std::count(events.begin(), events.end(), CommEvent::HungUp));
    }

    TaskLoop loop;
    PseudoTerminal terminal;
    MSComm comm{[this](const std::string& name) { return std::make_unique<DeviceLine>(name, loop.post()); }};
    bool readsAtOnce = true;
    std::vector<CommEvent> events;
    std::vector<std::string> reasons;
    Bytes received;
};

Bytes allByteValues() {
    Bytes bytes(256);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

TEST_F(DeviceLineTest, RaisesNothingOnOpeningAndClosing) {
    runFor(20ms);
    comm.close();
    runFor(20ms);
    EXPECT_TRUE(events.empty());
}

TEST_F(DeviceLineTest, ReceivesEveryByteValueUnchanged) {
    terminal.write(allByteValues());
    runUntil([this] { return received.size() >= 256; });
    EXPECT_EQ(received, allByteValues());
}

TEST_F(DeviceLineTest, SendsEveryByteValueUnchanged) {
    comm.write(allByteValues());
    EXPECT_EQ(receivedAtFarEnd(256), allByteValues());
}

TEST_F(DeviceLineTest, ReceivesALongAnswerInOneBurst) {
    Bytes answer(518);
    std::iota(answer.begin(), answer.end(), std::uint8_t{0});
    readsAtOnce = false;
    terminal.write(answer);
    ASSERT_TRUE(runUntil([this] { return comm.inBufferCount() == 518; }));
    EXPECT_EQ(comm.read().bytes, answer);
    EXPECT_EQ(comm.inBufferCount(), 0U);
}

TEST_F(DeviceLineTest, HoldsAnyNumberOfUnreadBytes) {
    readsAtOnce = false;
    const Bytes part(1024, 0x55);
    for (int count = 1; count <= 200; ++count) {
        terminal.write(part);
        const auto total = part.size() * static_cast<std::size_t>(count);
        ASSERT_TRUE(runUntil([&] { return comm.inBufferCount() == total; }));
    }
}

TEST_F(DeviceLineTest, RaisesReceivedAgainWhenMoreBytesFollowUnreadOnes) {
    readsAtOnce = false;
    terminal.write({1});
    ASSERT_TRUE(runUntil([this] { return events.size() == 1; }));
    terminal.write({2});
    ASSERT_TRUE(runUntil([this] { return events.size() == 2; }));
    EXPECT_EQ(comm.read().bytes, (Bytes{1, 2}));
}

TEST_F(DeviceLineTest, SendsAnyNumberOfBytesToASlowReader) {
    const Bytes bytes(300000, 0x33);
    comm.write(bytes); // returns, though no far end has read a byte yet
    EXPECT_EQ(receivedAtFarEnd(bytes.size()).size(), bytes.size());
    EXPECT_TRUE(events.empty());
}

TEST_F(DeviceLineTest, DiscardsUnreadBytes) {
    readsAtOnce = false;
    terminal.write({1, 2, 3});
    ASSERT_TRUE(runUntil([this] { return comm.inBufferCount() == 3; }));
    comm.discard();
    EXPECT_EQ(comm.inBufferCount(), 0U);
    terminal.write({4});
    ASSERT_TRUE(runUntil([this] { return comm.inBufferCount() > 0; }));
    EXPECT_EQ(comm.read().bytes, Bytes{4});
}

TEST_F(DeviceLineTest, DiscardsBytesThatStillWaitInTheDriver) {
    terminal.write({1, 2, 3});
    ASSERT_TRUE(reachTheNearEnd(3));
    comm.discard();
    comm.discard();
    runFor(20ms);
    EXPECT_TRUE(events.empty());
    terminal.write({4});
    ASSERT_TRUE(runUntil([this] { return !received.empty(); }));
    EXPECT_EQ(received, Bytes{4});
}

TEST_F(DeviceLineTest, DiscardKeepsWhatArrivesAfterIt) {
    terminal.write({1, 2, 3});
    ASSERT_TRUE(reachTheNearEnd(3));
    comm.discard();
    terminal.write({4, 5});
    ASSERT_TRUE(runUntil([this] { return received.size() >= 2; }));
    EXPECT_EQ(received, (Bytes{4, 5}));
    EXPECT_EQ(events.size(), 1U);
}

TEST_F(DeviceLineTest, ForgetsADiscardWhenItIsClosed) {
    terminal.write({1, 2, 3});
    ASSERT_TRUE(reachTheNearEnd(3));
    comm.close();
    DeviceLine line(terminal.path(), loop.post());
    line.open({});
    terminal.write({4, 5, 6});
    ASSERT_TRUE(reachTheNearEnd(3, &line));
    line.discard();
    line.close();
    line.open({});
    terminal.write({7});
    ASSERT_TRUE(runUntil([&line] { return line.inBufferCount() > 0; }));
    EXPECT_EQ(line.read().bytes, Bytes{7});
}

TEST_F(DeviceLineTest, DropsWhatCameWhileItWasClosed) {
    comm.close();
    terminal.write({1, 2, 3});
    ASSERT_TRUE(reachTheNearEnd(3));
    comm.open();
    terminal.write({4});
    ASSERT_TRUE(runUntil([this] { return !received.empty(); }));
    EXPECT_EQ(received, Bytes{4});
}

TEST_F(DeviceLineTest, DiscardWhileBytesArriveIsNoHangUp) {
    for (int round = 0; round < 50; ++round) {
        loop.post()([this] { comm.discard(); });
        terminal.write({1, 2, 3});
        runFor(1ms);
    }
    EXPECT_EQ(hangUps(), 0);
    EXPECT_TRUE(comm.isOpen());
}

TEST_F(DeviceLineTest, ClosesInsideItsReceiveEvent) {
    comm.setEventHandler([this](CommEvent event, const std::string& reason) {
        events.push_back(event);
        reasons.push_back(reason);
        comm.close();
    });
    terminal.write({1});
    ASSERT_TRUE(runUntil([this] { return !comm.isOpen(); }));
    runFor(20ms);
    EXPECT_EQ(events, std::vector<CommEvent>{CommEvent::Received});
}

TEST_F(DeviceLineTest, DeliversBytesThatArrivedBeforeAHangUp) {
    readsAtOnce = false;
    terminal.write({1, 2, 3});
    ASSERT_TRUE(runUntil([this] { return comm.inBufferCount() == 3; }));
    terminal.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return hangUps() > 0; }));
    EXPECT_EQ(events, (std::vector<CommEvent>{CommEvent::Received, CommEvent::HungUp}));
}

TEST_F(DeviceLineTest, BytesThatCameBeforeAHangUpCanBeReadAWhileLater) {
    readsAtOnce = false;
    terminal.write({1, 2, 3});
    ASSERT_TRUE(runUntil([this] { return comm.inBufferCount() == 3; }));
    terminal.closeFarEnd();
    runFor(100ms);
    EXPECT_EQ(events, std::vector<CommEvent>{CommEvent::Received});
    EXPECT_EQ(comm.read().bytes, (Bytes{1, 2, 3}));
    comm.write({1}); // said of the one moment or of the other, that the line is gone is said once
    ASSERT_TRUE(runUntil([this] { return hangUps() > 0; }));
    runFor(500ms);
    EXPECT_EQ(events, (std::vector<CommEvent>{CommEvent::Received, CommEvent::HungUp}));
}

TEST_F(DeviceLineTest, DiscardingWhatCameBeforeAHangUpBringsItToo) {
    readsAtOnce = false;
    terminal.write({1, 2, 3});
    ASSERT_TRUE(runUntil([this] { return comm.inBufferCount() == 3; }));
    terminal.closeFarEnd();
    runFor(20ms);
    comm.discard();
    ASSERT_TRUE(runUntil([this] { return hangUps() > 0; }, 200ms));
}

TEST_F(DeviceLineTest, TellsOnAHangUpWhichPortWentAway) {
    terminal.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return hangUps() > 0; }));
    EXPECT_EQ(reasons.back(), terminal.path() + " went away: it was unplugged, or its far end was closed.");
}

TEST_F(DeviceLineTest, RaisesNotOpenForReadAndWriteAfterAHangUp) {
    terminal.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return hangUps() > 0; }));
    EXPECT_EQ(numberRaisedBy([this] { comm.write({1}); }), 8012);
    EXPECT_EQ(numberRaisedBy([this] { comm.read(); }), 8012);
    EXPECT_EQ(comm.inBufferCount(), 0U);
}

TEST_F(DeviceLineTest, CanBeClosedBeforeItHasNoticedAHangUp) {
    terminal.closeFarEnd();
    comm.discard();
    comm.write({1});
    comm.close();
    runFor(20ms);
    EXPECT_TRUE(events.empty());
}

TEST(DeviceLine, RefusesToSendWhileClosed) {
    DeviceLine line("/dev/null", {});
    EXPECT_EQ(numberRaisedBy([&line] { line.write({1}); }), 8020);
}

enum class Situation { Idle, WithUnreadBytes, WhileSending };

class DeviceLineHangUp : public DeviceLineTest, public testing::WithParamInterface<Situation> {
protected:
    void bringAbout(Situation situation) {
        readsAtOnce = false;
        if (situation == Situation::WithUnreadBytes) {
            terminal.write({1, 2, 3});
            ASSERT_TRUE(runUntil([this] { return comm.inBufferCount() == 3; }));
        }
        if (situation == Situation::WhileSending) {
            comm.write(Bytes(300000, 0x33));
            ASSERT_FALSE(receivedAtFarEnd(1).empty());
        }
    }
};

TEST_P(DeviceLineHangUp, IsRaisedOnceWithThePortClosedAndCostsNoProcessorTime) {
    bringAbout(GetParam());
    terminal.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return hangUps() > 0; }));
    EXPECT_TRUE(test::restsFor([this](std::chrono::seconds time) { runFor(time); }));
    EXPECT_EQ(hangUps(), 1);
    EXPECT_EQ(events.back(), CommEvent::HungUp);
    EXPECT_FALSE(comm.isOpen());
}

TEST_P(DeviceLineHangUp, LeavesAPortThatOpensAgain) {
    bringAbout(GetParam());
    terminal.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return hangUps() == 1; }));
    const PseudoTerminal next;
    comm.setCommPort(next.path());
    comm.open();
    readsAtOnce = true;
    next.write({7});
    ASSERT_TRUE(runUntil([this] { return !received.empty(); }));
    EXPECT_EQ(received, Bytes{7});
}

std::string nameOf(const testing::TestParamInfo<Situation>& situation) {
    switch (situation.param) {
    case Situation::Idle:
        return "Idle";
    case Situation::WithUnreadBytes:
        return "WithUnreadBytes";
    case Situation::WhileSending:
        return "WhileSending";
    }
    return {};
}

INSTANTIATE_TEST_SUITE_P(InEverySituation, DeviceLineHangUp,
                         testing::Values(Situation::Idle, Situation::WithUnreadBytes,
                                         Situation::WhileSending),
                         nameOf);

} // namespace
} // namespace varda
