#include "support/window_test.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

namespace varda::test {
namespace {

class MixedWritePageTest : public WindowTest {
protected:
    MixedWritePageTest() { driver.click("optMode_3"); }

    void nameBit(const char* kind, const char* number, const char* bit) {
        driver.click("optMWrite_0");
        driver.choose("cbMWRegister", kind);
        driver.choose("cbMWRegAddress", number);
        driver.choose("cbMWRegBit", bit);
    }

    void nameWord(const char* kind, const char* number) {
        driver.click("optMWrite_1");
        driver.choose("cbMWRegister", kind);
        driver.choose("cbMWRegAddress", number);
    }

    QListWidget* points() { return driver.find<QListWidget>("lstMWWriteReg"); }
    std::string point(int row) { return points()->item(row)->text().toStdString(); }
};

TEST_F(MixedWritePageTest, StartsWithHexadecimalValuesAndOn) {
    EXPECT_TRUE(driver.find<QAbstractButton>("chkHexDec")->isChecked());
    EXPECT_EQ(text("chkHexDec"), "HEX");
    EXPECT_TRUE(driver.find<QAbstractButton>("optMWBData_0")->isChecked());
    EXPECT_EQ(text("txtMWriteTimerValue"), "100");
}

TEST_F(MixedWritePageTest, BitOnHasThreeBodyBytes) {
    openLine();
    nameBit("R", "0000", "3");
    driver.click("cmdMWAdd");
    EXPECT_EQ(point(0), "BIT\tR0000.3\tON");
    driver.click("cmdMWDSend");
    const Bytes request = sent(10);
    ASSERT_EQ(request.size(), 10U);
    EXPECT_EQ(Bytes(request.begin() + 2, request.begin() + 7), (Bytes{0x26, 0x03, 0x03, 0x00, 0xFF}));
    EXPECT_EQ(driver.link().RxExpected, 7);
}

TEST_F(MixedWritePageTest, WordHasFourBodyBytesWithItsMark) {
    openLine();
    nameWord("W", "0001");
    driver.type("txtMWData", "1a2b");
    EXPECT_EQ(text("txtMWData"), "1A2B");
    driver.click("cmdMWAdd");
    EXPECT_EQ(point(0), "WORD\tW0001\t1A2B");
    driver.click("cmdMWDSend");
    const Bytes request = sent(11);
    EXPECT_EQ(Bytes(request.begin() + 2, request.begin() + 8), (Bytes{0x26, 0x04, 0x01, 0x42, 0x2B, 0x1A}));
    line.write(Bytes(7, 0x01));
    ASSERT_TRUE(showsSoon("txtWStatus", "Data Receive OK !!"));
    EXPECT_EQ(text("txtReceiveMWData"), "01 01 01 01 01 01 01 ");
}

TEST_F(MixedWritePageTest, OffIsAddedAsOff) {
    nameBit("R", "0000", "3");
    driver.click("optMWBData_1");
    driver.click("cmdMWAdd");
    EXPECT_EQ(point(0), "BIT\tR0000.3\tOFF");
}

TEST_F(MixedWritePageTest, DecimalValueAboveAWordIsCutBack) {
    nameWord("W", "0001");
    driver.click("chkHexDec");
    EXPECT_EQ(text("chkHexDec"), "DEC");
    driver.type("txtMWData", "65536");
    EXPECT_EQ(text("txtMWData"), "6553");
    EXPECT_EQ(text("txtMWStatus"), "Range Over");
}

TEST_F(MixedWritePageTest, LetterBeyondHexadecimalIsCutBack) {
    nameWord("W", "0001");
    driver.type("txtMWData", "12g");
    EXPECT_EQ(text("txtMWData"), "12");
    EXPECT_EQ(text("txtMWStatus"), "Invalid Data");
}

TEST_F(MixedWritePageTest, FifthHexadecimalDigitIsCutBack) {
    nameWord("W", "0001");
    driver.type("txtMWData", "FFFFF");
    EXPECT_EQ(text("txtMWData"), "FFFF");
    EXPECT_EQ(text("txtMWStatus"), "Range Over");
}

TEST_F(MixedWritePageTest, PastedNonsenseIsCutBackToWhatIsValid) {
    nameWord("W", "0001");
    paste("txtMWData", "99999999999999999999");
    EXPECT_EQ(text("txtMWData"), "9999");
    paste("txtMWData", "xyz");
    EXPECT_EQ(text("txtMWData"), "");
}

TEST_F(MixedWritePageTest, PastedBookIsCutBackAtOnce) {
    nameWord("W", "0001");
    paste("txtMWData", std::string(32767, 'z'));
    EXPECT_EQ(text("txtMWData"), "");
    EXPECT_EQ(text("txtMWStatus"), "Invalid Data");
    paste("txtMWData", std::string(32767, '7'));
    EXPECT_EQ(text("txtMWData"), "7777");
    EXPECT_EQ(text("txtMWStatus"), "Range Over");
}

TEST_F(MixedWritePageTest, LineWithAMissingFieldIsNotAdded) {
    driver.click("optMWrite_1");
    driver.choose("cbMWRegister", "W");
    driver.click("cmdMWAdd");
    EXPECT_EQ(points()->count(), 0);
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(MixedWritePageTest, MissingRegisterAsksForData) {
    openLine();
    driver.click("cmdMWDSend");
    EXPECT_EQ(driver.boxText(), "Data are missing. Please fill Data !!");
}

TEST_F(MixedWritePageTest, TwoLetterKindEndsTheSendWithTheReportAndLosesNothing) {
    openLine();
    nameWord("PV", "000");
    driver.type("txtMWData", "12");
    driver.click("cmdMWAdd");
    driver.click("cmdMWAdd");
    driver.find("cmdAddScenario")->setEnabled(false);
    driver.click("cmdMWDSend");
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
    runFor(std::chrono::milliseconds(30));
    EXPECT_TRUE(line.readAvailable().empty());
    EXPECT_EQ(points()->count(), 2);
    EXPECT_EQ(text("txtMWData"), "12");
    EXPECT_TRUE(driver.isEnabled("cmdAddScenario"));
}

TEST_F(MixedWritePageTest, LinesAreRemovedAndSurviveAModeChange) {
    nameBit("R", "0000", "3");
    driver.click("cmdMWAdd");
    driver.click("cmdMWAdd");
    driver.click("optMode_0");
    driver.click("optMode_3");
    ASSERT_EQ(points()->count(), 2);
    EXPECT_EQ(driver.window().images().mixedWrite.text(3), "00");
    points()->setCurrentRow(0);
    driver.click("cmdMWDel");
    EXPECT_EQ(points()->count(), 1);
    EXPECT_FALSE(driver.isEnabled("cmdMWDel"));
}

TEST_F(MixedWritePageTest, BaseSwitchLeavesTheValueAsItIs) {
    nameWord("W", "0001");
    driver.type("txtMWData", "AB");
    driver.click("chkHexDec");
    EXPECT_EQ(text("txtMWData"), "AB");
}

TEST_F(MixedWritePageTest, DecimalValueIsAddedAsHexadecimal) {
    nameWord("W", "0001");
    driver.click("chkHexDec");
    driver.type("txtMWData", "65535");
    driver.click("cmdMWAdd");
    EXPECT_EQ(point(0), "WORD\tW0001\tFFFF");
}

TEST_F(MixedWritePageTest, EmptyDecimalValueIsReportedAndNotAdded) {
    nameWord("W", "0001");
    driver.click("chkHexDec");
    driver.click("cmdMWAdd");
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
    EXPECT_EQ(points()->count(), 0);
}

TEST_F(MixedWritePageTest, EmptyHexadecimalValueIsAddedAndEndsTheSend) {
    openLine();
    nameWord("W", "0001");
    driver.click("cmdMWAdd");
    EXPECT_EQ(point(0), "WORD\tW0001\t");
    driver.click("cmdMWDSend");
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
    runFor(std::chrono::milliseconds(30));
    EXPECT_TRUE(line.readAvailable().empty());
}

TEST_F(MixedWritePageTest, ListTakes254BitLines) {
    nameBit("R", "0000", "3");
    for (int lines = 0; lines < 253; ++lines) {
        points()->addItem(QStringLiteral("BIT\tR0000.3\tON"));
    }
    driver.click("cmdMWAdd");
    EXPECT_EQ(points()->count(), 254);
    driver.click("cmdMWAdd");
    EXPECT_EQ(points()->count(), 254);
}

TEST_F(MixedWritePageTest, EightyFiveBitLinesGoOutWithAnEmptyBody) {
    openLine();
    nameBit("R", "0000", "3");
    for (int lines = 0; lines < 85; ++lines) {
        points()->addItem(QStringLiteral("BIT\tR0000.3\tON"));
    }
    driver.click("cmdMWDSend");
    const Bytes request = sent(7);
    ASSERT_EQ(request.size(), 7U);
    EXPECT_EQ(request.at(3), 0);
}

TEST_F(MixedWritePageTest, EightySixBitLinesAreTheOverflowReport) {
    openLine();
    nameBit("R", "0000", "3");
    for (int lines = 0; lines < 86; ++lines) {
        points()->addItem(QStringLiteral("BIT\tR0000.3\tON"));
    }
    driver.click("cmdMWDSend");
    EXPECT_EQ(driver.boxText(), "Run-time error '6':\n\nOverflow");
    runFor(std::chrono::milliseconds(30));
    EXPECT_TRUE(line.readAvailable().empty());
}

TEST_F(MixedWritePageTest, AccessSwitchesNoneOfTheValueFields) {
    for (const char* const option : {"optMWrite_1", "optMWrite_0"}) {
        driver.click(option);
        for (const char* const field : {"txtMWData", "chkHexDec", "optMWBData_0", "optMWBData_1"}) {
            EXPECT_TRUE(driver.isEnabled(field)) << option << field;
        }
    }
    driver.find("txtMWData")->setEnabled(false);
    driver.click("optMWrite_1");
    EXPECT_FALSE(driver.isEnabled("txtMWData"));
}

TEST_F(MixedWritePageTest, HexadecimalValueMovesTheCaretToItsEndAtEveryChange) {
    nameWord("W", "0001");
    driver.type("txtMWData", "123");
    auto* const value = driver.find<QLineEdit>("txtMWData");
    value->setCursorPosition(1);
    QTest::keyClicks(value, QStringLiteral("5"));
    EXPECT_EQ(text("txtMWData"), "1523");
    EXPECT_EQ(value->cursorPosition(), 4);
    driver.click("chkHexDec");
    value->setCursorPosition(1);
    QTest::keyClick(value, Qt::Key_Delete);
    EXPECT_EQ(value->cursorPosition(), 1);
}

TEST_F(MixedWritePageTest, FiveDigitsTypedInDecimalGoOutAsTheirLastFour) {
    openLine();
    nameWord("W", "0001");
    driver.click("chkHexDec");
    driver.type("txtMWData", "65535");
    driver.click("chkHexDec");
    driver.click("cmdMWAdd");
    EXPECT_EQ(point(0), "WORD\tW0001\t65535");
    driver.click("cmdMWDSend");
    const Bytes request = sent(11);
    ASSERT_EQ(request.size(), 11U);
    EXPECT_EQ(Bytes(request.begin() + 4, request.begin() + 8), (Bytes{0x01, 0x42, 0x35, 0x55}));
}

TEST_F(MixedWritePageTest, ModeLeavesAddAndDelAsTheyAre) {
    for (const bool enabled : {false, true}) {
        for (const char* const button : {"cmdMWAdd", "cmdMWDel"}) {
            driver.find(button)->setEnabled(enabled);
        }
        driver.click("optMode_0");
        driver.click("optMode_3");
        EXPECT_EQ(driver.isEnabled("cmdMWAdd"), enabled);
        EXPECT_EQ(driver.isEnabled("cmdMWDel"), enabled);
    }
}

TEST_F(MixedWritePageTest, AddAndSendSelectLineByLineAndSoFreeDel) {
    openLine();
    nameBit("R", "0000", "3");
    driver.find("cmdMWDel")->setEnabled(false);
    driver.click("cmdMWAdd"); // nothing to select yet
    EXPECT_FALSE(driver.isEnabled("cmdMWDel"));
    driver.click("cmdMWAdd");
    EXPECT_EQ(points()->currentRow(), 0);
    EXPECT_TRUE(driver.isEnabled("cmdMWDel"));
    driver.find("cmdMWDel")->setEnabled(false);
    driver.click("cmdMWDSend");
    EXPECT_EQ(points()->currentRow(), 1);
    EXPECT_TRUE(driver.isEnabled("cmdMWDel"));
}

TEST_F(MixedWritePageTest, SilenceIsToldOnTheWritePage) {
    openLine();
    nameBit("R", "0000", "3");
    driver.click("cmdMWAdd");
    driver.click("cmdMWDSend");
    EXPECT_TRUE(showsSoon("txtWStatus", "No Answer From PLC"));
    EXPECT_EQ(text("txtMWStatus"), "");
}

TEST_F(MixedWritePageTest, ContinuousWritingWaitsForItsAnswer) {
    nameBit("R", "0000", "3");
    driver.click("cmdMWAdd");
    openLine();
    driver.click("chkMWTimer");
    EXPECT_EQ(sent(10).size(), 10U);
    runFor(std::chrono::milliseconds(250));
    EXPECT_TRUE(line.readAvailable().empty());
    line.write(Bytes(7, 0x00));
    EXPECT_EQ(sent(10).size(), 10U);
}

TEST_F(MixedWritePageTest, SendingWithTheClosedPortSaysSo) {
    nameBit("R", "0000", "3");
    driver.find("cmdMWDSend")->setEnabled(true);
    driver.click("cmdMWDSend");
    EXPECT_EQ(text("txtMWStatus"), "Port Closed");
}

} // namespace
} // namespace varda::test
