#include "window/shell/link_port.h"

#include "window/shell/link_port_fixture.h"

namespace varda::test {
namespace {

// Opening

struct Opening {
    std::string name;
    int mode;
    std::string periodField;
    std::string enabled;  ///< the send button that opening enables
    std::string disabled; ///< the send button that closing disables
};

std::ostream& operator<<(std::ostream& out, const Opening& opening) { return out << opening.name; }

std::vector<Opening> masterOpenings() {
    return {{"ReadBit", 0x21, "txtReadTimerValue", "cmdRDSend", "cmdRDSend"},
            {"ReadWord", 0x23, "txtReadTimerValue", "cmdRDSend", "cmdRDSend"},
            {"WriteBit", 0x22, "txtWriteTimerValue", "cmdWDSend", "cmdWDSend"},
            {"WriteWord", 0x24, "txtWriteTimerValue", "cmdWDSend", "cmdWDSend"},
            {"MixedRead", 0x25, "txtMReadTimerValue", "cmdRDSend", "cmdMRDSend"},
            {"MixedWrite", 0x26, "txtMWriteTimerValue", "cmdMWDSend", "cmdMWDSend"}};
}

class MasterOpeningTest : public LinkPortTest, public testing::WithParamInterface<Opening> {};

INSTANTIATE_TEST_SUITE_P(Modes, MasterOpeningTest, testing::ValuesIn(masterOpenings()), PageName());

// Opening on the mixed read page enables the read page's send button, not its own.
TEST_P(MasterOpeningTest, SwitchesThePeriodFieldAndOneSendButton) {
    openAs(GetParam().mode);

    EXPECT_FALSE(form.isEnabled(GetParam().periodField));
    EXPECT_TRUE(form.isEnabled(GetParam().enabled));
    EXPECT_EQ(enabledMasterControls().size(), 4U) << "another control was switched as well";
    EXPECT_TRUE(allSettings(false));
    EXPECT_EQ(form.text("cmdPortOpen"), "Close Port");
    EXPECT_TRUE(form.isEnabled("cmdPortOpen"));
    EXPECT_TRUE(form.messages().empty());
}

TEST_P(MasterOpeningTest, StartsTheTimerAtThePeriodOfThePage) {
    form.setText(GetParam().periodField, "1250");
    openAs(GetParam().mode);
    EXPECT_EQ(tmrComm.interval(), 1250);
    EXPECT_TRUE(tmrComm.isRunning());
}

TEST_P(MasterOpeningTest, ReappliesTheStationsOnTheReadPageOnly) {
    openAs(GetParam().mode);
    const bool isReadPage = GetParam().mode == 0x21 || GetParam().mode == 0x23;
    EXPECT_EQ(stationsTaken, isReadPage ? 1 : 0);
}

TEST_P(MasterOpeningTest, ClosingSwitchesThePeriodFieldAndTheOwnSendButtonBack) {
    openAs(GetParam().mode);
    for (const auto& page : masterPages()) {
        form.setEnabled(page.sendButton, true);
    }
    form.setEnabled("cmdSimStart", true);

    linkPort.cmdPortOpen_Click();

    EXPECT_TRUE(form.isEnabled(GetParam().periodField));
    EXPECT_FALSE(form.isEnabled(GetParam().disabled));
    EXPECT_EQ(enabledMasterControls().size(), 7U) << "another control was switched as well";
    EXPECT_FALSE(form.isEnabled("cmdSimStart"));
    EXPECT_TRUE(allSettings(true));
    EXPECT_EQ(form.text("cmdPortOpen"), "Open Port");
    EXPECT_TRUE(form.isEnabled("cmdPortOpen"));
    EXPECT_FALSE(commPLC.isOpen());
    EXPECT_FALSE(tmrComm.isRunning());
}

TEST_F(LinkPortTest, OpeningOnTheMixedReadPageDoesNotEnableItsOwnSendButton) {
    openAs(0x25);
    EXPECT_FALSE(form.isEnabled("cmdMRDSend"));
    EXPECT_TRUE(form.isEnabled("cmdRDSend"));
}

TEST_F(LinkPortTest, ClosingOnTheMixedReadPageLeavesTheReadSendButtonEnabled) {
    openAs(0x25);
    linkPort.cmdPortOpen_Click();
    EXPECT_TRUE(form.isEnabled("cmdRDSend"));
    EXPECT_FALSE(form.isEnabled("cmdMRDSend"));
}

class OtherOpeningTest : public LinkPortTest, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Modes, OtherOpeningTest, testing::Values(0x80, 0x81, 0xC0, 0xFF));

TEST_P(OtherOpeningTest, OnlyStartsTheTimerAtTheIntervalItHas) {
    tmrComm.setInterval(700);
    const auto before = enabledMasterControls();
    openAs(GetParam());

    EXPECT_EQ(enabledMasterControls(), before);
    EXPECT_TRUE(allSettings(false));
    EXPECT_TRUE(tmrComm.isRunning());
    EXPECT_EQ(tmrComm.interval(), 700);
    EXPECT_EQ(stationsTaken, 0);
    EXPECT_EQ(form.text("cmdPortOpen"), "Close Port");
}

TEST_P(OtherOpeningTest, ClosingStopsTheTimerAndDisablesSimStart) {
    const auto before = enabledMasterControls();
    openAs(GetParam());
    linkPort.cmdPortOpen_Click();

    EXPECT_EQ(enabledMasterControls(), before);
    EXPECT_TRUE(allSettings(true));
    EXPECT_FALSE(form.isEnabled("cmdSimStart"));
    EXPECT_FALSE(tmrComm.isRunning());
    EXPECT_FALSE(commPLC.isOpen());
    EXPECT_EQ(form.text("cmdPortOpen"), "Open Port");
}

TEST_F(LinkPortTest, SettingsAreGivenBeforeThePortIsOpened) {
    setLists("19200", "7", "2", "ODD");
    openAs(0x21);
    EXPECT_EQ(commPLC.calls(), (Texts{"settings 19200,o,7,2", "open COM3"}));
}

TEST_F(LinkPortTest, ClosingFollowsThePageShownThen) {
    openAs(0x21);
    form.setEnabled("cmdWDSend", true);
    form.setEnabled("txtWriteTimerValue", false);
    setMode(0x24);
    linkPort.cmdPortOpen_Click();

    EXPECT_TRUE(form.isEnabled("txtWriteTimerValue"));
    EXPECT_FALSE(form.isEnabled("cmdWDSend"));
    EXPECT_FALSE(form.isEnabled("txtReadTimerValue"));
    EXPECT_TRUE(form.isEnabled("cmdRDSend"));
}

TEST_F(LinkPortTest, PortOpensAgainAfterClosing) {
    openAs(0x21);
    linkPort.cmdPortOpen_Click();
    linkPort.cmdPortOpen_Click();
    EXPECT_TRUE(commPLC.isOpen());
    EXPECT_EQ(form.text("cmdPortOpen"), "Close Port");
    EXPECT_TRUE(tmrComm.isRunning());
}

// Failed opening

class FailedOpeningTest : public LinkPortTest, public testing::WithParamInterface<int> {
protected:
    /// Everything that opening may have altered.
    struct Look {
        std::string caption;
        bool settingsEnabled;
        Texts masterControls;
        bool simStart;
        int interval;
        bool timerRuns;
        bool operator==(const Look&) const = default;
    };
    Look look() const {
        return {form.text("cmdPortOpen"),      allSettings(true),  enabledMasterControls(),
                form.isEnabled("cmdSimStart"), tmrComm.interval(), tmrComm.isRunning()};
    }
    void expectPutBack() {
        setMode(GetParam());
        testPort("COM3");
        form.setEnabled("cmdMRDSend", true);
        const auto before = look();

        EXPECT_NO_THROW(linkPort.cmdPortOpen_Click());

        const auto after = look();
        EXPECT_EQ(after.caption, before.caption);
        EXPECT_EQ(after.settingsEnabled, before.settingsEnabled);
        EXPECT_EQ(after.masterControls, before.masterControls);
        EXPECT_EQ(after.simStart, before.simStart);
        EXPECT_EQ(after.interval, before.interval);
        EXPECT_EQ(after.timerRuns, before.timerRuns);
        EXPECT_FALSE(commPLC.isOpen());
        EXPECT_TRUE(form.isEnabled("cmdPortOpen"));
        EXPECT_EQ(form.messages().size(), 1U);
    }
};

INSTANTIATE_TEST_SUITE_P(Modes, FailedOpeningTest,
                         testing::Values(0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x80, 0x81, 0xC0, 0xFF));

TEST_P(FailedOpeningTest, PutsEverythingBackAndShowsOneMessage) {
    commPLC.failOpen(RuntimeError(8015, "cannot be set up"));
    expectPutBack();
    EXPECT_EQ(form.messages(), (std::vector<Message>{{"8015 cannot be set up", "Error"}}));
}

TEST_P(FailedOpeningTest, PutsTheTimerBackAsItWas) {
    commPLC.failOpen(RuntimeError(8015, "cannot be set up"));
    tmrComm.setInterval(300);
    tmrComm.start();
    expectPutBack();
}

TEST_P(FailedOpeningTest, PortTakenByAnotherProgramSinceTheTestIsOneMessageToo) {
    commPLC.failOpen(RuntimeError(8005, "in use"));
    expectPutBack();
    ASSERT_FALSE(form.messages().empty());
    EXPECT_EQ(form.messages().back().title, "Error");
}

TEST_P(FailedOpeningTest, SettingsTextThatIsNotUnderstoodFailsTheOpening) {
    form.setText("cbParityBit", "MARK");
    expectPutBack();
    EXPECT_EQ(form.messages(), (std::vector<Message>{{"380 Invalid property value", "Error"}}));
}

TEST_F(LinkPortTest, LineThatGoesAwayWhileItIsOpenedLeavesThePortClosed) {
    setMode(0x21);
    testPort("COM3");
    commPLC.stayClosed();
    linkPort.cmdPortOpen_Click();
    EXPECT_FALSE(commPLC.isOpen());
    EXPECT_EQ(form.text("cmdPortOpen"), "Open Port");
    EXPECT_TRUE(allSettings(true));
    EXPECT_FALSE(form.isEnabled("cmdRDSend"));
    EXPECT_FALSE(tmrComm.isRunning());
    EXPECT_EQ(stationsTaken, 0);
    EXPECT_EQ(form.messages().size(), 1U);
}

TEST_F(LinkPortTest, OpeningSucceedsAfterAFailedOne) {
    setMode(0x21);
    testPort("COM3");
    commPLC.failOpen(RuntimeError(8005, "in use"));
    linkPort.cmdPortOpen_Click();
    commPLC.heal();
    linkPort.cmdPortOpen_Click();
    EXPECT_TRUE(commPLC.isOpen());
    EXPECT_TRUE(tmrComm.isRunning());
    EXPECT_EQ(form.text("cmdPortOpen"), "Close Port");
    EXPECT_EQ(form.messages().size(), 1U);
}

} // namespace
} // namespace varda::test
