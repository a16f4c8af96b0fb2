#include "device/device_line.h"

#include "core/link/mscomm.h"
#include "support/pseudo_terminal.h"
#include "support/raises.h"
#include "support/task_loop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace varda {

using namespace device;
namespace {

using namespace std::chrono_literals;
using test::numberRaisedBy;
using test::PseudoTerminal;
using test::TaskLoop;

/// The serial control on a port of this system.
class DeviceLineOnWindows : public testing::Test {
protected:
    DeviceLineOnWindows() {
        comm.setCommPort(line.path());
        comm.setEventHandler([this](CommEvent event, const std::string& reason) {
            events.push_back(event);
            reasons.push_back(reason);
            if (event == CommEvent::Received) {
                const Bytes bytes = comm.read().bytes;
                received.insert(received.end(), bytes.begin(), bytes.end());
            }
        });
        comm.open();
    }

    Bytes receivedAtFarEnd(std::size_t count) {
        Bytes bytes;
        loop.runUntil([&] {
            const Bytes more = line.readAvailable();
            bytes.insert(bytes.end(), more.begin(), more.end());
            return bytes.size() >= count;
        });
        return bytes;
    }

    int hangUps() const { return static_cast<int>(std::ranges::count(events, CommEvent::HungUp)); }

    TaskLoop loop;
    PseudoTerminal line;
    MSComm comm{[this](const std::string& name) { return std::make_unique<DeviceLine>(name, loop.post()); }};
    std::vector<CommEvent> events;
    std::vector<std::string> reasons;
    Bytes received;
};

Bytes everyByte() {
    Bytes bytes(256);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

TEST_F(DeviceLineOnWindows, CarriesEveryByteValueUnchangedBothWays) {
    line.write(everyByte());
    EXPECT_TRUE(loop.runUntil([this] { return received.size() >= 256; }));
    EXPECT_EQ(received, everyByte());
    comm.write(everyByte());
    EXPECT_EQ(receivedAtFarEnd(256), everyByte());
}

TEST_F(DeviceLineOnWindows, CarriesALongAnswerWhole) {
    Bytes longAnswer(20'000);
    std::iota(longAnswer.begin(), longAnswer.end(), std::uint8_t{0});
    line.write(longAnswer);
    EXPECT_TRUE(loop.runUntil([&] { return received.size() >= longAnswer.size(); }));
    EXPECT_EQ(received, longAnswer);
}

TEST_F(DeviceLineOnWindows, TellsOfAHangUpOnceAndWhichPortWentAway) {
    line.closeFarEnd();
    ASSERT_TRUE(loop.runUntil([this] { return hangUps() > 0; }));
    loop.runFor(100ms);
    EXPECT_EQ(hangUps(), 1);
    EXPECT_FALSE(comm.isOpen());
    EXPECT_EQ(reasons.back(), line.path() + " went away: it was unplugged, or its far end was closed.");
}

TEST_F(DeviceLineOnWindows, OpensAgainAfterItWasClosed) {
    for (int time = 0; time < 5; ++time) {
        comm.close();
        comm.open();
        received.clear();
        line.write({0x12, 0x34});
        EXPECT_TRUE(loop.runUntil([this] { return received.size() >= 2; })) << time;
    }
}

TEST_F(DeviceLineOnWindows, DiscardKeepsWhatArrivesAfterIt) {
    comm.discard();
    line.write({0x55});
    EXPECT_TRUE(loop.runUntil([this] { return !received.empty(); }));
    EXPECT_EQ(received, Bytes{0x55});
}

TEST_F(DeviceLineOnWindows, TakesTheSettingsThatTheListsOffer) {
    for (const char* const settings :
         {"300,n,8,1", "9600,n,8,2", "19200,n,8,1", "57600,n,8,1", "115200,n,8,1"}) {
        comm.close();
        comm.setSettings(settings);
        EXPECT_NO_THROW(comm.open()) << settings;
    }
}

} // namespace
} // namespace varda
