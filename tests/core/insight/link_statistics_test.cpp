#include "core/insight/link_statistics.h"

#include "core/insight/traced_link.h"

namespace varda::test {
namespace {

class LinkStatisticsTest : public TracedLinkTest {
protected:
    LinkStatisticsTest() {
        link.observe(statistics);
        statistics.open();
    }
    void exchange(int after, const char* answer = wordAnswer) {
        send(wordRead, 10);
        receive(answer, after);
        clock.advance(100);
    }
    std::vector<LinkStatistics::Row> rows() const { return statistics.rows(); }

    LinkStatistics statistics;
};

TEST_F(LinkStatisticsTest, CountsWhatBecomesOfEveryKind) {
    exchange(10);
    exchange(20);
    exchange(30, "00 05 A3 04 34 12 CD AB 47 43 ");
    exchange(40, "00 05 A3 ");
    send(wordRead, 10);
    tick(13);
    send(wordRead, 10);
    send("01 00 21 03 23 0C 10 42 85 ", 22);
    ASSERT_EQ(rows().size(), 2U);
    EXPECT_EQ(rows()[0].kind, "bit read");
    const LinkStatistics::Row words = rows()[1];
    EXPECT_EQ(words.kind, "word read");
    EXPECT_EQ(words.sent, 6U);
    EXPECT_EQ(words.answered, 3U);
    EXPECT_EQ(words.wrongCheck, 1U);
    EXPECT_EQ(words.wrongLength, 1U);
    EXPECT_EQ(words.silent, 1U);
    EXPECT_EQ(words.overtaken, 1U);
    EXPECT_EQ(words.response->least, 10);
    EXPECT_EQ(words.response->median, 20);
    EXPECT_EQ(words.response->most, 30);
    EXPECT_NEAR(words.onWire->median, 19 * 10 * 1000 / 9600.0, 1e-9);
    EXPECT_EQ(words.period->least, 0);
    EXPECT_EQ(words.period->median, 120);
}

TEST_F(LinkStatisticsTest, ClosedAndInOtherModesItCountsNothing) {
    statistics.close();
    exchange(10);
    statistics.open();
    link.enterMode(Mode::Monitoring);
    receive(wordRead);
    clock.advance(100);
    EXPECT_TRUE(rows().empty());
    link.enterMode(Mode::WordRead);
    exchange(10);
    EXPECT_FALSE(rows()[0].period); // the one before was not seen
    statistics.reset();
    EXPECT_TRUE(rows().empty());
    EXPECT_TRUE(statistics.samples(clock.now()).empty());
}

TEST_F(LinkStatisticsTest, RequestHasOneOutcomeHoweverManyBurstsFollowIt) {
    exchange(10);
    receive(wordAnswer, 20);
    clock.advance(100);
    receive("00 05 A3 ", 20);
    clock.advance(100);
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(rows()[0].sent, 1U);
    EXPECT_EQ(rows()[0].answered, 1U);
    EXPECT_EQ(rows()[0].wrongLength, 0U);
}

TEST_F(LinkStatisticsTest, OutcomeOfARequestFromBeforeIsNotCounted) {
    send(wordRead, 10);
    statistics.reset();
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_TRUE(rows().empty());
}

TEST_F(LinkStatisticsTest, PlotHasTheLastTenMinutes) {
    exchange(10);
    exchange(15, "00 05 ");
    clock.advance(10min - 1s);
    exchange(20);
    ASSERT_EQ(statistics.samples(clock.now()).size(), 3U);
    EXPECT_EQ(statistics.samples(clock.now())[1].outcome, Outcome::WrongLength);
    clock.advance(2s);
    EXPECT_EQ(statistics.samples(clock.now()).size(), 1U); // also where nothing new is told
    exchange(20);
    EXPECT_EQ(statistics.samples(clock.now()).size(), 2U);
}

TEST_F(LinkStatisticsTest, OneThingBecomesOfARequest) {
    const auto settled = [this] {
        const LinkStatistics::Row row = rows().at(0);
        return row.answered + row.wrongLength + row.silent + row.overtaken + row.notSent;
    };
    exchange(10, "F7 ");
    receive(wordAnswer, 20); // noise came first
    clock.advance(100);
    EXPECT_EQ(rows()[0].answered, 1U);
    EXPECT_EQ(rows()[0].wrongLength, 0U);
    EXPECT_EQ(rows()[0].response->most, 130);
    EXPECT_EQ(statistics.samples(clock.now()).size(), 1U);
    receive(wordAnswer, 20); // the same once more
    clock.advance(100);
    receive("F7 ");
    clock.advance(100);
    EXPECT_EQ(settled(), 1U);
    exchange(10, "00 05 A3 04 ");
    receive("34 12 ");
    clock.advance(100);
    EXPECT_EQ(rows()[0].wrongLength, 1U);
    EXPECT_EQ(settled(), 2U);
    send(wordRead, 10);
    tick(13);
    receive(wordAnswer); // too late
    clock.advance(100);
    EXPECT_EQ(rows()[0].silent, 1U);
    EXPECT_EQ(settled(), rows()[0].sent);
    wire.failWrite(RuntimeError(8020, "Write error"));
    EXPECT_TRUE(link.startRequest());
    EXPECT_THROW(link.SendRequest(bytesOfText(wordRead), 10), RuntimeError);
    EXPECT_EQ(rows()[0].notSent, 1U);
    EXPECT_EQ(settled(), rows()[0].sent + 1);
}

TEST_F(LinkStatisticsTest, RequestThatIsLeftForAnotherModeOrALineThatWentAwayIsOvertaken) {
    for (const Mode mode : {Mode::MonitorIdle, Mode::Monitoring, Mode::Simulation}) {
        statistics.reset();
        send(wordRead, 10);
        link.enterMode(mode);
        hear(wordAnswer);
        link.enterMode(Mode::WordRead);
        exchange(10);
        ASSERT_EQ(rows().size(), 1U);
        EXPECT_EQ(rows()[0].sent, 2U);
        EXPECT_EQ(rows()[0].overtaken, 1U) << static_cast<int>(mode);
        EXPECT_EQ(rows()[0].answered, 1U);
    }
    statistics.reset();
    send(wordRead, 10);
    wire.hangUp("gone");
    link.connectionClosed();
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(rows()[0].overtaken, 1U);
}

TEST_F(LinkStatisticsTest, RequestsOfTheFarEndAreNoneOfTheStatistics) {
    table.addPair("050023030002020B22", "0005A3043412CDAB4742");
    link.enterMode(Mode::Simulation);
    hear(wordRead);
    wire.hangUp("gone");
    EXPECT_TRUE(rows().empty());
}

TEST_F(LinkStatisticsTest, ClosedInTheMiddleItCountsNoEndOfWhatItSawBegin) {
    send(wordRead, 10);
    statistics.close();
    statistics.open();
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_EQ(rows()[0].sent, 1U);
    EXPECT_EQ(rows()[0].answered, 0U);
}

TEST_F(LinkStatisticsTest, AnswerAfterAResetTakesNothingBackAndDoesNotCount) {
    exchange(10, "F7 ");
    statistics.reset();
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_TRUE(rows().empty());
    exchange(10);
    EXPECT_EQ(rows()[0].answered, 1U);
    EXPECT_EQ(rows()[0].wrongLength, 0U);
}

TEST_F(LinkStatisticsTest, TimeWithoutAConnectionIsPartOfNoPeriod) {
    exchange(10);
    exchange(10);
    port.close();
    link.connectionClosed();
    clock.advance(10min);
    port.open();
    link.connectionOpened();
    exchange(10);
    exchange(10);
    EXPECT_EQ(rows()[0].period->most, 110);
}

TEST_F(LinkStatisticsTest, WantedPeriodIsThatOfTheKindWhenItWasSentLast) {
    int field = 500;
    statistics.setConditions({.wantedPeriod = [&field] { return field; }});
    exchange(10);
    field = 250; // of another page
    send("01 00 21 03 23 0C 10 42 85 ", 22);
    EXPECT_EQ(rows()[0].wantedPeriod, 250); // bits
    EXPECT_EQ(rows()[1].wantedPeriod, 500); // words
    field = 100;
    EXPECT_EQ(rows()[1].wantedPeriod, 500);
    const std::string csv = statistics.csv();
    EXPECT_NE(csv.find(",250\r\nword read"), std::string::npos) << csv;
    EXPECT_TRUE(csv.ends_with(",500\r\n")) << csv;
}

TEST_F(LinkStatisticsTest, TimeOnTheWireIsThatOfTheSettingsOfThen) {
    LineSettings settings{9600, 'n', 8, 1};
    statistics.setConditions({.settings = [&settings] { return settings; }});
    exchange(10);
    settings.baudRate = 19200;
    exchange(10);
    settings.baudRate = 300;
    EXPECT_NEAR(rows()[0].onWire->most, 19 * 10 * 1000 / 9600.0, 1e-9);
    EXPECT_NEAR(rows()[0].onWire->least, 19 * 10 * 1000 / 19200.0, 1e-9);
}

TEST_F(LinkStatisticsTest, CsvHasARowForEveryKind) {
    statistics.setConditions({.wantedPeriod = [] { return 500; }});
    exchange(10);
    const std::string csv = statistics.csv();
    EXPECT_TRUE(csv.starts_with(
        "Kind,Sent,Answered,Wrong check,Wrong length,Silent,Overtaken,Not sent,Response min ms,"));
    EXPECT_NE(
        csv.find("\r\nword "
                 "read,1,1,0,0,0,0,0,10.000,10.000,10.000,10.000,19.792,19.792,19.792,19.792,,,,,500\r\n"),
        std::string::npos)
        << csv;
}

TEST(Spread, RanksAreThoseOfTheNearestValue) {
    std::vector<double> values;
    for (int value = 100; value > 0; --value) {
        values.push_back(value);
    }
    const Spread spread = spreadOf(values).value();
    EXPECT_EQ(spread.least, 1);
    EXPECT_EQ(spread.median, 50);
    EXPECT_EQ(spread.percentile99, 99);
    EXPECT_EQ(spread.most, 100);
    EXPECT_EQ(spreadOf({7})->percentile99, 7);
    EXPECT_FALSE(spreadOf({}));
}

TEST(Spread, TimeOnTheWireCountsEveryBit) {
    EXPECT_DOUBLE_EQ(millisecondsOnWire(96, {9600, 'n', 8, 1}), 100);
    EXPECT_DOUBLE_EQ(millisecondsOnWire(80, {9600, 'e', 8, 2}), 100);
}

} // namespace
} // namespace varda::test
