#include "core/runs/scenario_run.h"

#include "support/fake_port.h"
#include "support/manual_clock.h"
#include "support/raises.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

class ScenarioRunTest : public testing::Test {
protected:
    ScenarioRunTest() { port.open(); }

    ManualClock clock;
    FakePort port;
    SerialLink link{port, clock};
    ScenarioList lines{{"FF FF 21 03 00 00 08 BD 85", "FF FF 23 03 00 02 04 C5 20"}};
    int ticks = 0;
    ManualTimer tmrScenario{clock, [this] { ++ticks; }};
    ScenarioRun run{link, tmrScenario, lines};
};

TEST_F(ScenarioRunTest, GoesRoundAndRound) {
    run.start("100");
    EXPECT_TRUE(run.isRunning());
    EXPECT_EQ(run.next(), lines.line(0));
    EXPECT_EQ(lines.current(), 1);
    EXPECT_EQ(run.next(), lines.line(1));
    EXPECT_EQ(lines.current(), 0);
    EXPECT_EQ(run.next(), lines.line(0));
}

TEST_F(ScenarioRunTest, BeginsWithTheFirstLineWhateverWasChosen) {
    lines.choose(1);
    run.start("100");
    EXPECT_EQ(lines.current(), 0);
}

TEST_F(ScenarioRunTest, NothingIsDueWhereNoLineIsChosen) {
    lines.choose(-1);
    EXPECT_EQ(run.next(), std::nullopt);
    EXPECT_EQ(lines.current(), 0);
}

TEST_F(ScenarioRunTest, SendsALineAndAwaitsTheAnswerOfItsCommand) {
    run.start("100");
    run.send(lines.line(1));
    ASSERT_EQ(port.written().size(), 1U);
    EXPECT_EQ(port.written()[0].size(), 9U);
    EXPECT_EQ(link.state().RxExpected, 14);
}

TEST_F(ScenarioRunTest, LineThatIsNoFrameIsThrown) {
    EXPECT_EQ(numberRaisedBy([&] { run.send("no frame at all"); }), 13);
    EXPECT_EQ(numberRaisedBy([&] { run.send("FF FF"); }), 9);
    EXPECT_TRUE(port.written().empty());
}

TEST_F(ScenarioRunTest, TicksAtItsPeriodUntilItIsStopped) {
    run.start("250");
    clock.advance(1000);
    EXPECT_EQ(ticks, 4);
    EXPECT_TRUE(run.isTicking());
    run.stop(Mode::WordRead);
    EXPECT_FALSE(run.isTicking());
    EXPECT_EQ(link.state().CommMode, Mode::WordRead);
    clock.advance(1000);
    EXPECT_EQ(ticks, 4);
}

TEST_F(ScenarioRunTest, StopLeavesWhatTheLinkHasGoneOnTo) {
    run.start("250");
    link.enterMode(Mode::Simulation);
    run.stop(Mode::BitRead);
    EXPECT_EQ(link.state().CommMode, Mode::Simulation);
    EXPECT_FALSE(run.isTicking());
}

/// What the link makes of a run whose lines nobody answers.
class SilentScenarioTest : public ScenarioRunTest, public LinkObserver {
protected:
    SilentScenarioTest() {
        link.observe(*this);
        run.start("100");
    }
    void told(const Exchange& exchange) override { silences += exchange.outcome == Outcome::Silent ? 1 : 0; }

    void sendNext() { run.send(run.next().value()); }
    void tick(int times) {
        for (int time = 0; time < times; ++time) {
            link.tmrComm_Timer();
        }
    }

    int silences = 0;
};

TEST_F(SilentScenarioTest, LinesShareTheirTicksWhereNothingIsKnownOfTheirAnswers) {
    sendNext();
    tick(8);
    sendNext();
    tick(4);
    EXPECT_EQ(silences, 0);
    tick(1);
    EXPECT_EQ(silences, 1);
    EXPECT_FALSE(run.isSilenceExpected());
}

TEST_F(SilentScenarioTest, AfterAnExpectedSilenceTheNextLineHasItsTicksForItself) {
    run.expectSilence([](int row) { return row == 0; });
    EXPECT_FALSE(run.isSilenceExpected()) << "nothing was sent";
    sendNext();
    EXPECT_TRUE(run.isSilenceExpected());
    tick(8);
    sendNext();
    EXPECT_FALSE(run.isSilenceExpected());
    tick(12);
    EXPECT_EQ(silences, 0);
    tick(1);
    EXPECT_EQ(silences, 1);
    sendNext();
    EXPECT_TRUE(run.isSilenceExpected());
    tick(13);
    EXPECT_EQ(silences, 2) << "told all the same";
    sendNext();
    tick(8);
    sendNext();
    EXPECT_TRUE(run.isSilenceExpected());
    tick(12);
    EXPECT_EQ(silences, 2) << "it has its ticks for itself, too";
    tick(1);
    EXPECT_EQ(silences, 3);
    run.start("100");
    EXPECT_FALSE(run.isSilenceExpected());
}

TEST(ScenarioPeriodTest, IsANumberOf0To65535) {
    EXPECT_EQ(scenarioPeriod("0"), 0);
    EXPECT_EQ(scenarioPeriod("65535"), 65535);
    EXPECT_EQ(numberRaisedBy([] { scenarioPeriod("65536"); }), 380);
    EXPECT_EQ(numberRaisedBy([] { scenarioPeriod("-1"); }), 380);
    EXPECT_EQ(numberRaisedBy([] { scenarioPeriod("soon"); }), 13);
    EXPECT_EQ(numberRaisedBy([] { scenarioPeriod("99999999999"); }), 6);
    EXPECT_EQ(adviceOf([] { scenarioPeriod("65536"); }),
              "Send Period \"65536\" is out of range: 0 to 65535 milliseconds.");
}

} // namespace
} // namespace varda::test
