#include "core/link/exchange.h"

#include "core/link/serial_link_fixture.h"

#include <vector>

namespace varda::test {
namespace {

using namespace std::chrono_literals;
using Outcomes = std::vector<Outcome>;

/// Everything that the link tells, in its order.
class ExchangeTest : public SerialLinkTest, public LinkObserver {
protected:
    ExchangeTest() { link.observe(*this); }

    void told(const Exchange& exchange) override { exchanges.push_back(exchange); }

    void send(const Bytes& request, int expected) {
        ASSERT_TRUE(link.startRequest());
        link.SendRequest(request, expected);
    }
    Outcomes outcomes() const {
        Outcomes all;
        for (const Exchange& exchange : exchanges) {
            all.push_back(exchange.outcome);
        }
        return all;
    }
    const Exchange& last() const { return exchanges.back(); }

    std::vector<Exchange> exchanges;
};

TEST_F(ExchangeTest, AnswerIsToldWithItsRequestAndTheTimesOfBoth) {
    const Clock::Time start = clock.now();
    send(burst(9), 14);
    EXPECT_EQ(last().sent.first, start);
    clock.advance(20);
    port.receiveAt(start + 18ms, burst(10));
    port.receiveAt(start + 19ms, burst(4, 2));
    link.commPLC_OnComm(CommEvent::Received);
    clock.advance(100);

    EXPECT_EQ(outcomes(), (Outcomes{Outcome::Sent, Outcome::Answered}));
    EXPECT_EQ(last().mode, Mode::BitRead);
    EXPECT_EQ(last().request, burst(9));
    EXPECT_EQ(last().expected, 14);
    EXPECT_EQ(last().answer.size(), 14U);
    EXPECT_EQ(last().received.first, start + 18ms);
    EXPECT_EQ(last().received.last, start + 19ms);
}

TEST_F(ExchangeTest, LineThatKnowsNoTimesLeavesThoseOfTheLink) {
    send(burst(9), 14);
    clock.advance(20);
    const Clock::Time noticed = clock.now();
    port.receive(burst(14));
    clock.advance(100);
    EXPECT_EQ(last().received.first, noticed);
    EXPECT_EQ(last().received.last, noticed + 100ms);
}

TEST_F(ExchangeTest, BurstOfAnotherLengthIsToldWithBothLengths) {
    send(burst(9), 14);
    port.receive(burst(12));
    clock.advance(100);
    EXPECT_EQ(last().outcome, Outcome::WrongLength);
    EXPECT_EQ(last().answer, burst(12));
    EXPECT_EQ(last().expected, 14);
}

TEST_F(ExchangeTest, EachBurstBehindARequestIsTold) {
    send(burst(9), 14);
    port.receive(burst(12));
    clock.advance(100);
    port.receive(burst(14));
    clock.advance(100);
    EXPECT_EQ(outcomes(), (Outcomes{Outcome::Sent, Outcome::WrongLength, Outcome::Answered}));
    EXPECT_EQ(last().request, burst(9));
}

TEST_F(ExchangeTest, SilenceIsToldOnce) {
    send(burst(9), 14);
    tick(30);
    EXPECT_EQ(outcomes(), (Outcomes{Outcome::Sent, Outcome::Silent}));
    EXPECT_EQ(last().request, burst(9));
    EXPECT_TRUE(last().answer.empty());
}

TEST_F(ExchangeTest, RequestBeforeTheAnswerOvertakes) {
    send(burst(9), 14);
    send(burst(8), 7);
    EXPECT_EQ(outcomes(), (Outcomes{Outcome::Sent, Outcome::Overtaken, Outcome::Sent}));
    EXPECT_EQ(exchanges[1].request, burst(9));
    EXPECT_EQ(last().request, burst(8));
}

TEST_F(ExchangeTest, UnreadBytesAreToldBeforeTheNextSend) {
    send(burst(9), 14);
    port.receiveSilently(burst(3));
    send(burst(9), 14);
    EXPECT_EQ(outcomes(), (Outcomes{Outcome::Sent, Outcome::Overtaken, Outcome::ThrownAway, Outcome::Sent}));
    EXPECT_EQ(exchanges[2].dropped, 3U);
    EXPECT_EQ(last().dropped, 0U);
}

TEST_F(ExchangeTest, EventWithoutBytesIsTold) {
    send(burst(9), 14);
    link.commPLC_OnComm(CommEvent::Received);
    clock.advance(100);
    EXPECT_EQ(last().outcome, Outcome::NothingToRead);
}

TEST_F(ExchangeTest, RefusedBytesAreToldAndThrown) {
    port.failWrite(RuntimeError(8020, "Write error"));
    ASSERT_TRUE(link.startRequest());
    EXPECT_THROW(link.SendRequest(burst(9), 14), RuntimeError);
    EXPECT_EQ(outcomes(), Outcomes{Outcome::NotSent});
    tick(20);
    EXPECT_EQ(exchanges.size(), 1U) << "no answer is awaited";
}

/// The wait goes on over a closed port, and its end is shown; the request had its outcome before.
TEST_F(ExchangeTest, RequestThatWasOvertakenByAClosedPortIsNotSilentAsWell) {
    send(burst(9), 14);
    port.close();
    link.connectionClosed();
    port.open();
    link.connectionOpened();
    tick(13);
    EXPECT_EQ(outcomes(), (Outcomes{Outcome::Sent, Outcome::Overtaken, Outcome::Silent}));
    EXPECT_TRUE(last().request.empty());
}

TEST_F(ExchangeTest, ScenarioOvertakesTheRequestBeforeIt) {
    send(burst(9), 14);
    link.enterMode(Mode::Scenario);
    EXPECT_EQ(outcomes(), (Outcomes{Outcome::Sent, Outcome::Overtaken}));
    EXPECT_EQ(last().request, burst(9));
}

TEST_F(ExchangeTest, HangUpEndsTheExchange) {
    send(burst(9), 14);
    port.hangUp("gone");
    EXPECT_EQ(outcomes(), (Outcomes{Outcome::Sent, Outcome::HungUp}));
    link.connectionOpened();
    EXPECT_EQ(exchanges.size(), 2U);
}

TEST_F(ExchangeTest, ConnectionOpenedAnewLeavesTheExchangeBehind) {
    send(burst(9), 14);
    port.close();
    port.open();
    link.connectionOpened();
    EXPECT_EQ(outcomes(), (Outcomes{Outcome::Sent, Outcome::Overtaken}));
}

TEST_F(ExchangeTest, BytesInAModeWithoutAUseForThemAreIgnored) {
    link.enterMode(Mode::MonitorIdle);
    port.receive(burst(5));
    clock.advance(100);
    EXPECT_EQ(outcomes(), Outcomes{Outcome::Ignored});
    EXPECT_EQ(last().answer, burst(5));
}

TEST_F(ExchangeTest, MonitoredBurstBelongsToNoRequest) {
    send(burst(9), 14);
    link.enterMode(Mode::Monitoring);
    port.receive(burst(5));
    clock.advance(100);
    EXPECT_EQ(outcomes(), (Outcomes{Outcome::Sent, Outcome::Overtaken, Outcome::Heard}));
    EXPECT_TRUE(last().request.empty());
    EXPECT_EQ(last().answer, burst(5));
}

TEST_F(ExchangeTest, ScenarioFrameIsToldWhetherOrNotItWasSent) {
    link.enterMode(Mode::Scenario);
    link.sendScenarioFrame(burst(9), 14);
    EXPECT_EQ(last().outcome, Outcome::Sent);
    EXPECT_EQ(last().mode, Mode::Scenario);
    port.close();
    link.sendScenarioFrame(burst(9), std::nullopt);
    EXPECT_EQ(last().outcome, Outcome::NotSent);
    EXPECT_EQ(last().expected, 14) << "a frame without an answer of its own awaits the one before";
}

TEST_F(ExchangeTest, WhatComesBehindAnAnsweredRequestHasNothingToDoWithItsPair) {
    link.setRoles({.answerTo = [](auto) { return std::optional(PreparedAnswer{2, {0xAA}}); }});
    link.enterMode(Mode::Simulation);
    port.receive(burst(9));
    clock.advance(150);
    ASSERT_EQ(last().pair, 2U);

    link.enterMode(Mode::MonitorIdle);
    port.receive(burst(5));
    clock.advance(100);
    EXPECT_EQ(last().outcome, Outcome::Ignored);
    EXPECT_EQ(last().pair, std::nullopt);
    link.enterMode(Mode::BitRead);
    port.receiveSilently(burst(2));
    port.hangUp("gone");
    EXPECT_EQ(last().outcome, Outcome::HungUp);
    EXPECT_EQ(last().pair, std::nullopt);
    EXPECT_TRUE(last().request.empty());
}

TEST_F(ExchangeTest, PairIsToldBehindTheAnswerAndBehindWhatWasThrownAwayForIt) {
    link.setRoles({.answerTo = [this](auto) {
        port.receiveSilently(burst(3)); // while the request is looked up
        return std::optional(PreparedAnswer{2, {0xAA}});
    }});
    std::size_t toldBefore = 99;
    port.onWrite([&] { toldBefore = exchanges.size(); });
    link.enterMode(Mode::Simulation);
    port.receive(burst(9));
    clock.advance(150);
    EXPECT_EQ(outcomes(), (Outcomes{Outcome::ThrownAway, Outcome::AnsweredByPair}));
    EXPECT_EQ(exchanges[0].pair, std::nullopt);
    EXPECT_EQ(exchanges[0].dropped, 3U);
    EXPECT_EQ(last().pair, 2U);
    EXPECT_EQ(last().request, burst(9));
    EXPECT_EQ(toldBefore, 1U);
}

TEST_F(ExchangeTest, ClosingEndsTheExchange) {
    send(burst(9), 14);
    port.close();
    link.connectionClosed();
    EXPECT_EQ(outcomes(), (Outcomes{Outcome::Sent, Outcome::Overtaken}));
}

TEST_F(ExchangeTest, UnawaitedBytesLeaveWhatIsAwaitedAlone) {
    send(burst(9), 14);
    const LinkState before = link.state();
    link.sendUnawaited(burst(4));
    EXPECT_EQ(link.state(), before);
    EXPECT_EQ(port.written().back(), burst(4));
    EXPECT_EQ(last().outcome, Outcome::Sent);
    EXPECT_EQ(last().expected, 0);
}

} // namespace
} // namespace varda::test
