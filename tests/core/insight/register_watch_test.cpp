#include "core/insight/register_watch.h"

#include "core/insight/drawn_frames.h"
#include "core/insight/traced_link.h"

namespace varda::test {
namespace {

class RegisterWatchTest : public TracedLinkTest {
protected:
    RegisterWatchTest() {
        link.observe(watch);
        watch.open();
    }
    void exchange(const char* request, const char* answer) {
        const Bytes awaited = bytesOfText(answer);
        send(request, static_cast<int>(awaited.size()));
        receive(answer, 10);
        clock.advance(100);
    }
    const WatchedRegister& word(int number) const {
        return watch.at(watch.rowOf(5, {Access::Word, 512 + number}).value());
    }

    RegisterWatch watch;
};

TEST_F(RegisterWatchTest, AnswersAndWritesShowTheirRegisters) {
    exchange("05 00 23 03 00 02 02 0B 22 ", "00 05 A3 04 34 12 CD AB 47 42 ");
    EXPECT_EQ(watch.size(), 2U);
    EXPECT_EQ(word(0).value, 0x1234);
    EXPECT_EQ(word(1).value, 0xABCD);
    EXPECT_EQ(word(0).changes, 0U);
    const auto change = FrameDraws(1).exchange(3); // writes words
    send(hexGroups(change.request).c_str(), 7);
    for (std::size_t index = 0; index < change.asked.points.size(); ++index) {
        EXPECT_EQ(watch.at(watch.rowOf(change.request.at(0), change.asked.points[index]).value()).value,
                  change.asked.values[index]);
    }
}

TEST_F(RegisterWatchTest, ChangesAreCountedAndKept) {
    exchange("05 00 23 03 00 02 02 0B 22 ", "00 05 A3 04 34 12 CD AB 47 42 ");
    const Clock::Time first = word(0).seen;
    exchange("05 00 23 03 00 02 02 0B 22 ", "00 05 A3 04 34 12 CD AB 47 42 ");
    EXPECT_EQ(word(0).changes, 0U);
    EXPECT_EQ(word(0).seen - first, 110ms);
    const Bytes other = checked(bytesOfText("00 05 A3 04 35 12 CD AB "));
    exchange("05 00 23 03 00 02 02 0B 22 ", hexGroups(other).c_str());
    EXPECT_EQ(word(0).changes, 1U);
    EXPECT_EQ(word(1).changes, 0U);
    ASSERT_EQ(word(0).history.size(), 2U);
    EXPECT_EQ(word(0).history[0].value, 0x1234);
    EXPECT_EQ(word(0).history[1].value, 0x1235);
}

TEST_F(RegisterWatchTest, StationsHaveRegistersOfTheirOwn) {
    exchange("05 00 23 03 00 02 02 0B 22 ", "00 05 A3 04 34 12 CD AB 47 42 ");
    const Bytes write = checked(bytesOfText("07 00 24 04 00 02 35 12 "));
    send(hexGroups(write).c_str(), 7);
    EXPECT_EQ(watch.size(), 3U);
    EXPECT_EQ(word(0).value, 0x1234);
    EXPECT_EQ(word(0).changes, 0U);
    const WatchedRegister& other = watch.at(watch.rowOf(7, {Access::Word, 512}).value());
    EXPECT_EQ(other.station, 7);
    EXPECT_EQ(other.value, 0x1235);
    EXPECT_EQ(word(0).station, 5) << "who answers has the register";
    EXPECT_FALSE(watch.rowOf(0, {Access::Word, 512}));
}

TEST_F(RegisterWatchTest, FramesWithAFlawShowNothing) {
    exchange("05 00 23 03 00 02 02 0B 22 ", "00 05 A3 04 34 12 CD AB 47 43 ");
    EXPECT_EQ(watch.size(), 0U);
}

TEST_F(RegisterWatchTest, MonitoredLinesAreReadByTheRequestsOnThem) {
    link.enterMode(Mode::Monitoring);
    receive("05 00 23 03 00 02 02 0B 22 ");
    clock.advance(100);
    receive("00 05 A3 04 34 12 CD AB 47 42 ");
    clock.advance(100);
    EXPECT_EQ(word(1).value, 0xABCD);
}

TEST_F(RegisterWatchTest, SimulatedRegistersAreSeen) {
    table.addPair("050023030002020B22", "0005A3043412CDAB4742");
    link.enterMode(Mode::Simulation);
    hear("05 00 23 03 00 02 02 0B 22 ");
    EXPECT_EQ(word(0).value, 0x1234);
}

TEST_F(RegisterWatchTest, WritesThatNoPairAnswersAreSeen) {
    link.enterMode(Mode::Simulation);
    hear(hexGroups(checked(bytesOfText("05 00 24 04 00 02 34 12 "))).c_str());
    EXPECT_EQ(word(0).value, 0x1234);
}

TEST_F(RegisterWatchTest, WritesAndAnswersOfPairsAreSeen) {
    const Bytes write = checked(bytesOfText("05 00 24 04 00 02 34 12 "));
    table.addPair(hexRun(write), hexRun(checked(bytesOfText("00 05 A4 01 00 "))));
    link.enterMode(Mode::Simulation);
    hear(hexGroups(write).c_str());
    EXPECT_EQ(word(0).value, 0x1234);
}

TEST_F(RegisterWatchTest, AnswersThatWereDroppedAreSeenToo) {
    send("05 00 23 03 00 02 02 0B 22 ", 12); // the link waits for more
    receive("00 05 A3 04 34 12 CD AB 47 42 ");
    clock.advance(100);
    EXPECT_EQ(word(1).value, 0xABCD);
}

TEST_F(RegisterWatchTest, TwoFramesOfABurstAreSeen) {
    link.enterMode(Mode::Monitoring);
    receive("05 00 23 03 00 02 02 0B 22 00 05 A3 04 34 12 CD AB 47 42 ");
    clock.advance(100);
    EXPECT_EQ(word(1).value, 0xABCD);
}

TEST_F(RegisterWatchTest, HeardRequestIsForgottenWithItsConnection) {
    link.enterMode(Mode::Monitoring);
    receive("05 00 23 03 00 02 02 0B 22 ");
    clock.advance(100);
    port.close();
    link.connectionClosed();
    port.open();
    link.connectionOpened();
    receive("00 05 A3 04 34 12 CD AB 47 42 ");
    clock.advance(100);
    EXPECT_EQ(watch.size(), 0U);
}

TEST_F(RegisterWatchTest, HeardRequestIsForgottenWhereNobodyLooksAnyMore) {
    link.enterMode(Mode::Monitoring);
    hear("05 00 23 03 00 02 02 0B 22 ");
    watch.close();
    watch.open();
    hear("00 05 A3 04 34 12 CD AB 47 42 ");
    EXPECT_EQ(watch.size(), 0U);
}

TEST_F(RegisterWatchTest, Forgets) {
    exchange("05 00 23 03 00 02 02 0B 22 ", "00 05 A3 04 34 12 CD AB 47 42 ");
    watch.clear();
    EXPECT_EQ(watch.size(), 0U);
    EXPECT_FALSE(watch.rowOf(5, {Access::Word, 512}));
}

TEST_F(RegisterWatchTest, ThereIsRoomForSoManyAndNoMore) {
    Exchange told;
    told.outcome = Outcome::Answered;
    for (int first = 0; first < 60'000; first += 250) {
        Bytes request{
            1,  0, command::bitRead, 3, low(static_cast<unsigned>(first)), high(static_cast<unsigned>(first)),
            250};
        Bytes answer{0, 1, command::bitRead | answerMark, 250};
        answer.resize(254);
        told.request = checked(request);
        told.answer = checked(answer);
        watch.told(told);
    }
    EXPECT_EQ(watch.size(), RegisterWatch::mostRegisters);
    EXPECT_EQ(watch.leftOut(), 60'000 - RegisterWatch::mostRegisters);
}

} // namespace
} // namespace varda::test
