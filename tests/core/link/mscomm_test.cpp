#include "core/link/mscomm.h"

#include "core/link/comm_error.h"
#include "support/raises.h"

#include <gtest/gtest.h>

namespace varda {
namespace {

using test::numberRaisedBy;

/// What the test sees of the lines that the control made.
struct LineLog {
    std::vector<std::string> names;
    LineSettings settings;
    class FakeLine* newest = nullptr;
    int alive = 0;
    int opened = 0;
    int closed = 0;
    bool refuseToOpen = false;
    std::string notice;
    bool destroyedInsideItsEvent = false;
};

class FakeLine : public Line {
public:
    explicit FakeLine(LineLog& log) : log_(log) {
        log_.newest = this;
        ++log_.alive;
    }
    FakeLine(const FakeLine&) = delete;
    FakeLine& operator=(const FakeLine&) = delete;
    ~FakeLine() override {
        --log_.alive;
        log_.destroyedInsideItsEvent = log_.destroyedInsideItsEvent || isRaising_;
    }

    void open(const LineSettings& settings) override {
        log_.settings = settings;
        if (log_.refuseToOpen) {
            throw portInUse("fake");
        }
        ++log_.opened;
    }
    void close() noexcept override { ++log_.closed; }
    std::size_t inBufferCount() const noexcept override { return waiting.size(); }
    Burst read() override { return {.bytes = std::exchange(waiting, {})}; }
    void discard() noexcept override { waiting.clear(); }
    void write(const Bytes& bytes) override { written = bytes; }
    std::string notice() const override { return log_.notice; }

    void happen(CommEvent event, const std::string& reason = {}) {
        isRaising_ = true;
        raise(event, reason);
        isRaising_ = false;
    }

    Bytes waiting;
    Bytes written;

private:
    LineLog& log_;
    bool isRaising_ = false;
};

class MSCommTest : public testing::Test {
protected:
    MSCommTest() {
        comm.setCommPort("COM3");
        comm.setEventHandler([this](CommEvent event, const std::string& reason) {
            events.push_back(event);
            reasons.push_back(reason);
            if (onEvent) {
                onEvent();
            }
        });
    }

    LineLog log;
    std::vector<CommEvent> events;
    std::vector<std::string> reasons;
    std::function<void()> onEvent;
    MSComm comm{[this](const std::string& name) {
        log.names.push_back(name);
        return std::make_unique<FakeLine>(log);
    }};
};

struct GoodSettings {
    std::string text;
    int baudRate;
    char parity;
    int dataBits;
    int stopBits;
};

class MSCommGoodSettings : public MSCommTest, public testing::WithParamInterface<GoodSettings> {};

TEST_P(MSCommGoodSettings, ReachTheLine) {
    const auto& expected = GetParam();
    comm.setSettings(expected.text);
    comm.open();
    EXPECT_EQ(log.settings.baudRate, expected.baudRate);
    EXPECT_EQ(log.settings.parity, expected.parity);
    EXPECT_EQ(log.settings.dataBits, expected.dataBits);
    EXPECT_EQ(log.settings.stopBits, expected.stopBits);
}

INSTANTIATE_TEST_SUITE_P(Texts, MSCommGoodSettings,
                         testing::Values(GoodSettings{"9600,n,8,1", 9600, 'n', 8, 1},
                                         GoodSettings{"38400,e,7,2", 38400, 'e', 7, 2},
                                         GoodSettings{"2400,o,6,1", 2400, 'o', 6, 1},
                                         GoodSettings{"1,N,5,1", 1, 'n', 5, 1},
                                         GoodSettings{"2147483647,E,8,2", 2147483647, 'e', 8, 2},
                                         GoodSettings{" 4800 , O , 8 , 1 ", 4800, 'o', 8, 1}));

class MSCommBadSettings : public MSCommTest, public testing::WithParamInterface<std::string> {};

TEST_P(MSCommBadSettings, RaiseError380AndLeaveTheSettings) {
    comm.setSettings("4800,o,7,2");
    EXPECT_EQ(numberRaisedBy([this] { comm.setSettings(GetParam()); }), 380);
    comm.open();
    EXPECT_EQ(log.settings.baudRate, 4800);
    EXPECT_EQ(log.settings.parity, 'o');
    EXPECT_EQ(log.settings.dataBits, 7);
    EXPECT_EQ(log.settings.stopBits, 2);
}

INSTANTIATE_TEST_SUITE_P(WithoutParityLetter, MSCommBadSettings, testing::Values("9600,8,1", "9600,,8,1"));
INSTANTIATE_TEST_SUITE_P(WithMissingOrSurplusFields, MSCommBadSettings,
                         testing::Values("", ",", ",,,", "9600", "9600,n,8", "9600,n,8,", "9600,n,8,1,",
                                         "9600,n,8,1,1", "9600;n;8;1"));
INSTANTIATE_TEST_SUITE_P(WithABaudRateThatIsNone, MSCommBadSettings,
                         testing::Values("0,n,8,1", "-9600,n,8,1", "+9600,n,8,1", "fast,n,8,1", "96 00,n,8,1",
                                         "9600.5,n,8,1", "2147483648,n,8,1", "99999999999999999999,n,8,1"));
INSTANTIATE_TEST_SUITE_P(WithAParityThatIsNone, MSCommBadSettings,
                         testing::Values("9600,m,8,1", "9600,s,8,1", "9600,x,8,1", "9600,none,8,1"));
INSTANTIATE_TEST_SUITE_P(WithBitsOutOfRange, MSCommBadSettings,
                         testing::Values("9600,n,4,1", "9600,n,9,1", "9600,n,8,0", "9600,n,8,3",
                                         "9600,n,8,1.5", "9600,n,x,1", "9600,n,8,x"));

TEST_F(MSCommTest, StartsWith9600BaudNoParityEightDataBitsOneStopBit) {
    comm.open();
    EXPECT_EQ(log.settings.baudRate, 9600);
    EXPECT_EQ(log.settings.parity, 'n');
    EXPECT_EQ(log.settings.dataBits, 8);
    EXPECT_EQ(log.settings.stopBits, 1);
}

TEST_F(MSCommTest, OpensTheLineThatTheNameStandsFor) {
    EXPECT_FALSE(comm.isOpen());
    comm.open();
    EXPECT_TRUE(comm.isOpen());
    EXPECT_EQ(log.names, std::vector<std::string>{"COM3"});
}

TEST_F(MSCommTest, TakesANewNameAtTheNextOpen) {
    comm.open();
    comm.setCommPort("COM4");
    EXPECT_EQ(log.names.size(), 1U);
    comm.close();
    comm.open();
    EXPECT_EQ(log.names, (std::vector<std::string>{"COM3", "COM4"}));
}

TEST_F(MSCommTest, IsInUseWhileItIsOpenItself) {
    comm.open();
    EXPECT_EQ(numberRaisedBy([this] { comm.open(); }), 8005);
    EXPECT_TRUE(comm.isOpen());
    EXPECT_EQ(log.opened, 1);
}

TEST_F(MSCommTest, KeepsWhatOpeningCameUponUntilTheNextOpening) {
    log.notice = "A lock was taken over.";
    comm.open();
    EXPECT_EQ(comm.notice(), "A lock was taken over.");
    comm.close();
    EXPECT_EQ(comm.notice(), "A lock was taken over.");
    log.refuseToOpen = true;
    numberRaisedBy([this] { comm.open(); });
    EXPECT_EQ(comm.notice(), "");
}

TEST_F(MSCommTest, StaysClosedWhereTheLineRefusesToOpen) {
    log.refuseToOpen = true;
    EXPECT_EQ(numberRaisedBy([this] { comm.open(); }), 8005);
    EXPECT_FALSE(comm.isOpen());
    EXPECT_EQ(log.alive, 0);
    log.refuseToOpen = false;
    comm.open();
    EXPECT_TRUE(comm.isOpen());
}

TEST_F(MSCommTest, RaisesNotOpenForReadAndWriteWhileClosed) {
    EXPECT_EQ(numberRaisedBy([this] { comm.read(); }), 8012);
    EXPECT_EQ(numberRaisedBy([this] { comm.write({1}); }), 8012);
    comm.open();
    comm.close();
    EXPECT_EQ(numberRaisedBy([this] { comm.read(); }), 8012);
    EXPECT_EQ(numberRaisedBy([this] { comm.write({1}); }), 8012);
}

TEST_F(MSCommTest, HasNoBytesWhileClosed) {
    comm.open();
    log.newest->waiting = {1, 2, 3};
    EXPECT_EQ(comm.inBufferCount(), 3U);
    comm.close();
    EXPECT_EQ(comm.inBufferCount(), 0U);
    comm.discard();
    EXPECT_EQ(comm.inBufferCount(), 0U);
}

TEST_F(MSCommTest, PassesBytesBothWays) {
    comm.open();
    log.newest->waiting = {0x00, 0xFF};
    EXPECT_EQ(comm.read().bytes, (Bytes{0x00, 0xFF}));
    EXPECT_EQ(comm.inBufferCount(), 0U);
    comm.write({0x1A, 0x00});
    EXPECT_EQ(log.newest->written, (Bytes{0x1A, 0x00}));
}

TEST_F(MSCommTest, DiscardEmptiesTheInputBuffer) {
    comm.open();
    log.newest->waiting = {1, 2, 3};
    comm.discard();
    EXPECT_EQ(comm.inBufferCount(), 0U);
}

TEST_F(MSCommTest, RaisesReceivedOnlyWhileUnreadBytesWait) {
    comm.open();
    log.newest->happen(CommEvent::Received);
    EXPECT_TRUE(events.empty());
    log.newest->waiting = {1};
    log.newest->happen(CommEvent::Received);
    EXPECT_EQ(events, std::vector<CommEvent>{CommEvent::Received});
    EXPECT_EQ(reasons.front(), "");
}

TEST_F(MSCommTest, IsClosedBeforeAHangUpIsRaised) {
    comm.open();
    bool wasOpen = true;
    onEvent = [&] { wasOpen = comm.isOpen(); };
    log.newest->happen(CommEvent::HungUp, "unplugged");
    EXPECT_FALSE(wasOpen);
    EXPECT_EQ(events, std::vector<CommEvent>{CommEvent::HungUp});
    EXPECT_EQ(reasons.front(), "unplugged");
}

TEST_F(MSCommTest, RaisesAHangUpOnce) {
    comm.open();
    log.newest->happen(CommEvent::HungUp);
    log.newest->happen(CommEvent::HungUp);
    log.newest->waiting = {1};
    log.newest->happen(CommEvent::Received);
    EXPECT_EQ(events, std::vector<CommEvent>{CommEvent::HungUp});
}

TEST_F(MSCommTest, RaisesNoHangUpAfterItWasClosedByTheUser) {
    comm.open();
    log.newest->waiting = {1};
    onEvent = [&] {
        comm.close();
        log.newest->happen(CommEvent::HungUp);
    };
    log.newest->happen(CommEvent::Received);
    EXPECT_EQ(events, std::vector<CommEvent>{CommEvent::Received});
}

TEST_F(MSCommTest, NeverDestroysALineInsideItsOwnEvent) {
    comm.open();
    FakeLine& line = *log.newest;
    line.waiting = {1};
    onEvent = [this] { comm.close(); };
    line.happen(CommEvent::Received);
    EXPECT_FALSE(comm.isOpen());
    EXPECT_FALSE(log.destroyedInsideItsEvent);
    comm.close();
    EXPECT_EQ(log.alive, 0);
}

TEST_F(MSCommTest, CanBeOpenedAgainInsideItsHangUp) {
    comm.open();
    onEvent = [this] { comm.open(); };
    log.newest->happen(CommEvent::HungUp);
    EXPECT_TRUE(comm.isOpen());
    EXPECT_FALSE(log.destroyedInsideItsEvent);
    EXPECT_EQ(log.opened, 2);
    comm.close();
    EXPECT_EQ(log.alive, 0);
    EXPECT_EQ(log.closed, 1) << "the line that hung up had closed itself";
}

TEST_F(MSCommTest, IgnoresTheLineBeforeTheOpenOne) {
    comm.open();
    FakeLine& first = *log.newest;
    onEvent = [this] {
        onEvent = {};
        comm.open();
    };
    first.happen(CommEvent::HungUp);
    log.newest->waiting = {1};
    first.happen(CommEvent::Received);
    first.happen(CommEvent::HungUp);
    EXPECT_TRUE(comm.isOpen());
    EXPECT_EQ(events.size(), 1U);
}

TEST_F(MSCommTest, RunsWithoutAnEventHandler) {
    comm.setEventHandler({});
    comm.open();
    log.newest->waiting = {1};
    log.newest->happen(CommEvent::Received);
    log.newest->happen(CommEvent::HungUp);
    EXPECT_FALSE(comm.isOpen());
}

TEST(MSCommEnd, ClosesTheOpenLine) {
    LineLog log;
    {
        MSComm comm([&log](const std::string&) { return std::make_unique<FakeLine>(log); });
        comm.open();
    }
    EXPECT_EQ(log.closed, 1);
    EXPECT_EQ(log.alive, 0);
}

} // namespace
} // namespace varda
