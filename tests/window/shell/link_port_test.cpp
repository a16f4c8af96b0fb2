#include "window/shell/link_port.h"

#include "window/shell/link_port_fixture.h"

namespace varda::test {
namespace {

// Settings text

TEST_F(LinkPortTest, StartValuesGive9600n81) { EXPECT_EQ(linkPort.MakeCommSettings(), "9600,n,8,1"); }

TEST_F(LinkPortTest, SettingsTextFollowsTheLists) {
    setLists("38400", "7", "2", "EVEN");
    EXPECT_EQ(linkPort.MakeCommSettings(), "38400,e,7,2");
    setLists("2400", "6", "1", "ODD");
    EXPECT_EQ(linkPort.MakeCommSettings(), "2400,o,6,1");
}

TEST_F(LinkPortTest, EmptyListsAreRepairedBeforeTheyAreRead) {
    setLists("", "", "", "");
    EXPECT_EQ(linkPort.MakeCommSettings(), "9600,n,8,1");
    EXPECT_EQ(form.text("cbBaudRate"), "9600");
    EXPECT_EQ(form.text("cbDataBit"), "8");
    EXPECT_EQ(form.text("cbStopBit"), "1");
    EXPECT_EQ(form.text("cbParityBit"), "NONE");
}

TEST_F(LinkPortTest, EachEmptyListIsRepairedAlone) {
    setLists("38400", "", "2", "EVEN");
    EXPECT_EQ(linkPort.MakeCommSettings(), "38400,e,8,2");
    setLists("", "7", "", "ODD");
    EXPECT_EQ(linkPort.MakeCommSettings(), "9600,o,7,1");
}

TEST_F(LinkPortTest, UnknownParityGivesASettingsTextWithoutParityLetter) {
    for (const char* const parity : {"MARK", "none", "n", " "}) {
        setLists("9600", "8", "1", parity);
        EXPECT_EQ(linkPort.MakeCommSettings(), "9600,8,1") << parity;
        EXPECT_EQ(form.text("cbParityBit"), parity);
    }
}

// Port test

TEST_F(LinkPortTest, PortThatOpensPassesTheTest) {
    testPort("COM3");

    EXPECT_EQ(commTest.commPort(), "COM3");
    EXPECT_FALSE(commTest.isOpen());
    EXPECT_EQ(commPLC.commPort(), "COM3");
    EXPECT_FALSE(commPLC.isOpen());
    EXPECT_TRUE(form.isEnabled("cmdPortOpen"));
    EXPECT_EQ(form.text("cmdPortOpen"), "Open Port");
    EXPECT_TRUE(form.messages().empty());
}

TEST_F(LinkPortTest, PortInUseIsToldAndFailsTheTest) {
    commTest.failOpen(RuntimeError(8005, "/dev/ttyS2 is in use"));
    testPort("COM3");

    EXPECT_EQ(form.messages(),
              (std::vector<Message>{{"Already Using Port !! Please Select Another Port", "Error"}}));
    EXPECT_EQ(commPLC.commPort(), "");
    EXPECT_FALSE(form.isEnabled("cmdPortOpen"));
}

TEST_F(LinkPortTest, PortInUseIsToldWithWhatHelpsWhereThatIsKnown) {
    RuntimeError error(8005, "/dev/pts/7 is in use");
    error.advise("End what made the line.");
    commTest.failOpen(error);
    testPort("/dev/pts/7");

    EXPECT_EQ(form.messages(),
              (std::vector<Message>{{"Already Using Port !! Please Select Another Port", "Error"}}));
    EXPECT_EQ(form.advice(), "End what made the line.");
}

TEST_F(LinkPortTest, OtherErrorOfTheTestIsToldWithNumberAndDescription) {
    for (const int number : {8002, 8012, 8015, 8020, 380}) {
        commTest.failOpen(RuntimeError(number, "It is a directory"));
        testPort("COM3");
        ASSERT_FALSE(form.messages().empty());
        EXPECT_EQ(form.messages().back(), (Message{std::to_string(number) + " It is a directory", "Error"}));
    }
    EXPECT_EQ(form.messages().size(), 5U);
    EXPECT_EQ(commPLC.commPort(), "");
    EXPECT_FALSE(form.isEnabled("cmdPortOpen"));
}

TEST_F(LinkPortTest, TestPortThatStaysClosedWithoutAnErrorIsTold) {
    commTest.stayClosed();
    testPort("COM3");

    EXPECT_EQ(form.messages(), (std::vector<Message>{{"Error !!", "Comm. Port"}}));
    EXPECT_EQ(commPLC.commPort(), "");
    EXPECT_FALSE(form.isEnabled("cmdPortOpen"));
}

TEST_F(LinkPortTest, FailedTestMayBeRepeated) {
    commTest.failOpen(RuntimeError(8005, "in use"));
    testPort("COM3");
    commTest.heal();
    testPort("COM3");
    EXPECT_TRUE(form.isEnabled("cmdPortOpen"));
    EXPECT_EQ(commPLC.commPort(), "COM3");
    EXPECT_EQ(form.messages().size(), 1U);
}

TEST_F(LinkPortTest, PortThatPassedLastIsTheOneThatOpens) {
    testPort("COM3");
    commTest.failOpen(RuntimeError(8002, "no such device"));
    testPort("COM5");
    EXPECT_TRUE(form.isEnabled("cmdPortOpen"));
    form.setText("cbPort", "COM7");

    linkPort.cmdPortOpen_Click();

    EXPECT_TRUE(commPLC.isOpen());
    EXPECT_EQ(commPLC.calls().back(), "open COM3");
}

TEST_F(LinkPortTest, TextThatIsNoComPortIsGivenOnAsItStands) {
    testPort("/dev/serial/by-id/usb-1");
    EXPECT_EQ(commTest.commPort(), "/dev/serial/by-id/usb-1");
    EXPECT_EQ(commPLC.commPort(), "/dev/serial/by-id/usb-1");
}

// Hang-up

class HangUpOfOpenPortTest : public LinkPortTest, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Modes, HangUpOfOpenPortTest,
                         testing::Values(0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x80, 0x81, 0xC0, 0xFF));

TEST_P(HangUpOfOpenPortTest, ClosesAsTheButtonDoesAndSaysWhyOnce) {
    openAs(GetParam());
    form.setEnabled("cmdSimStart", true);

    commPLC.hangUp("/dev/ttyUSB0 went away");

    EXPECT_EQ(form.text("cmdPortOpen"), "Open Port");
    EXPECT_TRUE(allSettings(true));
    EXPECT_FALSE(form.isEnabled("cmdSimStart"));
    EXPECT_FALSE(tmrComm.isRunning());
    EXPECT_FALSE(commPLC.isOpen());
    ASSERT_EQ(form.messages().size(), 1U);
    EXPECT_EQ(form.messages()[0].title, "Error");
    const auto text = form.messages()[0].text;
    const auto space = text.find(' ');
    ASSERT_NE(space, std::string::npos);
    EXPECT_GT(space, 0U);
    EXPECT_TRUE(text.find_first_not_of("0123456789") == space) << text;
    EXPECT_EQ(text.substr(space + 1), "/dev/ttyUSB0 went away");
}

TEST_P(HangUpOfOpenPortTest, NextTestAndOpeningWork) {
    openAs(GetParam());
    commPLC.hangUp("gone");
    testPort("COM4");
    linkPort.cmdPortOpen_Click();
    EXPECT_TRUE(commPLC.isOpen());
    EXPECT_EQ(commPLC.calls().back(), "open COM4");
    EXPECT_EQ(form.text("cmdPortOpen"), "Close Port");
    EXPECT_EQ(form.messages().size(), 1U);
}

TEST_F(LinkPortTest, HangUpStopsWhatRunsBeforeItCloses) {
    openAs(0xC0);
    Texts captions;
    linkPort.setPages({.stopRuns = [&] { captions.push_back(form.text("cmdPortOpen")); }});
    commPLC.hangUp("gone");
    EXPECT_EQ(captions, Texts{"Close Port"});
}

// The stop button of a scenario fails where its period is no number.
TEST_F(LinkPortTest, HangUpClosesAndSaysWhyEvenWhereStoppingFails) {
    openAs(0x21);
    linkPort.setPages({.stopRuns = [] { throw typeMismatch(); }});
    try {
        commPLC.hangUp("gone");
    } catch (const RuntimeError&) { // reported by whoever calls
    }

    EXPECT_EQ(form.text("cmdPortOpen"), "Open Port");
    EXPECT_TRUE(allSettings(true));
    EXPECT_FALSE(tmrComm.isRunning());
    ASSERT_FALSE(form.messages().empty());
    EXPECT_NE(form.messages().back().text.find("gone"), std::string::npos);
}

TEST_F(LinkPortTest, HangUpDuringAWaitLetsTheTimerWorkAfterTheNextOpening) {
    openAs(0x21);
    commPLC.receive({0x01});
    clock.advance(50);
    commPLC.hangUp("gone");
    clock.advance(1000);
    linkPort.cmdPortOpen_Click();
    EXPECT_FALSE(link.state().InReceive);
    link.SendRequest({0x01}, 9);
    link.tmrComm_Timer();
    EXPECT_EQ(form.text("txtWatchDog"), "1");
}

} // namespace
} // namespace varda::test
