#include "core/link/serial_link.h"

#include "core/link/serial_link_fixture.h"

#include <vector>

namespace varda::test {
namespace {

using Texts = std::vector<std::string>;

// Sending

TEST_F(SerialLinkTest, StartEmptiesTheInputAndTheCounters) {
    port.receiveSilently(burst(9));
    state.RxCount = 3;
    state.RxExpected = 14;
    state.WaitTicks = 5;

    EXPECT_TRUE(link.startRequest());

    EXPECT_EQ(port.inBufferCount(), 0U);
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_EQ(state.RxExpected, 0);
    EXPECT_EQ(state.WaitTicks, 0);
    EXPECT_TRUE(port.written().empty());
}

TEST_F(SerialLinkTest, ClosedPortChangesNothingOfTheLink) {
    port.close();
    port.forgetCalls();
    state.RxBuffer.fill(0xA5);
    state.RxCount = 3;
    state.RxExpected = 14;
    state.WaitTicks = 5;
    state.AnswerReceived = true;
    state.WaitingAnswer = true;
    const LinkState before = state;

    EXPECT_FALSE(link.startRequest());

    EXPECT_EQ(state, before);
    EXPECT_TRUE(port.calls().empty());
}

TEST_F(SerialLinkTest, RequestGoesOutInOneWriteAndItsAnswerIsAwaited) {
    state.AnswerReceived = true;
    const Bytes request = burst(256, 0);

    ASSERT_TRUE(link.startRequest());
    link.SendRequest(request, 518);

    EXPECT_EQ(port.written(), std::vector<Bytes>{request});
    EXPECT_EQ(state.RxExpected, 518);
    EXPECT_FALSE(state.AnswerReceived);
    EXPECT_TRUE(state.WaitingAnswer);
    EXPECT_EQ(port.calls(), (Texts{"discard", "write"}));
}

TEST_F(SerialLinkTest, ExpectedLengthIsSetBeforeAndTheFlagsAfterTheBytesAreHandedOver) {
    state.AnswerReceived = true;
    int looks = 0;
    port.onWrite([&] {
        ++looks;
        EXPECT_EQ(state.RxExpected, 14);
        EXPECT_TRUE(state.AnswerReceived);
        EXPECT_FALSE(state.WaitingAnswer);
    });

    link.SendRequest(burst(9), 14);

    EXPECT_EQ(looks, 1);
}

TEST_F(SerialLinkTest, FailedWriteIsThrownAndNoAnswerIsAwaited) {
    port.failWrite(RuntimeError(8020, "Write error"));
    ASSERT_TRUE(link.startRequest());

    try {
        link.SendRequest(burst(9), 14);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), 8020);
    }

    EXPECT_FALSE(state.WaitingAnswer);
}

TEST_F(SerialLinkTest, CountersShowTheExpectedAndTheReceivedLength) {
    state.RxExpected = 262;
    state.RxCount = 17;
    link.tellCounters();
    EXPECT_EQ(form.text("txtTotalData"), "262");
    EXPECT_EQ(form.text("txtCurrentData"), "17");
}

// Complete answers

struct AnswerFields {
    int mode;
    std::string answer;
    Texts status; ///< told "Data Receive OK !!"
};

std::ostream& operator<<(std::ostream& out, const AnswerFields& fields) { return out << fields.mode; }

class CompleteAnswerTest : public SerialLinkTest, public testing::WithParamInterface<AnswerFields> {};

INSTANTIATE_TEST_SUITE_P(Modes, CompleteAnswerTest,
                         testing::Values(AnswerFields{0x21, "txtReceiveRData", {"txtRStatus"}},
                                         AnswerFields{0x22, "txtReceiveWData", {"txtWStatus"}},
                                         AnswerFields{0x23, "txtReceiveRData", {"txtRStatus"}},
                                         AnswerFields{0x24, "txtReceiveWData", {"txtWStatus"}},
                                         AnswerFields{0x25, "txtReceiveMRData", {"txtWStatus"}},
                                         AnswerFields{0x26, "txtReceiveMWData", {"txtWStatus"}},
                                         AnswerFields{0xC0, "txtScnReceive", {}}),
                         testing::PrintToStringParamName());

// The completion of both mixed pages is told in the write page's status field.
TEST_P(CompleteAnswerTest, IsToldInExactlyTheFieldsOfItsMode) {
    awaitAnswer(GetParam().mode, 14);

    port.receive(burst(14));
    clock.advance(100);

    EXPECT_EQ(form.controlsShowing(groups(burst(14))), Texts{GetParam().answer});
    EXPECT_EQ(form.controlsShowing("Data Receive OK !!"), GetParam().status);
    EXPECT_TRUE(form.messages().empty());
}

TEST_P(CompleteAnswerTest, IsCountedBeforeItIsShown) {
    awaitAnswer(GetParam().mode, 14);
    int shown = 0;
    form.onTextChange(GetParam().answer, [&] {
        ++shown;
        EXPECT_EQ(form.text("txtCurrentData"), "14");
        EXPECT_EQ(state.RxCount, 14);
    });
    port.receive(burst(14));
    clock.advance(100);
    EXPECT_EQ(shown, 1);
}

TEST_P(CompleteAnswerTest, EndsTheReception) {
    awaitAnswer(GetParam().mode, 14);
    state.WaitTicks = 7;

    port.receive(burst(14));
    EXPECT_TRUE(state.InReceive);
    clock.advance(100);

    EXPECT_FALSE(state.InReceive);
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_FALSE(state.WaitingAnswer);
    EXPECT_EQ(state.WaitTicks, 0);
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_EQ(state.RxExpected, 14);
    EXPECT_EQ(form.text("txtCurrentData"), "14");
    EXPECT_EQ(form.text("txtTotalData"), "14");
    EXPECT_EQ(port.inBufferCount(), 0U);
    EXPECT_EQ(clock.pending(), 0U);
}

TEST_F(SerialLinkTest, EveryByteValueIsShownAsTwoUpperCaseDigitsAndASpace) {
    awaitAnswer(0x23, 256);
    port.receive(burst(256, 0));
    clock.advance(100);
    const auto shown = form.text("txtReceiveRData");
    ASSERT_EQ(shown.size(), 768U);
    EXPECT_EQ(shown.substr(0, 51), "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 ");
    EXPECT_EQ(shown.substr(747), "F9 FA FB FC FD FE FF ");
}

TEST_F(SerialLinkTest, LongestAnswerIsShownWhole) {
    awaitAnswer(0x23, 518);
    port.receive(burst(518));
    clock.advance(100);
    EXPECT_EQ(form.text("txtReceiveRData"), groups(burst(518)));
}

TEST_F(SerialLinkTest, ReceptionClearsTheWatchdogAtItsStart) {
    awaitAnswer(0x21, 14);
    state.WaitTicks = 9;
    form.setText("txtWatchDog", "9");

    port.receive(burst(1));

    EXPECT_EQ(state.WaitTicks, 0);
    EXPECT_EQ(form.text("txtWatchDog"), "0");
    EXPECT_TRUE(state.InReceive);
}

TEST_F(SerialLinkTest, BytesAreReadOnlyWhen100MillisecondsHavePassed) {
    awaitAnswer(0x21, 14);
    port.receive(burst(14));

    clock.advance(99);
    EXPECT_EQ(port.inBufferCount(), 14U);
    EXPECT_EQ(form.text("txtReceiveRData"), "");

    clock.advance(1);
    EXPECT_EQ(port.inBufferCount(), 0U);
    EXPECT_EQ(form.text("txtReceiveRData"), groups(burst(14)));
}

TEST_F(SerialLinkTest, BytesAreAppendedBehindThoseAlreadyCounted) {
    awaitAnswer(0x21, 14);
    state.RxBuffer[0] = 0x01;
    state.RxBuffer[1] = 0x02;
    state.RxBuffer[2] = 0x03;
    state.RxCount = 3;

    port.receive(burst(11));
    clock.advance(100);

    EXPECT_EQ(form.text("txtReceiveRData"), "01 02 03 " + groups(burst(11)));
}

} // namespace
} // namespace varda::test
