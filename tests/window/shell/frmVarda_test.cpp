#include "core/link/routes.h"
#include "support/window_test.h"
#include "window/shell/control_groups.h"
#include "window/shell/page_names.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>
#include <QTest>

#include <array>

namespace varda::test {

using namespace window;
namespace {

constexpr std::array<Mode, 6> commModes = {Mode{0x21}, Mode{0x22}, Mode{0x25},
                                           Mode{0x26}, Mode{0xFF}, Mode{0x80}};

class MainWindowTest : public WindowTest {
protected:
    int shownPage() { return driver.find<QTabWidget>("tabMode")->currentIndex(); }
    std::string option(int index) { return "optMode_" + std::to_string(index); }
    bool isChosen(int index) { return driver.find<QAbstractButton>(option(index).c_str())->isChecked(); }
};

TEST_F(MainWindowTest, StartsOnTheReadPageWithTheStartSettings) {
    EXPECT_EQ(driver.window().windowTitle().toStdString(), "VR-Series PLC Test & Simulator");
    EXPECT_EQ(shownPage(), 0);
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
    EXPECT_EQ(text("cbPort"), "COM1");
    EXPECT_EQ(text("cbBaudRate"), "9600");
    EXPECT_EQ(text("cbDataBit"), "8");
    EXPECT_EQ(text("cbStopBit"), "1");
    EXPECT_EQ(text("cbParityBit"), "NONE");
}

TEST_F(MainWindowTest, StartsWithThreeButtonsDisabled) {
    EXPECT_FALSE(driver.isEnabled("cmdRDSend"));
    EXPECT_FALSE(driver.isEnabled("cmdSimStart"));
    EXPECT_FALSE(driver.isEnabled("cmdPortOpen"));
    EXPECT_TRUE(driver.find("cmdMRDSend")->isEnabledTo(driver.find("tabMode")));
}

TEST_F(MainWindowTest, PortListOffersTwentyPorts) {
    auto* const ports = driver.find<QComboBox>("cbPort");
    ASSERT_EQ(ports->count(), 20);
    EXPECT_EQ(ports->itemText(0).toStdString(), "COM1");
    EXPECT_EQ(ports->itemText(19).toStdString(), "COM20");
    EXPECT_TRUE(ports->isEditable());
}

TEST_F(MainWindowTest, EveryModeSetsItsPageAndCommMode) {
    for (int index = 5; index >= 0; --index) {
        driver.click(option(index).c_str());
        EXPECT_EQ(shownPage(), index);
        EXPECT_TRUE(isChosen(index));
        EXPECT_EQ(driver.link().CommMode, commModes.at(static_cast<std::size_t>(index)));
    }
}

TEST_F(MainWindowTest, ChoosingATabIsChoosingItsMode) {
    for (int index = 5; index >= 0; --index) {
        driver.find<QTabWidget>("tabMode")->setCurrentIndex(index);
        EXPECT_TRUE(isChosen(index));
        EXPECT_EQ(driver.link().CommMode, commModes.at(static_cast<std::size_t>(index)));
    }
}

TEST_F(MainWindowTest, ModeIndexOutOfRangeIsIgnored) {
    driver.window().optMode_Click(6);
    driver.window().optMode_Click(-1);
    EXPECT_EQ(shownPage(), 0);
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
}

TEST_F(MainWindowTest, ChoosingAChosenModeAgainByProgramRunsItAgain) {
    driver.click("optRead_1");
    driver.window().optMode_Click(0);
    EXPECT_TRUE(driver.find<QAbstractButton>("optRead_0")->isChecked());
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
}

TEST_F(MainWindowTest, ReadModeEnablesTheReceiveFieldsOfAllPages) {
    driver.click("optMode_1");
    EXPECT_FALSE(driver.find("txtReceiveMRData")->isEnabledTo(driver.find("tabMode")));
    driver.click("optMode_0");
    for (const char* const field :
         {"txtReceiveRData", "txtReceiveWData", "txtReceiveMRData", "txtReceiveMWData"}) {
        EXPECT_TRUE(driver.find(field)->isEnabledTo(driver.find("tabMode"))) << field;
    }
}

TEST_F(MainWindowTest, WriteModeEnablesTheWatchdogDisplay) {
    EXPECT_FALSE(driver.isEnabled("txtWatchDog"));
    driver.click("optMode_1");
    EXPECT_TRUE(driver.isEnabled("txtWatchDog"));
}

TEST_F(MainWindowTest, CheckBoxesAndGridAreNeverDisabledByTheGroups) {
    for (int index = 0; index < 6; ++index) {
        driver.click(option(index).c_str());
        for (const char* const control : {"chkRTimer", "chkWTimer", "gridWriteData"}) {
            EXPECT_TRUE(driver.find(control)->isEnabledTo(driver.find("tabMode"))) << control << index;
        }
    }
}

TEST_F(MainWindowTest, MixedPagesAreLeftAsTheyWereByEveryMode) {
    for (int index = 0; index < 6; ++index) {
        driver.click(option(index).c_str());
        for (const char* const control :
             {"cbMRegister", "txtMRDDA", "optMRead_0", "cbMWRegister", "txtMWDDA"}) {
            EXPECT_TRUE(driver.find(control)->isEnabledTo(driver.find("tabMode"))) << control << index;
        }
    }
}

TEST_F(MainWindowTest, ModeUnticksItsContinuousBox) {
    driver.find<QCheckBox>("chkRTimer")->setChecked(true);
    driver.window().optMode_Click(0);
    EXPECT_FALSE(driver.find<QCheckBox>("chkRTimer")->isChecked());
}

TEST_F(MainWindowTest, ModeFrameOfTheOtherPageIsDisabled) {
    EXPECT_TRUE(driver.find("Frame2_0")->isEnabledTo(driver.find("tabMode")));
    EXPECT_FALSE(driver.find("Frame2_1")->isEnabledTo(driver.find("tabMode")));
    driver.click("optMode_1");
    EXPECT_FALSE(driver.find("Frame2_0")->isEnabledTo(driver.find("tabMode")));
    EXPECT_TRUE(driver.find("Frame2_1")->isEnabledTo(driver.find("tabMode")));
}

TEST_F(MainWindowTest, ScenarioIsSwitchedByTheMode) {
    EXPECT_TRUE(driver.isEnabled("cmdAddScenario"));
    driver.click("optMode_4");
    for (const char* const button :
         {"cmdAddScenario", "cmdDelScenario", "cmdLoadScenario", "cmdSaveScenario"}) {
        EXPECT_FALSE(driver.isEnabled(button)) << button;
    }
    EXPECT_FALSE(driver.isEnabled("cmdRunScenario"));
    EXPECT_FALSE(driver.isEnabled("cmdStopScenario"));
}

TEST_F(MainWindowTest, RunAndStopFollowTheListAndTheMode) {
    driver.find<QListWidget>("lstSchedule")->addItem(QStringLiteral("01 02 "));
    driver.find("cmdStopScenario")->setEnabled(true);
    driver.click("optMode_1");
    EXPECT_TRUE(driver.isEnabled("cmdRunScenario"));
    EXPECT_FALSE(driver.isEnabled("cmdStopScenario"));
    driver.find<QListWidget>("lstSchedule")->clear();
    driver.click("optMode_2");
    EXPECT_FALSE(driver.isEnabled("cmdRunScenario"));
}

TEST_F(MainWindowTest, BoxTitlesStandAloneOnTheDesktop) {
    EXPECT_EQ(QApplication::applicationDisplayName(), QApplication::applicationName());
}

TEST_F(MainWindowTest, PortTextStaysAsTyped) {
    driver.type("cbPort", "com3");
    QTest::keyClick(driver.find("cbPort"), Qt::Key_Return);
    driver.find("cbBaudRate")->setFocus();
    EXPECT_EQ(text("cbPort"), "com3");
}

TEST_F(MainWindowTest, PortToolTipSaysWhatTheTextStandsFor) {
    EXPECT_TRUE(driver.find("cbPort")->toolTip().contains(QStringLiteral("/dev/ttyS0")));
    driver.type("cbPort", "ttyUSB0");
    EXPECT_TRUE(driver.find("cbPort")->toolTip().contains(QStringLiteral("/dev/ttyUSB0")));
}

TEST_F(MainWindowTest, PortListOffersTheEmbeddedControllerWhileTyping) {
    auto* const completer = driver.find<QComboBox>("cbPort")->lineEdit()->completer();
    ASSERT_NE(completer, nullptr);
    driver.find("cbBaudRate")->setFocus();
    driver.find("cbPort")->setFocus(); // the ports are looked for when the list gets the focus
    completer->setCompletionPrefix(QStringLiteral("virt"));
    EXPECT_EQ(completer->completionCount(), 1);
    EXPECT_EQ(completer->currentCompletion().toStdString(), "VIRTUAL");
}

TEST_F(MainWindowTest, ModeChangeLeavesTheRunningTimersInterval) {
    paste("txtReadTimerValue", "100");
    openLine();
    driver.choose("cbRegister", "M");
    driver.choose("cbRegAddress", "0002");
    driver.choose("cbRegBit", "3");
    driver.choose("cbRLength", "16");
    driver.click("cmdRDSend");
    driver.click("optMode_1");
    EXPECT_TRUE(runUntil([this] { return text("txtWatchDog") == "3"; }, std::chrono::milliseconds(1200)));
}

/// Counts the ticks of timers while it is there; the blinking of a caret is Qt's own.
class Ticks : public QObject {
public:
    Ticks() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool isTimer = watched->inherits("QTimer") || watched->inherits("QSingleShotTimer");
        count_ += event->type() == QEvent::Timer && isTimer ? 1 : 0;
        return false;
    }

    int count() const { return count_; }

private:
    int count_ = 0;
};

TEST_F(MainWindowTest, NoTimerRunsAfterTheStart) {
    const Ticks ticks;
    QTest::qWait(1200); // more than twice the start interval; takes no timer itself
    EXPECT_EQ(ticks.count(), 0);
}

TEST_F(MainWindowTest, EthernetPageSaysThatItIsNotThere) {
    QWidget* const page = driver.find("ethernetPage");
    int controls = 0;
    for (const auto* const field : page->findChildren<QLineEdit*>()) {
        EXPECT_EQ(field->text().toStdString(), "Not implemented, yet.");
        EXPECT_FALSE(field->isEnabled());
        ++controls;
    }
    for (const auto* const button : page->findChildren<QAbstractButton*>()) {
        EXPECT_EQ(button->text().toStdString(), "Not implemented, yet.");
        EXPECT_FALSE(button->isEnabled());
        ++controls;
    }
    EXPECT_GT(controls, 1);
}

TEST_F(MainWindowTest, EveryControlThatTheShellNamesIsThere) {
    for (const PageNames& page : pageNames()) {
        for (const std::string_view name : {page.periodField, page.sendButton, page.enabledByOpening,
                                            page.answer, page.completionStatus, page.silenceStatus}) {
            EXPECT_NO_THROW(driver.find(std::string(name).c_str())) << name;
        }
    }
}

TEST_F(MainWindowTest, FitsTheSmallestScreen) {
    EXPECT_LE(driver.window().minimumSizeHint().width(), 1024);
    EXPECT_LE(driver.window().minimumSizeHint().height(), 720);
}

TEST_F(MainWindowTest, TestedPortOpensAndClosesAgain) {
    driver.type("cbPort", line.path());
    driver.click("cmdCommTest");
    ASSERT_TRUE(driver.isEnabled("cmdPortOpen"));
    driver.click("cmdPortOpen");
    EXPECT_EQ(text("cmdPortOpen"), "Close Port");
    for (const char* const control :
         {"cmdCommTest", "cbPort", "cbBaudRate", "cbDataBit", "cbStopBit", "cbParityBit"}) {
        EXPECT_FALSE(driver.isEnabled(control)) << control;
    }
    EXPECT_TRUE(driver.isEnabled("cmdRDSend"));
    driver.click("cmdPortOpen");
    EXPECT_EQ(text("cmdPortOpen"), "Open Port");
    EXPECT_TRUE(driver.isEnabled("cbPort"));
    EXPECT_FALSE(driver.isEnabled("cmdRDSend"));
    EXPECT_TRUE(driver.isEnabled("txtReadTimerValue"));
}

TEST_F(MainWindowTest, PortThatIsNoneIsToldAndDoesNotOpen) {
    for (const char* const wrong : {"/dev/no-such-port", "/", "/etc/hostname", "/dev/null", ""}) {
        driver.type("cbPort", wrong);
        driver.click("cmdCommTest");
        EXPECT_TRUE(driver.boxText().starts_with("8002 ")) << wrong << driver.boxText();
        EXPECT_EQ(driver.boxTitle(), "Error") << wrong;
        driver.closeBox();
        EXPECT_FALSE(driver.isEnabled("cmdPortOpen")) << wrong;
    }
}

TEST_F(MainWindowTest, PortInUseIsToldByTheTest) {
    openLine();
    WindowDriver second;
    second.type("cbPort", line.path());
    second.click("cmdCommTest");
    EXPECT_EQ(second.boxText(), "Already Using Port !! Please Select Another Port");
    EXPECT_EQ(second.boxTitle(), "Error");
}

TEST_F(MainWindowTest, SettingsThatCannotBeReadLeaveThePortClosed) {
    driver.type("cbPort", line.path());
    driver.click("cmdCommTest");
    driver.type("cbParityBit", "MARK");
    driver.click("cmdPortOpen");
    EXPECT_EQ(driver.boxText(), "380 Invalid property value");
    EXPECT_EQ(driver.boxTitle(), "Error");
    driver.closeBox();
    EXPECT_EQ(text("cmdPortOpen"), "Open Port");
    EXPECT_TRUE(driver.isEnabled("cbPort"));
    EXPECT_FALSE(driver.isEnabled("cmdRDSend"));
}

TEST_F(MainWindowTest, HangUpWhileIdleClosesThePortWithOneBox) {
    openLine();
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_TRUE(driver.boxText().starts_with("8020 "));
    EXPECT_EQ(driver.boxTitle(), "Error");
    EXPECT_EQ(text("cmdPortOpen"), "Open Port");
    driver.closeBox();
    runFor(std::chrono::milliseconds(50));
    EXPECT_EQ(driver.box(), nullptr);
    PseudoTerminal another;
    driver.openPort(another.path());
    EXPECT_EQ(text("cmdPortOpen"), "Close Port");
}

TEST_F(MainWindowTest, HangUpWhileWaitingForAnAnswerLetsTheTimerRunAgain) {
    driver.choose("cbRegister", "R");
    driver.choose("cbRegAddress", "0000");
    driver.choose("cbRegBit", "0");
    driver.choose("cbRLength", "8");
    openLine();
    driver.click("cmdRDSend");
    line.write(Bytes(3, 0x11));
    runUntil([this] { return driver.link().InReceive; });
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_FALSE(driver.link().InReceive);
    EXPECT_EQ(text("cmdPortOpen"), "Open Port");
}

TEST_F(MainWindowTest, HangUpDuringContinuousSendingClosesThePort) {
    driver.choose("cbRegister", "R");
    driver.choose("cbRegAddress", "0000");
    driver.choose("cbRegBit", "0");
    driver.choose("cbRLength", "8");
    paste("txtReadTimerValue", "100");
    openLine();
    driver.click("chkRTimer");
    sent(9);
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_EQ(text("cmdPortOpen"), "Open Port");
}

TEST_F(MainWindowTest, ClosingTheWindowClosesThePort) {
    openLine();
    driver.window().close();
    WindowDriver second;
    second.openPort(line.path());
    EXPECT_EQ(second.text("cmdPortOpen"), "Close Port");
}

TEST_F(MainWindowTest, EndClosesTheWindowAndThePort) {
    openLine();
    driver.click("cmdEnd");
    EXPECT_FALSE(driver.window().isVisible());
    WindowDriver second;
    second.openPort(line.path());
    EXPECT_EQ(second.text("cmdPortOpen"), "Close Port");
}

TEST_F(MainWindowTest, MixedReadModeEnablesItsSendButtonOnlyWhileThePortIsOpen) {
    driver.find("cmdMRDSend")->setEnabled(false);
    driver.click("optMode_2");
    EXPECT_FALSE(driver.isEnabled("cmdMRDSend"));
    driver.click("optMode_0");
    openLine();
    driver.find("cmdMRDSend")->setEnabled(false);
    driver.click("optMode_2");
    EXPECT_TRUE(driver.isEnabled("cmdMRDSend"));
}

TEST_F(MainWindowTest, OpeningOnTheMixedReadPageEnablesTheReadPagesButton) {
    driver.click("optMode_2");
    driver.find("cmdMRDSend")->setEnabled(false);
    openLine();
    EXPECT_FALSE(driver.isEnabled("cmdMRDSend"));
    EXPECT_TRUE(driver.find("cmdRDSend")->isEnabledTo(driver.find("tabMode")));
}

} // namespace
} // namespace varda::test
