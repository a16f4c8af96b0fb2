#include "core/link/serial_link.h"

#include "core/link/serial_link_fixture.h"
#include "support/master_pages.h"

#include <vector>

namespace varda::test {
namespace {

/// A page that wants its request repeated whenever the link lets it.
class RepeatTest : public SerialLinkTest, public testing::WithParamInterface<MasterPage> {
protected:
    RepeatTest() {
        state.CommMode = Mode{GetParam().bitMode};
        link.setRoles({.repeat = [this](Mode mode) {
            repeated.push_back(mode);
            onRepeat();
        }});
    }

    std::vector<Mode> repeated;
    std::function<void()> onRepeat = [] {};
};

INSTANTIATE_TEST_SUITE_P(Pages, RepeatTest, testing::ValuesIn(masterPages()), PageName());

TEST_P(RepeatTest, EveryTickMayRepeatInTheModeOfTheMoment) {
    tick();
    state.CommMode = Mode{GetParam().wordMode};
    tick(2);
    const Mode word{GetParam().wordMode};
    EXPECT_EQ(repeated, (std::vector<Mode>{Mode{GetParam().bitMode}, word, word}));
}

// Reads go out at every tick, writes wait for the answer.
TEST_P(RepeatTest, ContinuousReadsDoNotWaitForTheAnswerAndContinuousWritesDo) {
    state.WaitingAnswer = true;
    tick(5);
    EXPECT_EQ(repeated.size(), GetParam().repeatsOnlyWhenAnswered ? 0U : 5U);
}

TEST_P(RepeatTest, RepeatingGoesOnInTheTickOfTheTimeOutAfterItWasTold) {
    awaitAnswer(GetParam().bitMode, 14);
    int repeatsAfterTimeOut = 0;
    onRepeat = [&] {
        if (form.text(GetParam().silenceStatus) == "No Answer From PLC") {
            ++repeatsAfterTimeOut;
            EXPECT_FALSE(state.WaitingAnswer);
            EXPECT_EQ(state.RxExpected, 0);
        }
    };
    tick(13);
    EXPECT_EQ(repeatsAfterTimeOut, 1);
}

TEST_P(RepeatTest, RepeatingFollowsTheClearingOfAReceivedAnswer) {
    awaitAnswer(GetParam().bitMode, 14);
    port.receive(burst(14));
    clock.advance(100);
    onRepeat = [&] {
        EXPECT_FALSE(state.AnswerReceived);
        EXPECT_EQ(state.RxExpected, 0);
        EXPECT_EQ(form.text("txtTotalData"), "0");
    };
    tick();
    EXPECT_EQ(repeated.size(), 1U);
}

TEST_P(RepeatTest, FailingRepeatIsThrown) {
    onRepeat = [] { throw overflow(); };
    EXPECT_THROW(tick(), RuntimeError);
}

// On running time

class RunningTimerTest : public SerialLinkTest {
protected:
    RunningTimerTest() {
        tmrComm.setInterval(100);
        tmrComm.start();
    }

    void repeat(int bytes, int expected) {
        link.setRoles({.repeat = [this, bytes, expected](Mode) {
            ASSERT_TRUE(link.startRequest());
            link.SendRequest(burst(static_cast<std::size_t>(bytes)), expected);
        }});
    }

    ManualTimer tmrComm{clock, [this] { link.tmrComm_Timer(); }};
};

TEST_F(RunningTimerTest, SilenceAt100MillisecondsIsToldAfter1300) {
    awaitAnswer(0x21, 14);
    clock.advance(1299);
    EXPECT_EQ(form.text("txtRStatus"), "");
    clock.advance(1);
    EXPECT_EQ(form.text("txtRStatus"), "No Answer From PLC");
}

TEST_F(RunningTimerTest, SilenceAt500MillisecondsIsToldAfter6500) {
    tmrComm.setInterval(500);
    awaitAnswer(0x21, 14);
    clock.advance(6499);
    EXPECT_EQ(form.text("txtRStatus"), "");
    clock.advance(1);
    EXPECT_EQ(form.text("txtRStatus"), "No Answer From PLC");
}

TEST_F(RunningTimerTest, TickDuringTheWaitForABurstDoesNothing) {
    awaitAnswer(0x21, 14);
    clock.advance(250);
    port.receive(burst(7));
    form.forgetTold();

    clock.advance(50);

    EXPECT_TRUE(form.told("txtWatchDog").empty());
    EXPECT_EQ(state.WaitTicks, 0);
    clock.advance(50);
    EXPECT_FALSE(state.InReceive);
}

TEST_F(RunningTimerTest, ContinuousReadIsSentEveryTickHoweverSlowTheAnswer) {
    repeat(9, 14);
    clock.advance(2000);
    EXPECT_EQ(port.written().size(), 20U);
    EXPECT_EQ(form.text("txtRStatus"), "") << "every send counts the silence from the start again";
}

TEST_F(RunningTimerTest, ContinuousWriteIsSentAgainOnlyAfterTheTimeOut) {
    state.CommMode = Mode::BitWrite;
    repeat(9, 7);
    clock.advance(1399);
    EXPECT_EQ(port.written().size(), 1U);
    clock.advance(1);
    EXPECT_EQ(port.written().size(), 2U);
}

} // namespace
} // namespace varda::test
