#include "core/link/serial_link.h"

#include "core/link/serial_link_fixture.h"
#include "support/link_ear.h"

#include <vector>

namespace varda::test {
namespace {

using Texts = std::vector<std::string>;

// Empty input buffer

class EmptyBufferTest : public RolesTest, public testing::WithParamInterface<int> {
protected:
    /// A receive event that finds nothing, and the end of every wait that it may have begun.
    void receiveNothing() {
        link.commPLC_OnComm(CommEvent::Received);
        clock.advance(1000);
    }
};

INSTANTIATE_TEST_SUITE_P(Modes, EmptyBufferTest,
                         testing::Values(0x21, 0x24, 0x25, 0x26, 0x80, 0x81, 0xC0, 0xFF));

TEST_P(EmptyBufferTest, LeavesInReceiveSetAndSkipsTheEndOfTheReception) {
    awaitAnswer(GetParam(), 14);

    receiveNothing();

    EXPECT_TRUE(state.InReceive);
    EXPECT_FALSE(state.AnswerReceived);
    EXPECT_TRUE(state.WaitingAnswer);
    EXPECT_TRUE(form.told("txtCurrentData").empty());
    EXPECT_TRUE(form.told("txtTotalData").empty());
    EXPECT_TRUE(listed.empty());
    EXPECT_TRUE(requests.empty());
    EXPECT_EQ(clock.pending(), 0U);
}

TEST_P(EmptyBufferTest, EveryTickThenDoesNothing) {
    awaitAnswer(GetParam(), 14);
    int repeats = 0;
    link.setRoles({.repeat = [&](Mode) { ++repeats; }});
    receiveNothing();
    form.forgetTold();

    tick(30);

    EXPECT_EQ(state.WaitTicks, 0);
    EXPECT_EQ(repeats, 0);
    for (const char* const field : {"txtTotalData", "txtCurrentData", "txtWatchDog", "txtRStatus",
                                    "txtWStatus", "txtMRStatus", "txtMWStatus"}) {
        EXPECT_TRUE(form.told(field).empty()) << field;
    }
    EXPECT_TRUE(state.InReceive);
}

TEST_P(EmptyBufferTest, LaterReceptionEndsIt) {
    awaitAnswer(GetParam(), 14);
    receiveNothing();

    port.receive(burst(3));
    clock.advance(1000);

    EXPECT_FALSE(state.InReceive);
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_FALSE(state.WaitingAnswer);
    EXPECT_EQ(form.text("txtCurrentData"), countShownFor3Bytes(GetParam()));
}

TEST_F(RolesTest, SimulatorReturnsFromAnEmptyBufferWithoutWaiting) {
    state.CommMode = Mode{0xFF};
    link.commPLC_OnComm(CommEvent::Received);
    EXPECT_EQ(clock.pending(), 0U);
    EXPECT_TRUE(state.InReceive);
}

TEST_F(RolesTest, EventAfterThePreviousOneConsumedTheBytesLeavesInReceiveSet) {
    awaitAnswer(0x21, 14);
    port.receive(burst(14));
    clock.advance(100);
    ASSERT_FALSE(state.InReceive);

    link.commPLC_OnComm(CommEvent::Received);
    clock.advance(100);

    EXPECT_TRUE(state.InReceive);
}

// Events during a wait

TEST_F(RolesTest, EventsDuringAWaitAreMergedIntoIt) {
    state.CommMode = Mode{0x81};
    port.receive(burst(2));
    clock.advance(30);
    port.receive(burst(1, 0x10));
    clock.advance(30);
    port.receive(burst(1, 0x20));
    clock.advance(40);

    EXPECT_EQ(listed, (std::vector<Bytes>{{0xF8, 0xF9, 0x10, 0x20}}));
    EXPECT_FALSE(state.InReceive);
    EXPECT_EQ(clock.pending(), 0U);

    clock.advance(1000);
    EXPECT_EQ(listed.size(), 1U);
    EXPECT_FALSE(state.InReceive) << "a merged event was raised again although nothing was left to read";
    EXPECT_EQ(clock.pending(), 0U);
}

TEST_F(RolesTest, ReceptionAfterAMergedEventHasItsOwn100Milliseconds) {
    state.CommMode = Mode{0x81};
    port.receive({0x11});
    clock.advance(90);
    port.receive({0x22});
    clock.advance(50);
    port.receive({0x33});
    clock.advance(99);
    EXPECT_EQ(listed.size(), 1U);
    clock.advance(1);
    EXPECT_EQ(listed, (std::vector<Bytes>{{0x11, 0x22}, {0x33}}));
}

TEST_F(RolesTest, MergedEventIsRaisedAgainWhenUnreadBytesRemain) {
    state.CommMode = Mode{0x81};
    LinkEar farEnd(Outcome::Heard, [this](const Exchange&) {
        if (listed.size() == 1) {
            port.receiveSilently({0x33, 0x44});
        }
    });
    link.observe(farEnd);
    port.receive({0x11});
    clock.advance(50);
    port.receive({0x22});
    clock.advance(50);
    EXPECT_EQ(listed.size(), 1U);

    clock.advance(1000);

    EXPECT_EQ(listed, (std::vector<Bytes>{{0x11, 0x22}, {0x33, 0x44}}));
    EXPECT_FALSE(state.InReceive);
}

TEST_F(RolesTest, MergedEventOfTheSimulatorIsNotRaisedAgainWhenNothingIsLeft) {
    state.CommMode = Mode{0xFF};
    port.receive(burst(2));
    clock.advance(100);
    port.receive(burst(2));
    clock.advance(2000);
    EXPECT_EQ(requests.size(), 1U);
    EXPECT_FALSE(state.InReceive);
}

// Mode changes during a wait

TEST_F(RolesTest, FieldsToldFollowTheModeAtCompletion) {
    awaitAnswer(0x21, 14);
    port.receive(burst(14));
    clock.advance(50);
    state.CommMode = Mode{0x25};
    clock.advance(50);

    EXPECT_EQ(form.controlsShowing(groups(burst(14))), Texts{"txtReceiveMRData"});
    EXPECT_EQ(form.controlsShowing("Data Receive OK !!"), Texts{"txtWStatus"});
}

TEST_F(RolesTest, AnswerThatCompletesInAModeWithoutFieldsIsToldNowhere) {
    for (const int mode : {0x80, 0x81, 0xFF}) {
        awaitAnswer(0x21, 14);
        port.receive(burst(14));
        clock.advance(50);
        state.CommMode = Mode{static_cast<std::int16_t>(mode)};
        clock.advance(1000);

        EXPECT_TRUE(form.controlsShowing(groups(burst(14))).empty()) << mode;
        EXPECT_TRUE(form.controlsShowing("Data Receive OK !!").empty()) << mode;
        EXPECT_TRUE(listed.empty()) << mode;
        EXPECT_TRUE(requests.empty()) << mode;
        EXPECT_FALSE(state.InReceive) << mode;
    }
}

TEST_F(RolesTest, BurstThatBeganWhileMonitoringIsListedAfterTheModeChanged) {
    awaitAnswer(0x81, 3);
    port.receive(burst(3));
    clock.advance(50);
    state.CommMode = Mode{0x21};
    clock.advance(50);

    EXPECT_EQ(listed, std::vector<Bytes>{burst(3)});
    EXPECT_TRUE(form.controlsShowing("Data Receive OK !!").empty());
    EXPECT_FALSE(state.InReceive);
}

TEST_F(RolesTest, RequestThatBeganInSimulationIsAnsweredAfterTheModeChanged) {
    state.CommMode = Mode{0xFF};
    port.receive(burst(9));
    clock.advance(50);
    state.CommMode = Mode{0x21};
    clock.advance(100);

    EXPECT_EQ(requests, std::vector<Bytes>{burst(9)});
    EXPECT_FALSE(state.InReceive);
}

// Closing and hanging up

class ClosedDuringWaitTest : public RolesTest, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Modes, ClosedDuringWaitTest, testing::Values(0x21, 0x26, 0x81, 0xC0, 0xFF));

TEST_P(ClosedDuringWaitTest, PortClosedByTheUserLeavesInReceiveSet) {
    requestIsKnown = false;
    awaitAnswer(GetParam(), 14);
    port.receive(burst(14));
    clock.advance(50);
    port.close();
    EXPECT_NO_THROW(clock.advance(1000));

    EXPECT_TRUE(state.InReceive);
    EXPECT_TRUE(listed.empty());
    EXPECT_TRUE(form.controlsShowing("Data Receive OK !!").empty());
    EXPECT_TRUE(form.messages().empty());
    EXPECT_EQ(clock.pending(), 0U);
}

TEST_P(ClosedDuringWaitTest, ReceptionAfterOpeningAgainWorks) {
    requestIsKnown = false;
    awaitAnswer(GetParam(), 14);
    port.receive(burst(14));
    clock.advance(50);
    port.close();
    clock.advance(1000);
    requestIsKnown = true;

    port.open();
    port.receive(burst(3));
    clock.advance(1000);

    EXPECT_FALSE(state.InReceive);
    EXPECT_EQ(form.text("txtCurrentData"), countShownFor3Bytes(GetParam()));
}

class HangUpTest : public RolesTest, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Modes, HangUpTest, testing::Values(0x21, 0x26, 0x80, 0x81, 0xC0, 0xFF));

TEST_P(HangUpTest, EventThatIsNoDataClearsInReceiveAndNothingElse) {
    awaitAnswer(GetParam(), 14);
    state.InReceive = true;
    state.WaitTicks = 5;

    port.hangUp("gone");

    EXPECT_FALSE(state.InReceive);
    EXPECT_EQ(state.WaitTicks, 5);
    EXPECT_TRUE(state.WaitingAnswer);
    EXPECT_FALSE(state.AnswerReceived);
    EXPECT_EQ(state.RxExpected, 14);
    EXPECT_TRUE(form.told("txtWatchDog").empty());
    EXPECT_EQ(clock.pending(), 0U);
}

TEST_P(HangUpTest, HangUpDuringAWaitClearsInReceive) {
    requestIsKnown = false;
    awaitAnswer(GetParam(), 14);
    port.receive(burst(14));
    clock.advance(50);

    port.hangUp("gone");
    EXPECT_FALSE(state.InReceive);
    clock.advance(1000);

    EXPECT_FALSE(state.InReceive);
    EXPECT_TRUE(listed.empty());
    EXPECT_TRUE(form.controlsShowing("Data Receive OK !!").empty());
    EXPECT_EQ(clock.pending(), 0U);
}

TEST_P(HangUpTest, ReceptionAfterAHangUpDuringAWaitWorks) {
    requestIsKnown = false;
    awaitAnswer(GetParam(), 14);
    port.receive(burst(14));
    clock.advance(50);
    port.hangUp("gone");
    clock.advance(1000);
    requestIsKnown = true;

    port.open();
    port.receive(burst(3));
    clock.advance(1000);

    EXPECT_FALSE(state.InReceive);
    EXPECT_EQ(form.text("txtCurrentData"), countShownFor3Bytes(GetParam()));
}

TEST_F(SerialLinkTest, FailureThatIsADefectIsNotSkipped) {
    LinkEar monitor(Outcome::Heard, [](const Exchange&) { throw std::logic_error("a defect"); });
    link.observe(monitor);
    link.enterMode(Mode::Monitoring);
    port.receive(burst(3));
    EXPECT_THROW(clock.advance(100), std::logic_error);
    EXPECT_FALSE(state.InReceive); // and the link goes on
    EXPECT_TRUE(state.AnswerReceived);
}

TEST_F(SerialLinkTest, BytesThatCameDuringADefectsWaitAreReceivedAllTheSame) {
    int bursts = 0;
    LinkEar monitor(Outcome::Heard, [&](const Exchange&) {
        if (++bursts == 1) {
            port.receive(burst(2));
            throw std::logic_error("a defect");
        }
    });
    link.observe(monitor);
    link.enterMode(Mode::Monitoring);
    port.receive(burst(3));
    EXPECT_THROW(clock.advance(100), std::logic_error);
    clock.advance(100);
    EXPECT_EQ(bursts, 2);
}

TEST_F(SerialLinkTest, ScenarioBeginsWithASilenceOfZeroThatIsShown) {
    awaitAnswer(0x21, 9);
    tick(7);
    EXPECT_EQ(form.text("txtWatchDog"), "7");
    link.enterMode(Mode::Scenario);
    EXPECT_EQ(form.text("txtWatchDog"), "0");
}

TEST_F(RolesTest, LeavingTheSimulationEndsARequestThatIsStillSettling) {
    link.enterMode(Mode::Simulation);
    port.receive(burst(9));
    clock.advance(149);
    link.enterMode(Mode{0x21});
    EXPECT_FALSE(state.InReceive);
    clock.advance(1000);
    EXPECT_TRUE(requests.empty());
}

TEST_F(RolesTest, RequestThatIsNotAnsweredLeavesNoBytesToTheNextOne) {
    link.enterMode(Mode::Simulation);
    port.receive(burst(9));
    link.enterMode(Mode{0x21});
    link.enterMode(Mode::Simulation);
    port.receive(burst(3));
    clock.advance(300);
    EXPECT_EQ(requests, std::vector<Bytes>{burst(3)});
}

TEST_F(RolesTest, LeavingTheSimulationFreesTheTimerThatAnUnknownRequestHeld) {
    requestIsKnown = false;
    link.enterMode(Mode::Simulation);
    port.receive(burst(9));
    clock.advance(300);
    EXPECT_TRUE(state.InReceive);
    link.enterMode(Mode::Simulation);
    EXPECT_TRUE(state.InReceive);
    link.enterMode(Mode::MonitorIdle);
    EXPECT_FALSE(state.InReceive);
}

TEST_F(RolesTest, ReceptionThatBeganBeforeTheSimulationOutlivesIt) {
    link.enterMode(Mode{0x21});
    port.receive(burst(4));
    clock.advance(50);
    link.enterMode(Mode::Simulation);
    link.enterMode(Mode{0x21});
    EXPECT_TRUE(state.InReceive);
    clock.advance(50);
    EXPECT_EQ(form.text("txtCurrentData"), "4");
}

TEST_F(RolesTest, ReceptionOfAClosedConnectionDoesNotOutliveTheSimulation) {
    link.enterMode(Mode{0x21});
    port.receive(burst(4));
    port.close();
    link.enterMode(Mode::Simulation);
    link.enterMode(Mode{0x21});
    EXPECT_FALSE(state.InReceive);
    clock.advance(100);
    EXPECT_FALSE(state.InReceive);
}

TEST_F(RolesTest, ChangeBetweenOtherModesLeavesAReceptionAlone) {
    link.enterMode(Mode{0x21});
    port.receive(burst(9));
    link.enterMode(Mode{0x22});
    EXPECT_TRUE(state.InReceive);
    clock.advance(100);
    EXPECT_FALSE(state.InReceive);
}

} // namespace
} // namespace varda::test
