#include "core/insight/traced_line.h"

#include "core/insight/traced_link.h"

namespace varda::test {
namespace {

class TracedLineTest : public TracedLinkTest {};

TEST_F(TracedLineTest, ClosedItTellsNothing) {
    recorder.close();
    trace.clear();
    send("05 00 23 03 00 02 02 EC 02 ", 10);
    receive("00 05 ");
    clock.advance(100);
    port.close();
    EXPECT_EQ(lines(), 0U);
}

TEST_F(TracedLineTest, OpenedLateItTellsWhatStillWaits) {
    recorder.close();
    trace.clear();
    wire.receiveAt(clock.now() + 7ms, {1, 2, 3});
    recorder.open();
    wire.raiseReceived();
    ASSERT_EQ(lines(), 1U);
    EXPECT_EQ(line(0).bytes, (Bytes{1, 2, 3}));
    EXPECT_EQ(line(0).first, clock.now() + 7ms);
}

TEST_F(TracedLineTest, OpenedAnewItTellsOnceMoreWhatWaitedBefore) {
    send("05 00 23 03 00 02 02 0B 22 ", 10);
    receive("00 05 A3 04 ");
    recorder.close();
    recorder.open();
    receive("34 12 CD AB 47 42 ", 5);
    clock.advance(100);
    ASSERT_EQ(lines(), 4U); // opened, the request, what nobody saw the end of, the answer
    EXPECT_EQ(line(3).bytes, bytesOfText(wordAnswer));
    EXPECT_EQ(line(3).size, 10U);
    EXPECT_EQ(line(3).verdict, Verdict::Taken);
}

TEST_F(TracedLineTest, TimesAreThoseOfArrival) {
    wire.receiveAt(clock.now() + 1ms, {1, 2});
    wire.receiveAt(clock.now() + 4ms, {3});
    wire.receiveAt(clock.now() + 40ms, {4});
    wire.raiseReceived();
    ASSERT_EQ(lines(), 3U);
    EXPECT_EQ(line(1).bytes, (Bytes{1, 2, 3}));
    EXPECT_EQ(line(1).last - line(1).first, 3ms);
    EXPECT_EQ(line(2).bytes, (Bytes{4}));
}

TEST_F(TracedLineTest, LineThatKnowsNoTimesHasThoseOfItsEvents) {
    clock.advance(5);
    wire.receive({1, 2});
    EXPECT_EQ(line(1).first, clock.now());
}

TEST_F(TracedLineTest, BytesThatAreOnlyCountedAreCounted) {
    link.enterMode(Mode::Simulation);
    wire.receive(Bytes(1000, 7));
    wire.receive(Bytes(1000, 7));
    clock.advance(300);
    ASSERT_EQ(lines(), 2U);
    EXPECT_EQ(line(1).size, 2000U);
    EXPECT_EQ(line(1).bytes.size(), 1025U);
}

TEST_F(TracedLineTest, TooLongABurstKeepsItsBeginning) {
    wire.receive(Bytes(Trace::mostLineBytes, 1));
    wire.receive(Bytes(10'000'000, 2));
    ASSERT_EQ(lines(), 2U);
    EXPECT_EQ(line(1).bytes, Bytes(Trace::mostLineBytes, 1));
    EXPECT_EQ(line(1).size, Trace::mostLineBytes + 10'000'000);
}

TEST_F(TracedLineTest, WhatCameBeforeAWriteIsToldBeforeItAndOnce) {
    receive("01 02 ");
    clock.advance(5);
    wire.receiveAt(clock.now(), {3});
    clock.advance(5);
    port.write({9});
    ASSERT_EQ(lines(), 3U);
    EXPECT_EQ(line(1).bytes, (Bytes{1, 2, 3}));
    EXPECT_EQ(line(2).bytes, Bytes{9});
    wire.raiseReceived();
    EXPECT_EQ(lines(), 3U);
    EXPECT_EQ(port.read().bytes, (Bytes{1, 2, 3}));
}

TEST_F(TracedLineTest, WhatCameBeforeARefusedWriteIsToldBeforeIt) {
    wire.receiveAt(clock.now(), {1});
    wire.failWrite({8020, "gone"});
    EXPECT_THROW(port.write({9}), RuntimeError);
    ASSERT_EQ(lines(), 3U);
    EXPECT_EQ(line(1).bytes, Bytes{1});
    EXPECT_EQ(verdict(2), "Not sent. gone");
}

TEST_F(TracedLineTest, UnsentBytesAreNotSent) {
    class Full : public Line {
    public:
        void open(const LineSettings&) override {}
        void close() noexcept override {}
        std::size_t inBufferCount() const noexcept override { return 0; }
        Burst read() override { return {}; }
        void discard() noexcept override {}
        void write(const Bytes&) override { ++unsent_; }
        std::size_t unsentWrites() const noexcept override { return unsent_; }

    private:
        std::size_t unsent_ = 0;
    };
    TracedLine full(std::make_unique<Full>(), recorder, clock);
    full.write({1, 2});
    EXPECT_EQ(verdict(1), "Not sent. Too many bytes before them still wait to be sent.");
}

/// Two links side by side, one on a traced line, and the same at both: each call and each byte has to be the
/// same, but for the reading of what is thrown away.
TEST_F(TracedLineTest, LinkFindsTheSameWithAndWithoutATrace) {
    ManualClock otherClock;
    FakePort other;
    SerialLink otherLink{other, otherClock};
    other.setEventHandler([&](CommEvent event, const std::string&) { otherLink.commPLC_OnComm(event); });
    other.open();
    Draws draws(99);
    for (int step = 0; step < 20'000; ++step) {
        const int drawn = draws.below(8);
        const Bytes bytes(static_cast<std::size_t>(1 + draws.below(draws.oneIn(50) ? 3000 : 12)), 0x23);
        const Mode mode = draws.oneIn(2)   ? Mode::WordRead
                          : draws.oneIn(2) ? Mode::Simulation
                                           : Mode::Monitoring;
        const auto both = [&](auto&& act) {
            act(static_cast<FakeWire&>(wire), link, clock);
            act(static_cast<FakeWire&>(other), otherLink, otherClock);
        };
        const int pause = draws.below(90);
        both([&](FakeWire& at, SerialLink& on, ManualClock& time) {
            switch (drawn) {
            case 0:
                on.enterMode(mode);
                break;
            case 1:
                on.startRequest();
                on.SendRequest(bytes, 9);
                break;
            case 2:
                at.receiveSilently(bytes);
                break;
            case 3:
                on.tmrComm_Timer();
                break;
            case 4:
            case 5:
                at.receive(bytes);
                break;
            default:
                time.advance(pause);
            }
        });
        ASSERT_EQ(link.state(), otherLink.state()) << "step " << step;
        ASSERT_EQ(wire.written(), other.written()) << "step " << step;
        ASSERT_EQ(port.inBufferCount(), other.inBufferCount()) << "step " << step;
    }
    EXPECT_GT(lines(), 1000U);
}

} // namespace
} // namespace varda::test
