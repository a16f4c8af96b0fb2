#include "core/link/serial_link.h"

#include "core/link/serial_link_fixture.h"
#include "support/link_ear.h"

#include <vector>

namespace varda::test {
namespace {

// Monitor

TEST_F(RolesTest, MonitorIsHandedTheWholeBurstAfter100Milliseconds) {
    awaitAnswer(0x81, 14);
    port.receive(burst(20));
    clock.advance(99);
    EXPECT_TRUE(listed.empty());
    clock.advance(1);

    EXPECT_EQ(listed, std::vector<Bytes>{burst(20)});
    EXPECT_TRUE(requests.empty());
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_FALSE(state.WaitingAnswer);
    EXPECT_FALSE(state.InReceive);
    EXPECT_EQ(form.text("txtTotalData"), "14");
}

TEST_F(RolesTest, MonitorIsHandedBurstsLongerThanTheBufferWhole) {
    state.CommMode = Mode{0x81};
    port.receive(burst(100'000));
    clock.advance(100);
    EXPECT_EQ(listed, std::vector<Bytes>{burst(100'000)});
    EXPECT_FALSE(state.InReceive);
}

// Simulator

TEST_F(RolesTest, RequestIsTakenWhenTheLineWasQuietFor150Milliseconds) {
    awaitAnswer(0xFF, 14);
    port.receive(burst(9));
    clock.advance(149);
    EXPECT_TRUE(requests.empty());
    EXPECT_EQ(port.inBufferCount(), 9U);
    clock.advance(1);

    EXPECT_EQ(requests, std::vector<Bytes>{burst(9)});
    EXPECT_EQ(form.told("txtCurrentData"), (std::vector<std::string>{"9", "0"}));
}

TEST_F(RolesTest, RequestThatGrowsTwiceIsTakenAtTheThirdPoll) {
    state.CommMode = Mode{0xFF};
    port.receive({0x01});
    clock.advance(100);
    port.receiveSilently({0x02});
    clock.advance(150);
    port.receiveSilently({0x03, 0x04});
    clock.advance(199);
    EXPECT_TRUE(requests.empty());
    EXPECT_TRUE(state.InReceive);
    clock.advance(1);

    EXPECT_EQ(requests, (std::vector<Bytes>{{0x01, 0x02, 0x03, 0x04}}));
    EXPECT_FALSE(state.InReceive);
}

TEST_F(RolesTest, KnownRequestEndsTheReception) {
    awaitAnswer(0xFF, 14);
    port.receive(burst(9));
    clock.advance(150);

    EXPECT_FALSE(state.InReceive);
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_FALSE(state.WaitingAnswer);
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_EQ(form.text("txtTotalData"), "14");
}

TEST_F(RolesTest, UnknownRequestLeavesInReceiveSetUntilAKnownOneComes) {
    requestIsKnown = false;
    awaitAnswer(0xFF, 14);
    port.receive(burst(9));
    clock.advance(150);

    EXPECT_EQ(requests.size(), 1U);
    EXPECT_TRUE(state.InReceive);
    EXPECT_FALSE(state.AnswerReceived);
    EXPECT_TRUE(state.WaitingAnswer);
    EXPECT_TRUE(form.told("txtTotalData").empty());
    form.forgetTold();
    tick(20);
    EXPECT_TRUE(form.told("txtWatchDog").empty());

    requestIsKnown = true;
    state.RxCount = 0;
    port.receive(burst(9));
    clock.advance(150);
    EXPECT_FALSE(state.InReceive);
    EXPECT_TRUE(state.AnswerReceived);
}

TEST_F(SerialLinkTest, RequestThatNeverEndsIsCountedByThePortAndNotKept) {
    int asked = 0;
    link.setRoles({.answerTo = [&](auto) {
        ++asked;
        return std::optional(PreparedAnswer{});
    }});
    state.CommMode = Mode{0xFF};
    for (int piece = 0; piece < 5000; ++piece) {
        port.receive(burst(149));
        clock.advance(100);
        ASSERT_LE(port.kept(), state.RxBuffer.size()) << "no longer request can match";
    }
    EXPECT_EQ(asked, 0) << "it goes on";
    EXPECT_EQ(port.inBufferCount(), 149U * 5000U);
    clock.advance(300);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(form.text("txtCurrentData"), "32767");
    EXPECT_EQ(port.inBufferCount(), 0U);
}

TEST_F(SerialLinkTest, LongRequestsOfTheSimulatorCountTo32767AndNoFurther) {
    int asked = 0;
    link.setRoles({.answerTo = [&](auto) {
        ++asked;
        return std::optional<PreparedAnswer>();
    }});
    state.CommMode = Mode{0xFF};
    for (int i = 0; i < 3; ++i) {
        port.receive(burst(20'000));
        clock.advance(150);
    }
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(form.text("txtCurrentData"), "20000");
    EXPECT_EQ(state.CommMode, Mode{0xFF});
}

// Failing statements

class FailingReadTest : public RolesTest, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Modes, FailingReadTest, testing::Values(0x21, 0x26, 0x80, 0x81, 0xC0, 0xFF));

TEST_P(FailingReadTest, IsSkippedAndTheReceptionEnds) {
    awaitAnswer(GetParam(), 14);
    port.failRead(RuntimeError(8020, "Read error"));
    port.receive(burst(14));
    EXPECT_NO_THROW(clock.advance(150));

    EXPECT_FALSE(state.InReceive);
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_FALSE(state.WaitingAnswer);
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_EQ(form.text("txtCurrentData"), "0");
    EXPECT_TRUE(form.controlsShowing("Data Receive OK !!").empty());
    EXPECT_TRUE(form.messages().empty());
}

TEST_P(FailingReadTest, NothingIsShownWhereNoAnswerIsExpectedEither) {
    awaitAnswer(GetParam(), 0);
    port.failRead(RuntimeError(8020, "Read error"));
    port.receive(burst(14));
    clock.advance(150);

    EXPECT_TRUE(form.controlsShowing("Data Receive OK !!").empty());
    EXPECT_FALSE(state.InReceive);
}

// Only an event that was merged into the wait is raised again.
TEST_F(RolesTest, BytesLeftByAFailingReadRaiseNoEventOfTheirOwn) {
    awaitAnswer(0x21, 14);
    port.failRead(RuntimeError(8020, "Read error"), false);
    port.receive(burst(14));
    clock.advance(100);
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_FALSE(state.InReceive);
    EXPECT_EQ(clock.pending(), 0U);
}

TEST_F(RolesTest, FailingMonitorIsSkippedAndTheReceptionEnds) {
    LinkEar monitor(Outcome::Heard, [](const Exchange&) { throw RuntimeError(61, "Disk full"); });
    link.observe(monitor);
    awaitAnswer(0x81, 14);
    port.receive(burst(5));
    EXPECT_NO_THROW(clock.advance(100));

    EXPECT_FALSE(state.InReceive);
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_TRUE(form.messages().empty());
}

TEST_F(RolesTest, FailingSimulatorIsSkippedAndTheReceptionEnds) {
    LinkEar simulator(Outcome::AnsweredByPair, [](const Exchange&) { throw RuntimeError(61, "Disk full"); });
    link.observe(simulator);
    awaitAnswer(0xFF, 14);
    port.receive(burst(5));
    EXPECT_NO_THROW(clock.advance(150));

    EXPECT_FALSE(state.InReceive);
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_TRUE(form.messages().empty());
}

} // namespace
} // namespace varda::test
