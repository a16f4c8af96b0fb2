#include "support/resting.h"
#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QListWidget>

#include <array>

namespace varda::test {
namespace {

enum class State {
    Idle,
    Waiting,
    Sending,
    Continuous,
    Scenario,
    Simulation,
    SettlingRequest,
    MonitorWithLog,
    DialogOpen,
};

class HangUpTest : public WindowTest, public testing::WithParamInterface<State> {
protected:
    HangUpTest() { chooseBits(); }

    void chooseBits() {
        driver.click("optMode_0");
        driver.choose("cbRegister", "R");
        driver.choose("cbRegAddress", "0000");
        driver.choose("cbRegBit", "0");
        driver.choose("cbRLength", "8");
    }

    void runScenario(const QString& frame) {
        driver.find<QListWidget>("lstSchedule")->addItem(frame);
        driver.find("cmdRunScenario")->setEnabled(true);
        paste("txtScnPeriod", "20");
        driver.click("cmdRunScenario");
    }

    void monitorWithLog() {
        driver.click("optMode_5");
        driver.find<QCheckBox>("chkMonLog")->setChecked(true);
        paste("txtMonLogFile", folder.file("line.log"));
        openLine();
        driver.click("cmdMonStart");
        line.write({1, 2, 3});
    }

    void bringAbout(State state) {
        switch (state) {
        case State::Idle:
            return openLine();
        case State::Waiting:
            openLine();
            driver.click("cmdRDSend");
            sent(9);
            line.write({1, 2, 3});
            return;
        case State::Sending: // more than the driver takes
            openLine();
            runScenario(QStringLiteral("FF ").repeated(500));
            ASSERT_TRUE(runUntil([this] { return !driver.text("txtScnSend").empty(); }));
            return;
        case State::Continuous:
            paste("txtReadTimerValue", "100");
            openLine();
            driver.click("chkRTimer");
            sent(9);
            return;
        case State::Scenario:
            openLine();
            runScenario(QStringLiteral("FF FF 21 03 00 00 08 BD 85"));
            sent(18);
            return;
        case State::Simulation:
            driver.click("optMode_4");
            return openLine();
        case State::SettlingRequest:
            driver.click("optMode_4");
            openLine();
            line.write({1, 2, 3});
            ASSERT_TRUE(runUntil([this] { return driver.link().InReceive; }));
            return;
        case State::MonitorWithLog:
            return monitorWithLog();
        case State::DialogOpen:
            openLine();
            driver.click("cmdLoadScenario");
            ASSERT_NE(driver.window().findChild<QFileDialog*>(), nullptr);
            return;
        }
    }

    void closeDialog() {
        for (auto* const dialog : driver.window().findChildren<QFileDialog*>()) {
            dialog->reject();
        }
    }

    TemporaryFolder folder;
};

TEST_P(HangUpTest, IsOneEventAndOneBoxAndSendingGoesOnAfterwards) {
    bringAbout(GetParam());
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_TRUE(driver.boxText().starts_with("8020 " + line.path() + " went away")) << driver.boxText();
    EXPECT_EQ(text("cmdPortOpen"), "Open Port");
    driver.closeBox();
    closeDialog();
    runFor(std::chrono::milliseconds(100)); // what is left to paint
    EXPECT_TRUE(restsFor([](std::chrono::seconds time) { runFor(time); }));
    EXPECT_EQ(driver.box(), nullptr);

    const PseudoTerminal next;
    chooseBits();
    driver.openPort(next.path());
    ASSERT_EQ(text("cmdPortOpen"), "Close Port");
    driver.find<QCheckBox>("chkRTimer")->setChecked(false);
    driver.click("cmdRDSend");
    EXPECT_EQ(next.read(9).size(), 9U);
}

using LastAnswerTest = WindowTest;

TEST_F(LastAnswerTest, ThatCameBeforeTheHangUpIsShownBeforeTheBox) {
    openLine();
    driver.choose("cbRegister", "M");
    driver.choose("cbRegAddress", "0002");
    driver.choose("cbRegBit", "3");
    driver.choose("cbRLength", "1");
    driver.click("cmdRDSend");
    sent(9);
    line.write({0xFF, 0xFF, 0xA1, 0x01, 0xFF, 0x10, 0x32});
    ASSERT_TRUE(runUntil([this] { return driver.link().InReceive; }));
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_EQ(text("txtReceiveRData"), "FF FF A1 01 FF 10 32 ");
}

std::string nameOfState(const testing::TestParamInfo<State>& state) {
    constexpr std::array names = {"Idle",       "Waiting",         "Sending",        "Continuous", "Scenario",
                                  "Simulation", "SettlingRequest", "MonitorWithLog", "DialogOpen"};
    return names.at(static_cast<std::size_t>(state.param));
}

INSTANTIATE_TEST_SUITE_P(InEveryState, HangUpTest,
                         testing::Values(State::Idle, State::Waiting, State::Sending, State::Continuous,
                                         State::Scenario, State::Simulation, State::SettlingRequest,
                                         State::MonitorWithLog, State::DialogOpen),
                         nameOfState);

} // namespace
} // namespace varda::test
