#include "core/runs/responder.h"

#include "core/base/clock.h"
#include "core/link/serial_link.h"
#include "core/pairs/packet_table.h"
#include "support/fake_form.h"
#include "support/fake_port.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace varda {
namespace {

using test::FakeForm;
using test::FakePort;
using Written = std::vector<Bytes>;
using Texts = std::vector<std::string>;
using Pairs = std::vector<int>;
using namespace std::chrono_literals;

class ResponderTest : public testing::Test {
protected:
    ResponderTest() {
        state.CommMode = comm_mode::simulation;
        link.setRoles({.answerRequest = [this] { return responder.answer(); }});
        port.setEventHandler([this](CommEvent event, const std::string&) { link.commPLC_OnComm(event); });
        port.open();
        port.forgetCalls();
    }

    /// Answers a request as if the link had just read it.
    bool answer(const Bytes& request) {
        std::copy(request.begin(), request.end(), state.RxBuffer.begin());
        state.RxCount = static_cast<std::int16_t>(request.size());
        return responder.answer();
    }

    PacketTable table;
    FakePort port;
    FakeForm form;
    test::ManualClock clock;
    SerialLink link{port, clock, form};
    LinkState& state = link.state();
    Pairs selected;
    Responder responder{state, port, form, table, [this](int pair) { selected.push_back(pair); }};
};

TEST_F(ResponderTest, EqualRequestIsAnsweredWithItsPair) {
    table.addPair("0102", "A1");
    table.addPair("0A0B", "0100A2010073B2");
    port.receiveSilently({0x55});
    EXPECT_TRUE(answer({0x0A, 0x0B}));
    EXPECT_EQ(form.text("txtCurrentData"), "2");
    EXPECT_EQ(form.text("txtSimRP"), "0A0B");
    EXPECT_EQ(form.text("txtSimSP"), "0100A2010073B2");
    EXPECT_EQ(selected, Pairs{1});
    EXPECT_EQ(port.written(), (Written{{0x01, 0x00, 0xA2, 0x01, 0x00, 0x73, 0xB2}}));
    EXPECT_EQ(port.calls(), (Texts{"discard", "write"}));
    EXPECT_EQ(port.inBufferCount(), 0U);
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_EQ(form.text("txtMRStatus"), "");
}

TEST_F(ResponderTest, SendsBeforeItShowsThePairSelected) {
    table.addPair("01", "02");
    bool sentFirst = false;
    port.onWrite([&] { sentFirst = selected.empty(); });
    EXPECT_TRUE(answer({0x01}));
    EXPECT_TRUE(sentFirst);
    EXPECT_EQ(selected, Pairs{0});
}

TEST_F(ResponderTest, LowerOfTwoEqualRequestsAlwaysAnswers) {
    table.addPair("01", "AA");
    table.addPair("01", "BB");
    EXPECT_TRUE(answer({0x01}));
    EXPECT_TRUE(answer({0x01}));
    EXPECT_EQ(port.written(), (Written{{0xAA}, {0xAA}}));
    EXPECT_EQ(selected, (Pairs{0, 0}));
}

TEST_F(ResponderTest, HigherOfTwoEqualRequestsAnswersOnceTheLowerIsRemoved) {
    table.addPair("01", "AA");
    table.addPair("01", "BB");
    table.removeRequest(0);
    table.removeAnswer(0);
    EXPECT_TRUE(answer({0x01}));
    EXPECT_EQ(port.written(), (Written{{0xBB}}));
    EXPECT_EQ(selected, Pairs{0});
}

TEST_F(ResponderTest, UnknownRequestIsDiscardedInSilence) {
    table.addPair("01", "AA");
    port.receiveSilently({0x55});
    form.setText("txtSimSP", "before");
    EXPECT_FALSE(answer({0x02, 0x03}));
    EXPECT_EQ(form.text("txtSimRP"), "0203");
    EXPECT_EQ(form.text("txtSimSP"), "before");
    EXPECT_EQ(form.text("txtCurrentData"), "2");
    EXPECT_EQ(selected, Pairs{Responder::noPair});
    EXPECT_EQ(port.calls(), Texts{"discard"});
    EXPECT_EQ(port.inBufferCount(), 0U);
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_TRUE(form.messages().empty());
}

TEST_F(ResponderTest, EmptyTableDiscardsEveryRequest) {
    EXPECT_FALSE(answer({0x01}));
    EXPECT_FALSE(answer({0x02}));
    EXPECT_EQ(selected, (Pairs{-1, -1}));
    EXPECT_TRUE(port.written().empty());
}

TEST_F(ResponderTest, TrailingByteMatchesNothing) {
    table.addPair("0102", "AA");
    EXPECT_FALSE(answer({0x01, 0x02, 0x00}));
    EXPECT_FALSE(answer({0x01}));
}

TEST_F(ResponderTest, LowerCaseRequestOfTheTableNeverMatches) {
    table.addPair("0a", "AA");
    EXPECT_FALSE(answer({0x0A}));
}

TEST_F(ResponderTest, LowerCaseAnswerIsSent) {
    table.addPair("01", "aa");
    EXPECT_TRUE(answer({0x01}));
    EXPECT_EQ(port.written(), (Written{{0xAA}}));
}

TEST_F(ResponderTest, ClosedPortIsToldOnTheMixedReadPage) {
    table.addPair("01", "AA");
    port.close();
    EXPECT_TRUE(answer({0x01}));
    EXPECT_EQ(form.controlsShowing("Port Closed"), Texts{"txtMRStatus"});
    EXPECT_EQ(selected, Pairs{0});
    EXPECT_EQ(form.text("txtSimSP"), "");
    EXPECT_TRUE(port.written().empty());
}

TEST_F(ResponderTest, DamagedAnswerSendsNothingAndTheRestRuns) {
    for (const char* const damaged : {"ABC", "GG", "A", "01 2"}) {
        table.replace({"01"}, {damaged});
        EXPECT_TRUE(answer({0x01})) << damaged;
        EXPECT_EQ(form.text("txtSimSP"), damaged);
        EXPECT_EQ(state.RxCount, 0);
    }
    EXPECT_TRUE(port.written().empty());
}

TEST_F(ResponderTest, MissingAnswerSendsNothingAndTheRestRuns) {
    table.replace({"00", "01"}, {"AA"});
    EXPECT_TRUE(answer({0x01}));
    EXPECT_EQ(selected, Pairs{1});
    EXPECT_EQ(form.text("txtSimSP"), "");
    EXPECT_TRUE(port.written().empty());
    EXPECT_EQ(state.RxCount, 0);
}

TEST_F(ResponderTest, PortThatRefusesTheBytesIsSkipped) {
    table.addPair("01", "AA");
    port.failWrite(RuntimeError(8020, "gone"));
    EXPECT_TRUE(answer({0x01}));
    EXPECT_EQ(form.text("txtSimSP"), "AA");
    EXPECT_EQ(state.RxCount, 0);
}

TEST_F(ResponderTest, RequestLongerThanTheBufferMatchesNothing) {
    table.addPair(std::string(2050, '0'), "AA");
    state.RxBuffer.fill(0);
    state.RxCount = 1026;
    EXPECT_FALSE(responder.answer());
    EXPECT_EQ(form.text("txtSimRP"), std::string(2050, '0'));
    state.RxCount = 1025;
    EXPECT_TRUE(responder.answer());
}

TEST_F(ResponderTest, FindSimReceivePacketShowsWhatItLooksFor) {
    table.addPair("0102", "AA");
    const Bytes received{0x01, 0x02, 0x03};
    EXPECT_EQ(responder.FindSimReceivePacket(std::span(received).first(2)), 0);
    EXPECT_EQ(form.text("txtSimRP"), "0102");
    EXPECT_EQ(responder.FindSimReceivePacket(received), -1);
    EXPECT_EQ(form.text("txtSimRP"), "010203");
}

TEST_F(ResponderTest, AnsweredRequestReachesTheCommonEnd) {
    table.addPair("01", "AA");
    state.RxExpected = 14;
    state.WaitingAnswer = true;
    port.receive({0x01});
    EXPECT_TRUE(state.InReceive);
    clock.advance(150ms);
    EXPECT_EQ(port.written(), (Written{{0xAA}}));
    EXPECT_EQ(form.text("txtCurrentData"), "0");
    EXPECT_EQ(form.text("txtTotalData"), "14");
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_FALSE(state.WaitingAnswer);
    EXPECT_FALSE(state.InReceive);
}

TEST_F(ResponderTest, UnknownRequestLeavesInReceiveSetUntilALaterOneCompletes) {
    table.addPair("01", "AA");
    port.receive({0x02});
    clock.advance(150ms);
    EXPECT_TRUE(state.InReceive);
    EXPECT_FALSE(state.AnswerReceived);
    EXPECT_EQ(form.text("txtCurrentData"), "1");
    port.receive({0x01});
    clock.advance(150ms);
    EXPECT_FALSE(state.InReceive);
}

TEST_F(ResponderTest, RequestOfAClosedPortShowsItsLengthAndIsDropped) {
    table.addPair("01", "AA");
    link.setRoles({.answerRequest = [this] {
        port.close();
        return responder.answer();
    }});
    port.receive({0x01});
    clock.advance(150ms);
    EXPECT_EQ(form.text("txtCurrentData"), "1");
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_FALSE(state.InReceive);
    EXPECT_EQ(form.text("txtMRStatus"), "Port Closed");
}

TEST_F(ResponderTest, TwoPiecesOfOneSettleTimeAreOneRequest) {
    table.addPair("0102", "AA");
    port.receive({0x01});
    clock.advance(100ms);
    port.receive({0x02});
    clock.advance(50ms);
    clock.advance(149ms);
    EXPECT_TRUE(port.written().empty());
    clock.advance(1ms);
    EXPECT_EQ(port.written(), (Written{{0xAA}}));
}

TEST_F(ResponderTest, PiecesWithAPauseBetweenThemAreTwoUnknownRequests) {
    table.addPair("0102", "AA");
    port.receive({0x01});
    clock.advance(150ms);
    port.receive({0x02});
    clock.advance(150ms);
    EXPECT_TRUE(port.written().empty());
    EXPECT_EQ(form.told("txtSimRP"), (Texts{"01", "02"}));
    EXPECT_EQ(selected, (Pairs{-1, -1}));
}

} // namespace
} // namespace varda
