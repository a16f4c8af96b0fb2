#include "core/link/serial_link.h"

#include "core/link/serial_link_fixture.h"

#include <algorithm>
#include <tuple>

namespace varda::test {
namespace {

using Texts = std::vector<std::string>;

// Bursts of the wrong length

class WrongLengthTest : public SerialLinkTest,
                        public testing::WithParamInterface<std::tuple<int, std::size_t>> {};

INSTANTIATE_TEST_SUITE_P(ModesAndLengths, WrongLengthTest,
                         testing::Combine(testing::Values(0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0xC0),
                                          testing::Values(1U, 13U, 15U, 28U, 1025U, 1026U, 5000U)));

TEST_P(WrongLengthTest, IsDroppedSilentlyAndEndsTheWaitForTheAnswer) {
    const auto [mode, length] = GetParam();
    awaitAnswer(mode, 14);

    port.receive(burst(length));
    clock.advance(100);

    for (const char* const answer :
         {"txtReceiveRData", "txtReceiveWData", "txtReceiveMRData", "txtReceiveMWData", "txtScnReceive"}) {
        EXPECT_TRUE(form.told(answer).empty()) << answer;
    }
    for (const char* const status : {"txtRStatus", "txtWStatus", "txtMRStatus", "txtMWStatus"}) {
        EXPECT_TRUE(form.told(status).empty()) << status;
    }
    EXPECT_TRUE(form.messages().empty());
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_FALSE(state.WaitingAnswer);
    EXPECT_FALSE(state.InReceive);
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_EQ(form.text("txtCurrentData"), std::to_string(length));
    EXPECT_EQ(form.text("txtTotalData"), "14");
}

TEST_F(SerialLinkTest, CountersOfADroppedBurstStayUntilTheNextTickClearsThem) {
    awaitAnswer(0x21, 14);
    port.receive(burst(9));
    clock.advance(100);
    clock.advance(5000);
    EXPECT_EQ(form.text("txtCurrentData"), "9");
    EXPECT_EQ(form.text("txtTotalData"), "14");

    tick();

    EXPECT_EQ(form.text("txtCurrentData"), "0");
    EXPECT_EQ(form.text("txtTotalData"), "0");
    EXPECT_EQ(state.RxExpected, 0);
    EXPECT_FALSE(state.AnswerReceived);
}

TEST_F(SerialLinkTest, NoTimeOutFollowsADroppedBurst) {
    awaitAnswer(0x21, 14);
    port.receive(burst(9));
    clock.advance(100);
    tick(30);
    EXPECT_TRUE(form.told("txtRStatus").empty());
}

TEST_F(SerialLinkTest, AnswerInTwoPiecesMoreThan100MillisecondsApartIsDroppedPieceByPiece) {
    awaitAnswer(0x21, 14);
    port.receive(burst(7));
    clock.advance(101);
    EXPECT_EQ(form.text("txtCurrentData"), "7");
    port.receive(burst(7, 0xFF));
    clock.advance(100);

    EXPECT_EQ(form.text("txtCurrentData"), "7");
    EXPECT_TRUE(form.told("txtReceiveRData").empty());
    EXPECT_TRUE(form.told("txtRStatus").empty());
    EXPECT_TRUE(form.messages().empty());
    EXPECT_FALSE(state.InReceive);
}

TEST_F(SerialLinkTest, AnswerInTwoPiecesWithin100MillisecondsIsShown) {
    awaitAnswer(0x21, 14);
    port.receive(burst(7));
    clock.advance(60);
    port.receive(burst(7, 0xFF));
    clock.advance(40);

    EXPECT_EQ(form.text("txtReceiveRData"), groups(burst(14)));
    EXPECT_EQ(form.told("txtRStatus"), Texts{"Data Receive OK !!"});
}

TEST_F(SerialLinkTest, AnswerOneByteAtATimeWithin100MillisecondsIsShownOnce) {
    awaitAnswer(0x21, 14);
    for (const auto byte : burst(14)) {
        port.receive({byte});
        clock.advance(7);
    }
    clock.advance(100);

    EXPECT_EQ(form.told("txtReceiveRData"), Texts{groups(burst(14))});
    EXPECT_FALSE(state.InReceive);
    EXPECT_EQ(clock.pending(), 0U);
}

TEST_F(SerialLinkTest, BurstIsDroppedWhileNoAnswerIsExpected) {
    state.CommMode = Mode{0x21};
    port.receive(burst(14));
    clock.advance(100);

    EXPECT_EQ(form.text("txtCurrentData"), "14");
    EXPECT_TRUE(form.told("txtReceiveRData").empty());
    EXPECT_TRUE(form.told("txtRStatus").empty());
    EXPECT_TRUE(state.AnswerReceived);
}

TEST_F(SerialLinkTest, BurstOnTheIdleMonitorPageIsDroppedLikeAnyOther) {
    awaitAnswer(0x80, 14);
    port.receive(burst(14));
    clock.advance(100);

    EXPECT_TRUE(form.controlsShowing(groups(burst(14))).empty());
    EXPECT_TRUE(form.controlsShowing("Data Receive OK !!").empty());
    EXPECT_EQ(form.told("txtCurrentData"), Texts{"14"}) << "counted at the end of the reception only";
    EXPECT_FALSE(state.InReceive);
}

// Bursts beyond the buffer

TEST_F(SerialLinkTest, BytesBeyondIndex1024AreDroppedAndCounted) {
    awaitAnswer(0x21, 14);
    const auto bytes = burst(5000);
    port.receive(bytes);
    clock.advance(100);

    EXPECT_TRUE(std::equal(state.RxBuffer.begin(), state.RxBuffer.end(), bytes.begin()));
    EXPECT_EQ(form.text("txtCurrentData"), "5000");
    EXPECT_EQ(state.RxExpected, 14);
    EXPECT_EQ(state.CommMode, Mode{0x21});
    EXPECT_FALSE(state.InReceive);
    EXPECT_TRUE(form.told("txtReceiveRData").empty());
    EXPECT_TRUE(form.messages().empty());
}

TEST_F(SerialLinkTest, CountStopsAt32767) {
    awaitAnswer(0x21, 14);
    port.receive(burst(100'000));
    clock.advance(100);

    EXPECT_EQ(form.text("txtCurrentData"), "32767");
    EXPECT_EQ(state.RxExpected, 14);
    EXPECT_FALSE(state.InReceive);
    EXPECT_TRUE(form.told("txtReceiveRData").empty());
    EXPECT_TRUE(form.messages().empty());
}

TEST_F(SerialLinkTest, AnswerLongerThanTheBufferShowsWhatTheBufferHolds) {
    awaitAnswer(0x23, 5000);
    const auto bytes = burst(5000);
    port.receive(bytes);
    clock.advance(100);

    EXPECT_EQ(form.text("txtRStatus"), "Data Receive OK !!");
    EXPECT_EQ(form.text("txtReceiveRData"), groups(Bytes(bytes.begin(), bytes.begin() + 1025)));
    EXPECT_FALSE(state.InReceive);
}

TEST_F(SerialLinkTest, NextAnswerAfterAnOverlongBurstIsShown) {
    awaitAnswer(0x21, 14);
    port.receive(burst(100'000));
    clock.advance(100);
    awaitAnswer(0x21, 14);
    port.receive(burst(14));
    clock.advance(100);
    EXPECT_EQ(form.text("txtReceiveRData"), groups(burst(14)));
}

} // namespace
} // namespace varda::test
