#include "core/runs/responder.h"

#include "core/pairs/packet_table.h"
#include "support/fake_port.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

using Written = std::vector<Bytes>;
using Texts = std::vector<std::string>;
using namespace std::chrono_literals;

/// A link that answers from a table; every request that came in is noted.
class ResponderTest : public testing::Test, public LinkObserver, public CounterObserver {
protected:
    ResponderTest() {
        link.setRoles({.answerTo = [this](auto request) { return responder.answerTo(request); }});
        link.observe(*this);
        link.observeCounters(*this);
        link.enterMode(Mode::Simulation);
        port.setEventHandler([this](CommEvent event, const std::string&) { link.commPLC_OnComm(event); });
        port.open();
        port.forgetCalls();
    }

    void told(const Exchange& exchange) override { exchanges.push_back(exchange); }
    void counted(Counter counter, int value) override {
        if (counter == Counter::Received) {
            counts.push_back(value);
        }
    }

    /// A request comes in, and the line is quiet afterwards. @return what became of it
    const Exchange& receive(const Bytes& request) {
        port.receive(request);
        clock.advance(150ms);
        return exchanges.back();
    }

    PacketTable table;
    FakePort port;
    ManualClock clock;
    SerialLink link{port, clock};
    Responder responder{table};
    std::vector<Exchange> exchanges;
    std::vector<int> counts;
};

TEST_F(ResponderTest, EqualRequestIsAnsweredWithItsPair) {
    table.addPair("0102", "A1");
    table.addPair("0A0B", "0100A2010073B2");
    const Exchange& exchange = receive({0x0A, 0x0B});
    EXPECT_EQ(exchange.outcome, Outcome::AnsweredByPair);
    EXPECT_EQ(exchange.request, (Bytes{0x0A, 0x0B}));
    EXPECT_EQ(exchange.pair, 1U);
    EXPECT_EQ(exchange.answer, (Bytes{0x01, 0x00, 0xA2, 0x01, 0x00, 0x73, 0xB2}));
    EXPECT_EQ(port.written(), Written{exchange.answer});
    EXPECT_EQ(port.calls(), (Texts{"read", "discard", "write"}));
    EXPECT_EQ(counts, (std::vector<int>{2, 0})) << "the request's length, then the end of the reception";
}

TEST_F(ResponderTest, LowerOfTwoEqualRequestsAlwaysAnswers) {
    table.addPair("01", "AA");
    table.addPair("01", "BB");
    EXPECT_EQ(receive({0x01}).pair, 0U);
    EXPECT_EQ(receive({0x01}).pair, 0U);
    EXPECT_EQ(port.written(), (Written{{0xAA}, {0xAA}}));
}

TEST_F(ResponderTest, HigherOfTwoEqualRequestsAnswersOnceTheLowerIsRemoved) {
    table.addPair("01", "AA");
    table.addPair("01", "BB");
    table.removeRequest(0);
    table.removeAnswer(0);
    EXPECT_EQ(receive({0x01}).pair, 0U);
    EXPECT_EQ(port.written(), (Written{{0xBB}}));
}

TEST_F(ResponderTest, UnknownRequestIsDiscardedInSilence) {
    table.addPair("01", "AA");
    const Exchange& exchange = receive({0x02, 0x03});
    EXPECT_EQ(exchange.outcome, Outcome::Unknown);
    EXPECT_EQ(exchange.request, (Bytes{0x02, 0x03}));
    EXPECT_EQ(exchange.pair, std::nullopt);
    EXPECT_EQ(counts, std::vector<int>{2});
    EXPECT_EQ(port.calls(), (Texts{"read", "discard"}));
    EXPECT_EQ(link.state().RxCount, 0);
}

TEST_F(ResponderTest, EmptyTableDiscardsEveryRequest) {
    EXPECT_EQ(receive({0x01}).outcome, Outcome::Unknown);
    EXPECT_EQ(receive({0x02}).outcome, Outcome::Unknown);
    EXPECT_TRUE(port.written().empty());
}

TEST_F(ResponderTest, TrailingByteMatchesNothing) {
    table.addPair("0102", "AA");
    EXPECT_FALSE(responder.answerTo(Bytes{0x01, 0x02, 0x00}));
    EXPECT_FALSE(responder.answerTo(Bytes{0x01}));
}

TEST_F(ResponderTest, LowerCaseRequestOfTheTableNeverMatches) {
    table.addPair("0a", "AA");
    EXPECT_FALSE(responder.answerTo(Bytes{0x0A}));
}

TEST_F(ResponderTest, LowerCaseAnswerIsSent) {
    table.addPair("01", "aa");
    receive({0x01});
    EXPECT_EQ(port.written(), (Written{{0xAA}}));
}

TEST_F(ResponderTest, DamagedAnswerSendsNothingAndTheRestRuns) {
    for (const char* const damaged : {"ABC", "GG", "A", "01 2", ""}) {
        table.replace({"01"}, {damaged});
        const Exchange& exchange = receive({0x01});
        EXPECT_EQ(exchange.outcome, Outcome::AnsweredByPair) << damaged;
        EXPECT_TRUE(exchange.answer.empty());
        EXPECT_EQ(link.state().RxCount, 0);
        EXPECT_FALSE(link.state().InReceive);
    }
    EXPECT_TRUE(port.written().empty());
}

TEST_F(ResponderTest, MissingAnswerSendsNothingAndTheRestRuns) {
    table.replace({"00", "01"}, {"AA"});
    EXPECT_EQ(receive({0x01}).pair, 1U);
    EXPECT_TRUE(port.written().empty());
}

TEST_F(ResponderTest, PortThatRefusesTheBytesIsSkipped) {
    table.addPair("01", "AA");
    port.failWrite(RuntimeError(8020, "gone"));
    const Exchange& exchange = receive({0x01});
    EXPECT_EQ(exchange.outcome, Outcome::AnsweredByPair);
    EXPECT_TRUE(exchange.answer.empty());
    EXPECT_FALSE(link.state().InReceive);
}

TEST_F(ResponderTest, RequestLongerThanTheBufferMatchesNothing) {
    table.addPair(std::string(2050, '0'), "AA");
    const Exchange& tooLong = receive(Bytes(1026, 0));
    EXPECT_EQ(tooLong.outcome, Outcome::Unknown);
    EXPECT_EQ(tooLong.request, Bytes(1025, 0)) << "its beginning is shown";
    EXPECT_EQ(counts, std::vector<int>{1026});
    EXPECT_EQ(receive(Bytes(1025, 0)).outcome, Outcome::AnsweredByPair);
}

TEST_F(ResponderTest, AnsweredRequestReachesTheCommonEnd) {
    table.addPair("01", "AA");
    port.receive({0x01});
    EXPECT_TRUE(link.state().InReceive);
    clock.advance(150ms);
    EXPECT_TRUE(link.state().AnswerReceived);
    EXPECT_FALSE(link.state().WaitingAnswer);
    EXPECT_FALSE(link.state().InReceive);
}

TEST_F(ResponderTest, UnknownRequestLeavesInReceiveSetUntilALaterOneCompletes) {
    table.addPair("01", "AA");
    receive({0x02});
    EXPECT_TRUE(link.state().InReceive);
    EXPECT_FALSE(link.state().AnswerReceived);
    receive({0x01});
    EXPECT_FALSE(link.state().InReceive);
}

TEST_F(ResponderTest, RequestOfAClosedPortShowsItsLengthAndIsDropped) {
    link.setRoles({.answerTo = [this](auto) {
        port.close();
        return std::optional(PreparedAnswer{0, {0xAA}});
    }});
    const Exchange& exchange = receive({0x01});
    EXPECT_EQ(exchange.outcome, Outcome::NotSent);
    EXPECT_EQ(exchange.pair, 0U) << "it is shown selected all the same";
    EXPECT_EQ(counts.front(), 1);
    EXPECT_EQ(link.state().RxCount, 0);
    EXPECT_FALSE(link.state().InReceive);
    EXPECT_TRUE(port.written().empty());
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
    EXPECT_EQ(receive({0x01}).request, Bytes{0x01});
    EXPECT_EQ(receive({0x02}).request, Bytes{0x02});
    EXPECT_TRUE(port.written().empty());
}

} // namespace
} // namespace varda::test
