#include "window/shell/link_port.h"

#include "window/shell/link_port_fixture.h"

namespace varda::test {
namespace {

class LinkPortAttachingTest : public LinkPortTest {
protected:
    LinkPortAttachingTest() {
        linkPort.setPages({.stopRuns = [] {},
                           .takeReadStations = [] {},
                           .showPort = [this] { shown.push_back(commPLC.isOpen()); },
                           .tell = [this](const std::string& notice) { told.push_back(notice); },
                           .offerAfterHangUp = [this] { return offer; }});
    }

    std::optional<window::Form::Tick> offer;
    std::vector<std::string> told;
    std::vector<bool> shown; ///< whether the port was open, each time that it was to be shown
};

TEST_F(LinkPortAttachingTest, OpensAsTheButtonsDo) {
    setMode(0x21);
    EXPECT_TRUE(linkPort.attach("/dev/ttyUSB1"));
    EXPECT_TRUE(commPLC.isOpen());
    EXPECT_EQ(commPLC.commPort(), "/dev/ttyUSB1");
    EXPECT_EQ(form.text("cmdPortOpen"), "Close Port");
    EXPECT_TRUE(allSettings(false));
    EXPECT_TRUE(tmrComm.isRunning());
    EXPECT_EQ(commTest.calls().back(), "close");
    EXPECT_EQ(form.text("cbPort"), "COM1") << "the field keeps its text";
}

TEST_F(LinkPortAttachingTest, SaysNothingWhereTheDeviceIsNotReady) {
    commTest.failOpen({8002, "no permission"});
    EXPECT_FALSE(linkPort.attach("/dev/ttyUSB1"));
    commTest.heal();
    commTest.stayClosed();
    EXPECT_FALSE(linkPort.attach("/dev/ttyUSB1"));
    EXPECT_TRUE(form.messages().empty());
    EXPECT_FALSE(commPLC.isOpen());
    EXPECT_NE(commPLC.commPort(), "/dev/ttyUSB1");
    EXPECT_EQ(form.text("cmdPortOpen"), "Open Port");
}

TEST_F(LinkPortAttachingTest, TellsWhereItCannotBeOpenedAllTheSame) {
    commPLC.failOpen({8015, "cannot be set up"});
    EXPECT_TRUE(linkPort.attach("/dev/ttyUSB1"));
    EXPECT_EQ(form.messages(), (std::vector<Message>{{"8015 cannot be set up", "Error"}}));
    EXPECT_EQ(shown, std::vector<bool>{false}) << "nothing is waited for any more";
}

TEST_F(LinkPortAttachingTest, TellsWhatTheTestComesUpon) {
    commTest.comeUpon("A lock was taken over.");
    EXPECT_TRUE(linkPort.attach("/dev/ttyUSB1"));
    EXPECT_EQ(told, std::vector<std::string>{"A lock was taken over."});
}

TEST_F(LinkPortAttachingTest, TellsNothingNewWhereTheDeviceIsNotReady) {
    commTest.failOpen({8002, "no permission"});
    EXPECT_FALSE(linkPort.attach("/dev/ttyUSB1"));
    EXPECT_TRUE(told.empty()) << "it is tried every half second";
}

TEST_F(LinkPortAttachingTest, TellsWhatTestAndOpenPortComeUpon) {
    commTest.comeUpon("A lock was taken over.");
    testPort("COM3");
    linkPort.cmdPortOpen_Click();
    linkPort.cmdPortOpen_Click();
    EXPECT_EQ(told, std::vector<std::string>{"A lock was taken over."}) << "opening came upon nothing";
    commPLC.comeUpon("Another lock was taken over.");
    linkPort.cmdPortOpen_Click();
    EXPECT_EQ(told.back(), "Another lock was taken over.");
    linkPort.cmdPortOpen_Click();
    commTest.comeUpon({});
    testPort("COM3");
    EXPECT_EQ(told.back(), "");
    commTest.failOpen({8002, "no such device"});
    testPort("COM4");
    EXPECT_EQ(told.back(), "");
}

TEST_F(LinkPortAttachingTest, PortIsShownWheneverItChanges) {
    testPort("COM3");
    linkPort.cmdPortOpen_Click();
    linkPort.cmdPortOpen_Click();
    EXPECT_EQ(shown, (std::vector<bool>{false, true, false}));
}

TEST_F(LinkPortAttachingTest, FailedTestChangesNothing) {
    commTest.failOpen({8002, "no such device"});
    testPort("COM3");
    EXPECT_TRUE(shown.empty());
}

TEST_F(LinkPortAttachingTest, BoxOfAHangUpMayOfferSomethingToTick) {
    openAs(0x21);
    offer = window::Form::Tick{"Attach again", true, [](bool) {}};
    commPLC.hangUp("gone");
    EXPECT_EQ(form.messages(), (std::vector<Message>{{"8020 gone", "Error"}}));
    ASSERT_EQ(form.offers().size(), 1U);
    EXPECT_EQ(form.offers()[0].caption, "Attach again");
    EXPECT_TRUE(form.offers()[0].isTicked);
}

TEST_F(LinkPortAttachingTest, BoxOfAHangUpOffersNothingOtherwise) {
    openAs(0x21);
    commPLC.hangUp("gone");
    EXPECT_EQ(form.messages(), (std::vector<Message>{{"8020 gone", "Error"}}));
    EXPECT_TRUE(form.offers().empty());
}

} // namespace
} // namespace varda::test
