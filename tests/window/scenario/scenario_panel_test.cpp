#include "window/scenario/scenario_panel_fixture.h"

#include <QCheckBox>

namespace varda::test {
namespace {

TEST_F(ScenarioPanelTest, AddTakesTheRequestOfTheShownPage) {
    driver.click("cmdAddScenario");
    ASSERT_EQ(schedule()->count(), 1);
    EXPECT_EQ(schedule()->item(0)->text().toStdString(), text("txtSendRData"));
    EXPECT_EQ(text("txtNumberOfScenario"), "1");
    EXPECT_TRUE(driver.isEnabled("cmdRunScenario"));
    driver.click("optMode_1");
    driver.click("cmdAddScenario");
    EXPECT_EQ(schedule()->item(1)->text().toStdString(), text("txtSendWData"));
    driver.click("optMode_2");
    driver.click("cmdAddScenario");
    EXPECT_EQ(schedule()->count(), 2); // nothing has been built on that page yet
}

TEST_F(ScenarioPanelTest, NumberOfLinesStartsWithZero) { EXPECT_EQ(text("txtNumberOfScenario"), "0"); }

TEST_F(ScenarioPanelTest, AddOfAnEmptyRequestStillSetsDelTheCountAndRun) {
    driver.click("optMode_2"); // nothing has been built on that page yet
    driver.find("cmdDelScenario")->setEnabled(false);
    paste("txtNumberOfScenario", "9");
    driver.click("cmdAddScenario");
    EXPECT_TRUE(driver.isEnabled("cmdDelScenario"));
    EXPECT_EQ(text("txtNumberOfScenario"), "0");
    EXPECT_FALSE(driver.isEnabled("cmdRunScenario"));
    schedule()->addItem(QString::fromLatin1(bitRead));
    driver.click("cmdAddScenario");
    EXPECT_EQ(text("txtNumberOfScenario"), "1");
    EXPECT_TRUE(driver.isEnabled("cmdRunScenario"));
}

TEST_F(ScenarioPanelTest, RepeatedDeletesEmptyTheList) {
    addLines({bitRead, wordRead});
    schedule()->setCurrentRow(0);
    driver.click("cmdDelScenario");
    EXPECT_EQ(selected(), 0);
    driver.click("cmdDelScenario");
    EXPECT_EQ(schedule()->count(), 0);
    EXPECT_FALSE(driver.isEnabled("cmdDelScenario"));
    EXPECT_FALSE(driver.isEnabled("cmdRunScenario"));
    EXPECT_EQ(text("txtNumberOfScenario"), "0");
}

TEST_F(ScenarioPanelTest, RunNeedsAnOpenPort) {
    addLines({bitRead});
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.boxText(), "Please Port Open !!");
    EXPECT_EQ(driver.boxTitle(), "Warning");
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
}

TEST_F(ScenarioPanelTest, RunWaitsForTheReadAndTheWritePageAlone) {
    addLines({bitRead});
    openLine();
    driver.find<QCheckBox>("chkMRTimer")->setChecked(true);
    driver.find<QCheckBox>("chkWTimer")->setChecked(true);
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.boxText(), "Currently, Program is communicating with PLC. Please turn off Check Box !!");
    driver.closeBox();
    driver.find<QCheckBox>("chkWTimer")->setChecked(false);
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0xC0});
    EXPECT_FALSE(driver.find<QCheckBox>("chkMRTimer")->isChecked());
}

TEST_F(ScenarioPanelTest, LinesGoRoundWithTheSelectionOneAhead) {
    addLines({"01 FF 22 01", "02 FF 22 02", "03 FF 22 03"});
    paste("txtScnPeriod", "20");
    openLine();
    driver.click("cmdRunScenario");
    EXPECT_EQ(masterControlsOn(), 0);
    EXPECT_TRUE(driver.isEnabled("cmdStopScenario"));
    EXPECT_EQ(selected(), 0);
    const Bytes bytes = sent(20);
    driver.click("cmdStopScenario");
    ASSERT_GE(bytes.size(), 20U);
    for (std::size_t frame = 0; frame < 5; ++frame) {
        EXPECT_EQ(bytes[4 * frame], frame % 3 + 1);
    }
    const int shown = std::stoi(text("txtScnSend").substr(0, 2));
    EXPECT_EQ(selected(), shown % 3);
}

TEST_F(ScenarioPanelTest, StopSwitchesEverythingBack) {
    addLines({bitRead});
    openLine();
    driver.click("optRead_1");
    driver.click("cmdRunScenario");
    driver.click("cmdStopScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0x23});
    EXPECT_TRUE(driver.isEnabled("tabMode"));
    EXPECT_EQ(masterControlsOn(), 13);
    EXPECT_TRUE(driver.isEnabled("cmdRunScenario"));
    EXPECT_FALSE(driver.isEnabled("cmdStopScenario"));
}

TEST_F(ScenarioPanelTest, AnswerIsShownInThePanel) {
    addLines({"FF FF 24 03 00 02 02 45 22"});
    paste("txtScnPeriod", "400");
    openLine();
    driver.click("cmdRunScenario");
    sent(9);
    line.write({1, 2, 3, 4, 5, 6, 7});
    EXPECT_TRUE(showsSoon("txtScnReceive", "01 02 03 04 05 06 07 "));
    EXPECT_EQ(driver.link().RxExpected, 7);
}

TEST_F(ScenarioPanelTest, MixedLineWaitsForWhatTheLineBeforeItExpected) {
    addLines({bitRead, "FF FF 25 02 00 42 00 00 00"});
    paste("txtScnPeriod", "20");
    openLine();
    driver.click("cmdRunScenario");
    sent(18);
    EXPECT_EQ(driver.link().RxExpected, 10);
}

TEST_F(ScenarioPanelTest, SilenceStopsTheRunAndIsToldOnTheWritePage) {
    addLines({bitRead});
    paste("txtReadTimerValue", "100");
    openLine();
    driver.click("cmdRunScenario");
    EXPECT_TRUE(showsSoon("txtWStatus", "No Answer From PLC"));
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
    EXPECT_FALSE(driver.isEnabled("cmdStopScenario"));
}

TEST_F(ScenarioPanelTest, RunStartsFromNoSilenceAndNothingAwaited) {
    addLines({bitRead});
    paste("txtScnPeriod", "0"); // sends nothing
    paste("txtReadTimerValue", "50");
    openLine();
    driver.choose("cbRegister", "M");
    driver.choose("cbRegAddress", "0002");
    driver.choose("cbRegBit", "3");
    driver.choose("cbRLength", "16");
    driver.click("cmdRDSend"); // which nobody answers
    ASSERT_TRUE(runUntil([this] { return driver.link().WaitTicks > 2; }));
    ASSERT_TRUE(driver.link().WaitingAnswer);
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.link().WaitTicks, 0);
    EXPECT_FALSE(driver.link().WaitingAnswer);
}

TEST_F(ScenarioPanelTest, PeriodThatIsNoNumberIsReportedWithEverythingSwitchedBack) {
    addLines({bitRead});
    paste("txtScnPeriod", "soon");
    openLine();
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
    EXPECT_TRUE(driver.isEnabled("tabMode"));
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
}

TEST_F(ScenarioPanelTest, NegativePeriodIsReported) {
    addLines({bitRead});
    paste("txtScnPeriod", "-1");
    openLine();
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.boxText(), "Run-time error '380':\n\nInvalid property value");
    EXPECT_TRUE(driver.isEnabled("tabMode"));
}

TEST_F(ScenarioPanelTest, PeriodOfZeroSendsNothingUntilStop) {
    addLines({bitRead});
    paste("txtScnPeriod", "0");
    openLine();
    driver.click("cmdRunScenario");
    runFor(std::chrono::milliseconds(100));
    EXPECT_TRUE(line.readAvailable().empty());
    EXPECT_EQ(driver.link().CommMode, Mode{0xC0});
    driver.click("cmdStopScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
}

TEST_F(ScenarioPanelTest, StopAlwaysStopsAlsoWithABadPeriod) {
    addLines({bitRead});
    openLine();
    driver.click("cmdRunScenario");
    paste("txtScnPeriod", "abc");
    driver.click("cmdStopScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
    EXPECT_TRUE(driver.isEnabled("tabMode"));
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
}

TEST_F(ScenarioPanelTest, LineThatIsNoFrameStopsTheRunWithOneReport) {
    for (const char* const wrong : {"hello world", "01 02", "zz zz zz zz zz zz zz"}) {
        schedule()->clear();
        addLines({wrong});
        paste("txtScnPeriod", "10");
        if (text("cmdPortOpen") == "Open Port") {
            openLine();
        }
        driver.click("cmdRunScenario");
        ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; })) << wrong;
        EXPECT_TRUE(driver.boxText().starts_with("Run-time error")) << wrong;
        EXPECT_TRUE(driver.isEnabled("tabMode")) << wrong;
        driver.closeBox();
        runFor(std::chrono::milliseconds(30));
        EXPECT_EQ(driver.box(), nullptr) << wrong;
    }
}

TEST_F(ScenarioPanelTest, EditingStaysOffBehindARunOnTheSimulationPage) {
    addLines({bitRead});
    openLine();
    driver.click("optMode_4");
    driver.click("cmdRunScenario");
    driver.click("cmdStopScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0xFF});
    EXPECT_FALSE(driver.isEnabled("cmdAddScenario"));
    EXPECT_FALSE(driver.isEnabled("cmdLoadScenario"));
}

TEST_F(ScenarioPanelTest, RunEndsMonitoringFirst) {
    addLines({bitRead});
    openLine();
    driver.click("optMode_5");
    driver.click("cmdMonStart");
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0xC0});
    EXPECT_TRUE(driver.find("chkMonLog")->isEnabledTo(driver.find("tabMode")));
    driver.click("cmdStopScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0x80});
}

TEST_F(ScenarioPanelTest, ModeClickLetsTheSendingGoOn) {
    addLines({"01 FF 22 01"});
    paste("txtScnPeriod", "20");
    openLine();
    driver.click("cmdRunScenario");
    sent(4);
    driver.click("optMode_1");
    EXPECT_EQ(driver.link().CommMode, Mode{0x22});
    EXPECT_GE(sent(8).size(), 8U);
}

TEST_F(ScenarioPanelTest, HangUpStopsTheRun) {
    addLines({bitRead});
    openLine();
    driver.click("cmdRunScenario");
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_TRUE(driver.isEnabled("tabMode"));
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
    EXPECT_EQ(text("cmdPortOpen"), "Open Port");
}

} // namespace
} // namespace varda::test
