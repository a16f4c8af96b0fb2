#include "window/monitor/monitor_page_fixture.h"

#include "window/monitor/monitor_delegate.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QScrollBar>

#include <filesystem>
#include <numeric>
#include <utility>
#include <vector>

namespace varda::test {

using namespace window;
namespace {

TEST_F(MonitorPageTest, ModeIsIdleUntilStarted) {
    EXPECT_EQ(driver.link().CommMode, Mode{0x80});
    openLine();
    line.write({0x01});
    runFor(std::chrono::milliseconds(200));
    EXPECT_EQ(lines(), 0);
}

TEST_F(MonitorPageTest, StartNeedsAnOpenPort) {
    driver.click("cmdMonStart");
    EXPECT_EQ(driver.boxText(), "Please Port Open !!");
    EXPECT_EQ(driver.boxTitle(), "Warning");
    EXPECT_EQ(driver.link().CommMode, Mode{0x80});
}

TEST_F(MonitorPageTest, StartWaitsForTheReadAndTheWritePageAlone) {
    openLine();
    driver.find<QCheckBox>("chkMWTimer")->setChecked(true);
    driver.find<QCheckBox>("chkRTimer")->setChecked(true);
    driver.click("cmdMonStart");
    EXPECT_EQ(driver.boxText(), "Currently, Program is communicating with PLC. Please turn off Check Box !!");
    driver.closeBox();
    driver.find<QCheckBox>("chkRTimer")->setChecked(false);
    driver.click("cmdMonStart");
    EXPECT_EQ(driver.link().CommMode, Mode{0x81});
}

TEST_F(MonitorPageTest, BurstsAreListedWithALaggingCount) {
    startMonitoring();
    receive({0x01, 0x00, 0xA1});
    EXPECT_EQ(shown(0), "01 00 A1 ");
    EXPECT_EQ(text("txtLine"), "0");
    driver.find<QCheckBox>("chkASCIIDisplay")->setChecked(true);
    receive({0x41, 0x42});
    EXPECT_EQ(shown(1), "A B ");
    EXPECT_EQ(text("txtLine"), "1");
}

TEST_F(MonitorPageTest, StampIsTheTimeOfReception) {
    driver.find<QCheckBox>("chkTimeStamp")->setChecked(true);
    startMonitoring();
    receive({0x41});
    EXPECT_EQ(shown(0), "9:5:7 - 41 ");
}

TEST_F(MonitorPageTest, ListRestartsAbove2000Lines) {
    startMonitoring();
    for (int burst = 0; burst < 2001; ++burst) {
        driver.listBurst({0x41});
    }
    EXPECT_EQ(lines(), 2001);
    receive({0x42});
    EXPECT_EQ(lines(), 1);
    EXPECT_EQ(shown(0), "42 ");
    EXPECT_EQ(text("txtLine"), "0");
}

TEST_F(MonitorPageTest, ClearEmptiesTheList) {
    startMonitoring();
    receive({0x41});
    driver.click("cmdClear");
    EXPECT_EQ(lines(), 0);
}

TEST_F(MonitorPageTest, LogHoldsTheLinesOfTheRunAndIsAppendedTo) {
    chooseLog(folder.file("line.log"));
    for (int run = 0; run < 2; ++run) {
        if (run == 0) {
            startMonitoring();
        } else {
            driver.click("cmdMonStart");
        }
        EXPECT_FALSE(driver.isEnabled("chkMonLog"));
        EXPECT_FALSE(driver.isEnabled("txtMonLogFile"));
        receive({0x41, 0xFF});
        driver.click("cmdMonStop");
        EXPECT_TRUE(driver.isEnabled("chkMonLog"));
    }
    EXPECT_EQ(logged(), "41 FF \n41 FF \n");
}

TEST_F(MonitorPageTest, LogGetsTheByteItself) {
    chooseLog(folder.file("line.log"));
    driver.find<QCheckBox>("chkASCIIDisplay")->setChecked(true);
    startMonitoring();
    receive({0x41, 0xE4, 0x0A});
    EXPECT_EQ(logged(), "A \xE4 \n \n");
    EXPECT_EQ(list()->model()->index(0, 0).data().toString(), QString::fromLatin1("A \xE4 \n "));
}

TEST_F(MonitorPageTest, LogWithoutANameIsSwitchedOff) {
    driver.find<QCheckBox>("chkMonLog")->setChecked(true);
    startMonitoring();
    EXPECT_FALSE(driver.find<QCheckBox>("chkMonLog")->isChecked());
    EXPECT_EQ(driver.link().CommMode, Mode{0x81});
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(MonitorPageTest, LogThatCannotBeOpenedIsReportedOnceAndMonitoringGoesOn) {
    const std::vector<std::pair<std::string, const char*>> wrong = {
        {folder.path(), "Run-time error '75':"}, {folder.file("none/a.log"), "Run-time error '76':"}};
    openLine();
    for (const auto& [path, report] : wrong) {
        chooseLog(path);
        driver.click("cmdMonStart");
        EXPECT_TRUE(driver.boxText().starts_with(report)) << driver.boxText();
        driver.closeBox();
        receive({0x41});
        EXPECT_EQ(driver.box(), nullptr);
        driver.click("cmdMonStop");
    }
}

TEST_F(MonitorPageTest, LogThatVanishesStopsNothing) {
    chooseLog(folder.file("line.log"));
    startMonitoring();
    receive({0x41});
    std::filesystem::remove(folder.file("line.log"));
    receive({0x42});
    EXPECT_EQ(lines(), 2);
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(MonitorPageTest, LogControlsFollowTheirBox) {
    EXPECT_FALSE(driver.isEnabled("txtMonLogFile"));
    EXPECT_FALSE(driver.isEnabled("cmdMonLogFile"));
    driver.click("chkMonLog");
    EXPECT_TRUE(driver.isEnabled("txtMonLogFile"));
    EXPECT_TRUE(driver.isEnabled("cmdMonLogFile"));
}

TEST_F(MonitorPageTest, ChosenLogFileGetsItsExtension) {
    driver.click("chkMonLog");
    driver.click("cmdMonLogFile");
    auto* const dialog = driver.window().findChild<QFileDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->directory().path().toStdString(), driver.programFolder() + "/Log");
    EXPECT_FALSE(dialog->testOption(QFileDialog::DontConfirmOverwrite));
    chooseFile(folder.file("line"));
    EXPECT_EQ(text("txtMonLogFile"), folder.file("line.log"));
}

TEST_F(MonitorPageTest, ModeClickStopsMonitoringFirst) {
    chooseLog(folder.file("line.log"));
    startMonitoring();
    EXPECT_TRUE(logIsOpen());
    driver.click("optMode_0");
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
    EXPECT_TRUE(runUntil([this] { return !logIsOpen(); })); // a sync under way may hold it for a moment
    driver.click("optMode_5");
    EXPECT_TRUE(driver.isEnabled("chkMonLog"));
}

TEST_F(MonitorPageTest, EndClosesTheLog) {
    chooseLog(folder.file("line.log"));
    startMonitoring();
    EXPECT_TRUE(logIsOpen());
    driver.click("cmdEnd");
    EXPECT_TRUE(runUntil([this] { return !logIsOpen(); }));
}

TEST_F(MonitorPageTest, StartDuringARunStillAsksForAnOpenPort) {
    startMonitoring();
    driver.click("cmdPortOpen");
    driver.click("cmdMonStart");
    EXPECT_EQ(driver.boxText(), "Please Port Open !!");
}

TEST_F(MonitorPageTest, SecondStartGoesOn) {
    startMonitoring();
    driver.window().form().press("cmdMonStart"); // the button is off, for it would do nothing
    EXPECT_EQ(driver.box(), nullptr);
    EXPECT_EQ(driver.link().CommMode, Mode{0x81});
}

TEST_F(MonitorPageTest, HangUpStopsMonitoring) {
    startMonitoring();
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_EQ(driver.link().CommMode, Mode{0x80});
    EXPECT_TRUE(driver.isEnabled("chkMonLog"));
}

TEST_F(MonitorPageTest, MonitoringGoesOnBehindABox) {
    startMonitoring();
    driver.window().form().showMessage("Something else", "Error");
    receive({0x41});
    EXPECT_EQ(lines(), 1);
}

TEST_F(MonitorPageTest, PressShowsTheWholeLineUntilTheRelease) {
    startMonitoring();
    receive(Bytes(300, 0x41));
    list()->setFocus();
    ASSERT_TRUE(runUntil([this] { return list()->hasFocus(); }));
    const QPoint center = list()->visualRect(list()->model()->index(0, 0)).center();
    QTest::mousePress(list()->viewport(), Qt::LeftButton, {}, QPoint(20, center.y()));
    EXPECT_TRUE(popUp()->isVisible());
    EXPECT_EQ(text("txtMonitoringData"), shown(0));
    EXPECT_TRUE(list()->hasFocus());
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, {}, QPoint(20, center.y()));
    EXPECT_FALSE(popUp()->isVisible());
    EXPECT_EQ(text("txtMonitoringData"), "");
}

TEST_F(MonitorPageTest, PressBelowTheLastLineShowsTheSelectedLine) {
    startMonitoring();
    receive({0x41});
    receive({0x42});
    const QPoint below(20, list()->viewport()->height() - 5);
    QTest::mousePress(list()->viewport(), Qt::LeftButton, {}, below);
    EXPECT_FALSE(popUp()->isVisible()); // none is selected yet
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, {}, below);
    list()->setCurrentIndex(list()->model()->index(0, 0));
    QTest::mousePress(list()->viewport(), Qt::LeftButton, {}, below);
    EXPECT_TRUE(popUp()->isVisible());
    EXPECT_EQ(text("txtMonitoringData"), shown(0));
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, {}, below);
    EXPECT_FALSE(popUp()->isVisible());
    EXPECT_TRUE(list()->selectionModel()->isRowSelected(0));
}

TEST_F(MonitorPageTest, PopUpShowsTheExactTextOfTheLine) {
    Bytes everyByte(256);
    std::iota(everyByte.begin(), everyByte.end(), std::uint8_t{0});
    driver.find<QCheckBox>("chkASCIIDisplay")->setChecked(true);
    startMonitoring();
    driver.listBurst(everyByte);
    driver.find<QCheckBox>("chkASCIIDisplay")->setChecked(false);
    driver.listBurst(Bytes(9000, 0x5A));
    for (const int row : {0, 1}) {
        list()->setCurrentIndex(list()->model()->index(row, 0));
        const QPoint below(20, list()->viewport()->height() - 5);
        QTest::mousePress(list()->viewport(), Qt::LeftButton, {}, below);
        EXPECT_EQ(text("txtMonitoringData"), shown(row));
        QTest::mouseRelease(list()->viewport(), Qt::LeftButton, {}, below);
    }
}

TEST_F(MonitorPageTest, PopUpIsHighEnoughForAllRowsOfALine) {
    startMonitoring();
    driver.listBurst(Bytes(1000, 0x0D));
    list()->setCurrentIndex(list()->model()->index(0, 0));
    const QPoint below(20, list()->viewport()->height() - 5);
    QTest::mousePress(list()->viewport(), Qt::LeftButton, {}, below);
    const QWidget* const shownLine = driver.find("txtMonitoringData");
    const QFontMetrics metrics = shownLine->fontMetrics();
    const int columns = shownLine->width() / metrics.horizontalAdvance(QLatin1Char('0'));
    EXPECT_GE(shownLine->height() / metrics.lineSpacing() * columns, 3000);
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, {}, below);
}

TEST_F(MonitorPageTest, BoxThatOpensEndsThePopUp) {
    startMonitoring();
    receive({0x41});
    const QPoint center = list()->visualRect(list()->model()->index(0, 0)).center();
    QTest::mousePress(list()->viewport(), Qt::LeftButton, {}, QPoint(20, center.y()));
    EXPECT_TRUE(popUp()->isVisible());
    driver.window().form().showMessage("Something else", "Error");
    EXPECT_TRUE(runUntil([this] { return !popUp()->isVisible(); }));
}

TEST_F(MonitorPageTest, TenMegabytesAtOnceAreSurvived) {
    driver.find<QCheckBox>("chkASCIIDisplay")->setChecked(true);
    startMonitoring();
    driver.listBurst(Bytes(10'000'000, 0x0A));
    EXPECT_EQ(lines(), 1);
    const QPoint first = list()->visualRect(list()->model()->index(0, 0)).center();
    QTest::mousePress(list()->viewport(), Qt::LeftButton, {}, QPoint(20, first.y()));
    EXPECT_TRUE(popUp()->isVisible());
    popUp()->grab();
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, {}, QPoint(20, first.y()));
    driver.window().grab();
}

TEST_F(MonitorPageTest, LongLineCanBeReadToItsEndWhateverCameBehindIt) {
    driver.listBurst(Bytes(256, 0xA5));
    driver.listBurst({0x01});
    runFor(std::chrono::milliseconds(50)); // lines are laid out in the event loop
    const int textWidth = list()->fontMetrics().horizontalAdvance(
        QString::fromStdString(std::string(shown(0), 0, shown(0).size() - 1)));
    EXPECT_GE(list()->horizontalScrollBar()->maximum() + list()->viewport()->width(), textWidth);
    EXPECT_GT(list()->horizontalScrollBar()->maximum(), 0);
    driver.click("cmdClear");
    driver.listBurst({0x01});
    runFor(std::chrono::milliseconds(50));
    EXPECT_EQ(list()->horizontalScrollBar()->maximum(), 0);
}

TEST(MonitorDelegateText, ControlCharactersHaveVisibleStandIns) {
    EXPECT_EQ(MonitorDelegate::withoutControls(QString::fromLatin1("A\n\x7F\x85")),
              QString::fromUtf8("A\u240A\u2421\u2426"));
}

} // namespace
} // namespace varda::test
