#include "core/link/serial_link.h"

#include "core/link/serial_link_fixture.h"

#include <vector>

namespace varda::test {
namespace {

// What a mode that is entered does to what the link was at

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

/// The timer stands still until a later reception ends, in whatever mode.
TEST_F(RolesTest, UnknownRequestHoldsTheTimerBeyondTheSimulation) {
    requestIsKnown = false;
    link.enterMode(Mode::Simulation);
    port.receive(burst(9));
    clock.advance(300);
    link.enterMode(Mode{0x21});
    EXPECT_TRUE(state.InReceive);
    awaitAnswer(0x21, 9);
    tick(30);
    EXPECT_EQ(state.WaitTicks, 0);
    EXPECT_TRUE(form.told("txtRStatus").empty());
    port.receive(burst(9));
    clock.advance(100);
    EXPECT_FALSE(state.InReceive);
    EXPECT_EQ(form.text("txtRStatus"), "Data Receive OK !!");
}

TEST_F(RolesTest, RequestThatIsNotAnsweredLeavesTheTimerAsTheOneBeforeItDid) {
    requestIsKnown = false;
    link.enterMode(Mode::Simulation);
    port.receive(burst(9));
    clock.advance(300);
    port.receive(burst(9));
    clock.advance(149);
    link.enterMode(Mode::MonitorIdle);
    EXPECT_TRUE(state.InReceive);
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

TEST_F(RolesTest, ReceptionOfAClosedConnectionHoldsTheTimerBeyondTheSimulationToo) {
    link.enterMode(Mode{0x21});
    port.receive(burst(4));
    port.close();
    link.enterMode(Mode::Simulation);
    link.enterMode(Mode{0x21});
    EXPECT_TRUE(state.InReceive);
    clock.advance(100);
    EXPECT_TRUE(state.InReceive);
    EXPECT_EQ(clock.pending(), 0U);
}

TEST_F(RolesTest, RequestOfAClosedConnectionHoldsTheTimerBeyondTheSimulationToo) {
    link.enterMode(Mode::Simulation);
    port.receive(burst(9));
    clock.advance(149);
    port.close();
    link.enterMode(Mode{0x21});
    clock.advance(1000);
    EXPECT_TRUE(state.InReceive);
    EXPECT_TRUE(requests.empty());
    EXPECT_EQ(clock.pending(), 0U);
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
