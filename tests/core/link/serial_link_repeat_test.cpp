#include "core/link/serial_link.h"

#include "core/link/master_pages.h"
#include "core/link/serial_link_fixture.h"

#include <vector>

namespace varda::test {
namespace {

class RepeatTest : public SerialLinkTest, public testing::WithParamInterface<MasterPage> {
protected:
    /// Everything that continuous sending needs, in the mode of the option.
    void fillForRepeating(bool bitOption) {
        state.CommMode = bitOption ? GetParam().bitMode : GetParam().wordMode;
        GetParam().choose(form, bitOption);
        form.setText(GetParam().bit, "");
        GetParam().fill(form, GetParam().neededToRepeat(bitOption));
        form.setTicked(GetParam().continuousBox, true);
    }
    int sends() const { return form.presses(GetParam().sendButton); }
};

INSTANTIATE_TEST_SUITE_P(Pages, RepeatTest, testing::ValuesIn(masterPages()), PageName());

TEST_P(RepeatTest, ContinuousSendingPressesTheSendButtonOfThePageAtEveryTick) {
    for (const bool bitOption : {true, false}) {
        fillForRepeating(bitOption);
        const int before = sends();
        tick(3);
        EXPECT_EQ(sends(), before + 3);
        EXPECT_EQ(form.presses(), sends());
    }
}

TEST_P(RepeatTest, NothingIsSentWhileTheBoxIsNotTicked) {
    fillForRepeating(true);
    form.setTicked(GetParam().continuousBox, false);
    tick(3);
    EXPECT_EQ(form.presses(), 0);
}

TEST_P(RepeatTest, BoxesOfOtherPagesSendNothing) {
    fillForRepeating(true);
    for (const auto& page : masterPages()) {
        page.choose(form, true);
        page.fill(form, page.neededToRepeat(true));
        form.setTicked(page.continuousBox, page.name != GetParam().name);
    }
    tick(3);
    EXPECT_EQ(form.presses(), 0);
}

// Reads go out at every tick, writes wait for the answer.
TEST_P(RepeatTest, ContinuousReadsDoNotWaitForTheAnswerAndContinuousWritesDo) {
    fillForRepeating(true);
    state.WaitingAnswer = true;
    tick(5);
    EXPECT_EQ(sends(), GetParam().repeatsOnlyWhenAnswered ? 0 : 5);
}

TEST_P(RepeatTest, ContinuousSendingGoesOnInTheTickOfTheTimeOutAfterItWasTold) {
    fillForRepeating(true);
    awaitAnswer(GetParam().bitMode, 14);
    int sendsAfterTimeOut = 0;
    form.onPress(GetParam().sendButton, [&] {
        if (form.text(GetParam().silenceStatus) == "No Answer From PLC") {
            ++sendsAfterTimeOut;
            EXPECT_FALSE(state.WaitingAnswer);
            EXPECT_EQ(state.RxExpected, 0);
        }
    });
    tick(13);
    EXPECT_EQ(sendsAfterTimeOut, 1);
}

TEST_P(RepeatTest, ContinuousSendingFollowsTheClearingOfAReceivedAnswer) {
    fillForRepeating(true);
    awaitAnswer(GetParam().bitMode, 14);
    port.receive(burst(14));
    clock.advance(100);
    form.onPress(GetParam().sendButton, [&] {
        EXPECT_FALSE(state.AnswerReceived);
        EXPECT_EQ(state.RxExpected, 0);
        EXPECT_EQ(form.text("txtTotalData"), "0");
    });
    tick();
    EXPECT_EQ(sends(), 1);
}

TEST_P(RepeatTest, NothingIsRepeatedWhileARequiredFieldIsEmpty) {
    for (const bool bitOption : {true, false}) {
        for (const auto& missing : GetParam().neededToRepeat(bitOption)) {
            fillForRepeating(bitOption);
            form.setText(missing, "");
            const int before = sends();
            tick();
            EXPECT_EQ(sends(), before) << missing;
        }
    }
    EXPECT_TRUE(form.messages().empty());
}

TEST_P(RepeatTest, BitFieldIsRequiredWithTheBitOptionOnly) {
    fillForRepeating(false);
    ASSERT_EQ(form.text(GetParam().bit), "");
    tick();
    EXPECT_EQ(sends(), 1);
}

TEST_P(RepeatTest, DisabledSendButtonDoesNotStopTheRepetition) {
    fillForRepeating(true);
    form.setEnabled(GetParam().sendButton, false);
    tick();
    EXPECT_EQ(sends(), 1);
}

TEST_P(RepeatTest, FailingRepeatIsThrownAndSwitchedOff) {
    fillForRepeating(true);
    form.onPress(GetParam().sendButton, [] { throw overflow(); });

    try {
        tick();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), 6);
    }

    EXPECT_FALSE(form.isTicked(GetParam().continuousBox));
    EXPECT_NO_THROW(tick(3));
    EXPECT_EQ(sends(), 1);
}

// On running time

class RunningTimerTest : public SerialLinkTest {
protected:
    RunningTimerTest() {
        tmrComm.setInterval(100);
        tmrComm.start();
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
    const auto page = masterPages()[0];
    page.choose(form, true);
    page.fill(form, page.neededToRepeat(true));
    form.setTicked("chkRTimer", true);
    form.onPress("cmdRDSend", [&] {
        ASSERT_TRUE(link.startRequest(*findRoute(0x21)));
        link.SendRequest(burst(9), 14);
    });
    clock.advance(2000);
    EXPECT_EQ(port.written().size(), 20U);
    EXPECT_EQ(form.text("txtRStatus"), "") << "every send counts the silence from the start again";
}

TEST_F(RunningTimerTest, ContinuousWriteIsSentAgainOnlyAfterTheTimeOut) {
    state.CommMode = 0x22;
    const auto page = masterPages()[1];
    page.choose(form, true);
    page.fill(form, page.neededToRepeat(true));
    form.setTicked("chkWTimer", true);
    form.onPress("cmdWDSend", [&] {
        ASSERT_TRUE(link.startRequest(*findRoute(0x22)));
        link.SendRequest(burst(9), 7);
    });
    clock.advance(1399);
    EXPECT_EQ(port.written().size(), 1U);
    clock.advance(1);
    EXPECT_EQ(port.written().size(), 2U);
}

} // namespace
} // namespace varda::test
