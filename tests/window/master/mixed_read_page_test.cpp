#include "support/window_test.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

namespace varda::test {
namespace {

class MixedReadPageTest : public WindowTest {
protected:
    MixedReadPageTest() { driver.click("optMode_2"); }

    void addBits(const char* kind, const char* number, const char* bit, const char* count) {
        driver.click("optMRead_0");
        driver.choose("cbMRegister", kind);
        driver.choose("cbMRegAddress", number);
        driver.choose("cbMRegBit", bit);
        driver.choose("cbMRLength", count);
        driver.click("cmdMRAdd");
    }

    void addWords(const char* kind, const char* number, const char* count) {
        driver.click("optMRead_1");
        driver.choose("cbMRegister", kind);
        driver.choose("cbMRegAddress", number);
        driver.choose("cbMRLength", count);
        driver.click("cmdMRAdd");
    }

    QListWidget* points() { return driver.find<QListWidget>("lstMRReadReg"); }
    std::string point(int row) { return points()->item(row)->text().toStdString(); }

    /// Sets the fields that the send button asks for without adding a point.
    void nameRegister() {
        driver.click("optMRead_1");
        driver.choose("cbMRegister", "W");
        driver.choose("cbMRegAddress", "0000");
    }
};

TEST_F(MixedReadPageTest, LinesAreBuiltAsTheListsShow) {
    addBits("R", "0012", "3", "8");
    addWords("W", "0100", "4");
    ASSERT_EQ(points()->count(), 2);
    EXPECT_EQ(point(0), "BIT\tR0012.3\t8");
    EXPECT_EQ(point(1), "WORD\tW0100\t4");
}

TEST_F(MixedReadPageTest, LineWithAMissingFieldIsNotAdded) {
    driver.choose("cbMRegister", "R");
    driver.choose("cbMRegAddress", "0000");
    driver.choose("cbMRLength", "4");
    driver.click("cmdMRAdd");
    EXPECT_EQ(points()->count(), 0);
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(MixedReadPageTest, ListTakesOneMoreLineBelow254AnswerBytesAndNoneFromThere) {
    addBits("R", "0000", "0", "253");
    addBits("R", "0000", "0", "1");
    EXPECT_EQ(points()->count(), 2);
    addBits("R", "0000", "0", "1");
    EXPECT_EQ(points()->count(), 2);
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(MixedReadPageTest, EmptyListSendsAnEmptyBodyAndWaitsForSixBytes) {
    openLine();
    nameRegister();
    driver.click("cmdMRDSend");
    const Bytes request = sent(7);
    ASSERT_EQ(request.size(), 7U);
    EXPECT_EQ(Bytes(request.begin(), request.begin() + 4), (Bytes{0xFF, 0xFF, 0x25, 0x00}));
    EXPECT_EQ(request.back(), 0);
    EXPECT_EQ(driver.link().RxExpected, 6);
}

TEST_F(MixedReadPageTest, SameLineTwiceIsReadTwice) {
    openLine();
    addWords("W", "0000", "2");
    driver.click("cmdMRAdd");
    driver.click("cmdMRDSend");
    const Bytes request = sent(15);
    ASSERT_EQ(request.size(), 15U);
    EXPECT_EQ(Bytes(request.begin() + 3, request.begin() + 12),
              (Bytes{0x08, 0x00, 0x42, 0x01, 0x42, 0x00, 0x42, 0x01, 0x42}));
    EXPECT_EQ(driver.link().RxExpected, 14);
}

TEST_F(MixedReadPageTest, LastLineIsSelectedAfterASend) {
    openLine();
    addWords("W", "0000", "2");
    addWords("W", "0010", "2");
    driver.click("cmdMRDSend");
    EXPECT_EQ(points()->currentRow(), 1);
}

TEST_F(MixedReadPageTest, CompletionIsToldOnTheWritePage) {
    openLine();
    addWords("W", "0000", "1");
    driver.click("cmdMRDSend");
    line.write(Bytes(8, 0x21));
    ASSERT_TRUE(showsSoon("txtWStatus", "Data Receive OK !!"));
    EXPECT_EQ(text("txtMRStatus"), "");
    EXPECT_EQ(text("txtReceiveMRData"), "21 21 21 21 21 21 21 21 ");
}

TEST_F(MixedReadPageTest, TwoLetterKindEndsTheSendWithTheReport) {
    openLine();
    addWords("W", "0000", "1");
    addWords("SV", "000", "1");
    addWords("W", "0001", "1");
    driver.find("cmdAddScenario")->setEnabled(false);
    driver.click("cmdMRDSend");
    EXPECT_EQ(points()->currentRow(), 1); // the line that cannot be sent
    EXPECT_EQ(points()->count(), 3);
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
    driver.closeBox();
    runFor(std::chrono::milliseconds(30));
    EXPECT_TRUE(line.readAvailable().empty());
    EXPECT_FALSE(driver.link().WaitingAnswer);
    EXPECT_TRUE(driver.isEnabled("cmdAddScenario"));
    EXPECT_TRUE(driver.isEnabled("cmdMRDSend"));
}

TEST_F(MixedReadPageTest, The128thPointEndsTheSendWithTheReport) {
    openLine();
    addBits("R", "0000", "0", "128");
    driver.click("cmdMRDSend");
    EXPECT_EQ(driver.boxText(), "Run-time error '6':\n\nOverflow");
    runFor(std::chrono::milliseconds(30));
    EXPECT_TRUE(line.readAvailable().empty());
}

TEST_F(MixedReadPageTest, ErrorInContinuousModeIsReportedOnceAndUnticksTheBox) {
    addWords("PV", "000", "1");
    paste("txtMReadTimerValue", "100");
    openLine();
    driver.click("chkMRTimer");
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_FALSE(driver.find<QCheckBox>("chkMRTimer")->isChecked());
    driver.closeBox();
    runFor(std::chrono::milliseconds(250));
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(MixedReadPageTest, RemovedLineDisablesTheButtonUntilAnotherIsSelected) {
    addWords("W", "0000", "1");
    addWords("W", "0001", "1");
    EXPECT_TRUE(driver.isEnabled("cmdMRDel"));
    points()->setCurrentRow(0);
    driver.click("cmdMRDel");
    EXPECT_EQ(points()->count(), 1);
    EXPECT_EQ(point(0), "WORD\tW0001\t1");
    EXPECT_FALSE(driver.isEnabled("cmdMRDel"));
    QTest::mouseClick(points()->viewport(), Qt::LeftButton, {},
                      points()->visualItemRect(points()->item(0)).center());
    EXPECT_TRUE(driver.isEnabled("cmdMRDel"));
}

TEST_F(MixedReadPageTest, AddingSelectsTheLinesThatItCounts) {
    addWords("W", "0000", "1");
    EXPECT_EQ(points()->currentRow(), -1);
    driver.click("cmdMRAdd");
    driver.click("cmdMRAdd");
    EXPECT_EQ(points()->currentRow(), 1);
}

TEST_F(MixedReadPageTest, SendFreesDelAlsoWhereTheLastLineIsSelectedAlready) {
    openLine();
    addWords("W", "0001", "2");
    points()->setCurrentRow(0);
    driver.find("cmdMRDel")->setEnabled(false);
    driver.click("cmdMRDSend");
    EXPECT_TRUE(driver.isEnabled("cmdMRDel"));
    driver.find("cmdMRDel")->setEnabled(false);
    driver.click("cmdMRAdd");
    EXPECT_TRUE(driver.isEnabled("cmdMRDel"));
}

TEST_F(MixedReadPageTest, WordOptionAndBackKeepsTheSixteenBits) {
    driver.click("optMRead_1");
    driver.click("optMRead_0");
    EXPECT_EQ(driver.find<QComboBox>("cbMRegBit")->count(), 16);
    EXPECT_EQ(text("cbMRegBit"), "");
}

TEST_F(MixedReadPageTest, KeysThatTypeNothingLeaveTheFields) {
    driver.click("optMRead_0");
    driver.choose("cbMRegister", "R");
    driver.choose("cbMRegAddress", "0012");
    driver.choose("cbMRegBit", "3");
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Return}) {
        QTest::keyClick(driver.find("cbMRegister"), key);
    }
    EXPECT_EQ(text("cbMRegAddress"), "0012");
    EXPECT_EQ(text("cbMRegBit"), "3");
}

TEST_F(MixedReadPageTest, SendSwitchesTheScenarioButtonsOn) {
    openLine();
    addWords("W", "0000", "1");
    for (const char* const button :
         {"cmdAddScenario", "cmdDelScenario", "cmdLoadScenario", "cmdSaveScenario"}) {
        driver.find(button)->setEnabled(false);
    }
    driver.find("cmdStopScenario")->setEnabled(true);
    driver.find<QListWidget>("lstSchedule")->addItem(QStringLiteral("01"));
    driver.click("cmdMRDSend");
    for (const char* const button :
         {"cmdAddScenario", "cmdDelScenario", "cmdLoadScenario", "cmdSaveScenario"}) {
        EXPECT_TRUE(driver.isEnabled(button)) << button;
    }
    EXPECT_TRUE(driver.isEnabled("cmdRunScenario"));
    EXPECT_FALSE(driver.isEnabled("cmdStopScenario"));
}

TEST_F(MixedReadPageTest, PointsSurviveAModeChange) {
    addWords("W", "0000", "1");
    driver.click("optMode_0");
    driver.click("optMode_2");
    EXPECT_EQ(points()->count(), 1);
    EXPECT_EQ(driver.window().images().mixedRead.text(3), "00");
}

TEST_F(MixedReadPageTest, CountThatIsNoNumberIsEmptied) {
    paste("cbMRLength", "abc");
    EXPECT_EQ(text("cbMRLength"), "");
}

TEST_F(MixedReadPageTest, StationChangeRemakesTheHeader) {
    driver.type("txtMRDDA", "5");
    EXPECT_EQ(text("txtSendMRData").substr(0, 11), "5 FF 25 00 ");
}

TEST_F(MixedReadPageTest, SendingWithTheClosedPortSaysSo) {
    nameRegister();
    driver.click("cmdMRDSend");
    EXPECT_EQ(text("txtMRStatus"), "Port Closed");
    EXPECT_FALSE(driver.link().WaitingAnswer);
}

TEST_F(MixedReadPageTest, MissingRegisterAsksForData) {
    openLine();
    driver.click("cmdMRDSend");
    EXPECT_EQ(driver.boxText(), "Data are missing. Please fill Data !!");
}

} // namespace
} // namespace varda::test
