#include "link/crc16.h"
#include "support/window_test.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

#include <span>

namespace varda::test {
namespace {

class WritePageTest : public WindowTest {
protected:
    WritePageTest() { driver.click("optMode_1"); }

    void chooseBits(const char* kind, const char* number, const char* bit, const char* count) {
        driver.choose("cbWRegister", kind);
        driver.choose("cbWRegAddress", number);
        driver.choose("cbWRegBit", bit);
        driver.choose("cbWLength", count);
    }

    void chooseWords(const char* kind, const char* number, const char* count) {
        driver.click("optWrite_1");
        driver.choose("cbWRegister", kind);
        driver.choose("cbWRegAddress", number);
        driver.choose("cbWLength", count);
    }

    QTableWidget* grid() { return driver.find<QTableWidget>("gridWriteData"); }

    /// Clicks the cell of grid row and column, both counted from 1.
    void clickCell(int row, int column) {
        grid()->scrollToItem(grid()->item(row - 1, column - 1));
        const QRect cell = grid()->visualItemRect(grid()->item(row - 1, column - 1));
        QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, cell.center());
    }

    std::string cell(int row, int column) { return grid()->item(row - 1, column - 1)->text().toStdString(); }
    std::uint8_t imageByte(std::size_t index) { return driver.window().images().write.byte(index); }
    std::string imageText(std::size_t index) { return driver.window().images().write.text(index); }

    QDialog* wordDialog() {
        auto* const dialog = driver.window().findChild<QDialog*>(QStringLiteral("frmWriteWord"));
        return dialog != nullptr && dialog->isVisible() ? dialog : nullptr;
    }

    QLineEdit* wordText() { return wordDialog()->findChild<QLineEdit*>(QStringLiteral("txtWordWrite")); }
    QCheckBox* wordHex() { return wordDialog()->findChild<QCheckBox*>(QStringLiteral("chkWWHex")); }

    /// Opens the dialog of a cell, types a value over the present one and presses Enter.
    void enterWord(int row, int column, const char* value, bool hexadecimal) {
        clickCell(row, column);
        ASSERT_NE(wordDialog(), nullptr);
        wordHex()->setChecked(hexadecimal);
        QTest::keyClicks(wordText(), QString::fromLatin1(value));
        QTest::keyClick(wordText(), Qt::Key_Return);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

TEST_F(WritePageTest, StartsWithBitWritingAndACountOfOne) {
    EXPECT_EQ(driver.link().CommMode, 0x22);
    EXPECT_EQ(text("cbWLength"), "1");
    EXPECT_EQ(driver.find<QComboBox>("cbWRegister")->count(), 7);
    EXPECT_EQ(driver.find<QComboBox>("cbWLength")->count(), 253);
    EXPECT_FALSE(driver.isEnabled("chkCounter"));
    EXPECT_FALSE(driver.isEnabled("chkRandomWrite"));
    EXPECT_EQ(grid()->columnCount(), 16);
    EXPECT_EQ(grid()->horizontalHeaderItem(0)->text().toStdString(), "Bit0");
    EXPECT_EQ(grid()->horizontalHeaderItem(15)->text().toStdString(), "Bit15");
}

TEST_F(WritePageTest, WordOptionOffersWordsAndTheDataModes) {
    driver.click("optWrite_1");
    EXPECT_EQ(driver.link().CommMode, 0x24);
    EXPECT_EQ(driver.find<QComboBox>("cbWRegister")->count(), 11);
    EXPECT_EQ(driver.find<QComboBox>("cbWLength")->count(), 126);
    EXPECT_TRUE(driver.isEnabled("chkCounter"));
    EXPECT_TRUE(driver.isEnabled("chkRandomWrite"));
    EXPECT_FALSE(driver.find("cbWRegBit")->isVisible());
    EXPECT_EQ(grid()->horizontalHeaderItem(0)->text().toStdString(), "+0");
    EXPECT_EQ(grid()->horizontalHeaderItem(15)->text().toStdString(), "+15");
}

TEST_F(WritePageTest, ThreeBitsFromBit14AreEditableAcrossTheRowEnd) {
    chooseBits("R", "0000", "14", "3");
    ASSERT_EQ(grid()->rowCount(), 2);
    clickCell(1, 14);
    EXPECT_EQ(text("txtWStatus"), "Invalid Range !!");
    EXPECT_EQ(cell(1, 14), "");
    clickCell(1, 15);
    EXPECT_EQ(text("txtWStatus"), "");
    clickCell(1, 16);
    clickCell(2, 1);
    EXPECT_EQ(cell(1, 15), "ON");
    EXPECT_EQ(cell(2, 1), "ON");
    EXPECT_EQ(imageByte(6), 0xFF);
    EXPECT_EQ(imageByte(8), 0xFF);
    clickCell(2, 2);
    EXPECT_EQ(text("txtWStatus"), "Invalid Range !!");
}

TEST_F(WritePageTest, BitToggledTwiceIsEmptyNotOff) {
    chooseBits("R", "0000", "0", "8");
    clickCell(1, 1);
    EXPECT_EQ(imageText(6), "FF");
    clickCell(1, 1);
    EXPECT_EQ(cell(1, 1), "");
    EXPECT_EQ(imageText(6), "00");
}

TEST_F(WritePageTest, BitThatIsOnStandsOutByMoreThanColour) {
    chooseBits("R", "0000", "0", "8");
    clickCell(1, 1);
    EXPECT_TRUE(grid()->item(0, 0)->font().bold());
    EXPECT_FALSE(grid()->item(0, 1)->font().bold());
}

TEST_F(WritePageTest, KeyboardMovesAndEditsCells) {
    chooseBits("R", "0000", "0", "16");
    grid()->setFocus();
    grid()->setCurrentCell(0, 0);
    QTest::keyClick(grid(), Qt::Key_Right);
    QTest::keyClick(grid(), Qt::Key_Space);
    EXPECT_EQ(cell(1, 2), "ON");
    QTest::keyClick(grid(), Qt::Key_Return);
    EXPECT_EQ(cell(1, 2), "");
}

TEST_F(WritePageTest, CellOfAnUnnamedRegisterIsNotEdited) {
    clickCell(1, 1);
    EXPECT_EQ(cell(1, 1), "");
    EXPECT_EQ(imageByte(6), 0);
}

TEST_F(WritePageTest, WordValueGoesLowByteFirst) {
    chooseWords("W", "0000", "4");
    enterWord(1, 1, "4660", false);
    EXPECT_EQ(imageText(6), "34");
    EXPECT_EQ(imageText(7), "12");
    EXPECT_EQ(cell(1, 1), "4660");
    EXPECT_EQ(wordDialog(), nullptr);
}

TEST_F(WritePageTest, HexadecimalWordIsKeptAsTyped) {
    chooseWords("W", "0000", "4");
    enterWord(1, 2, "ffff", true);
    EXPECT_EQ(cell(1, 2), "FFFF");
    EXPECT_EQ(imageByte(8), 0xFF);
    EXPECT_EQ(imageByte(9), 0xFF);
    clickCell(1, 2);
    ASSERT_NE(wordDialog(), nullptr);
    EXPECT_TRUE(wordHex()->isChecked());
    EXPECT_EQ(wordText()->selectedText().toStdString(), "FFFF");
}

TEST_F(WritePageTest, RegisterNumberIsNotSubtractedFromWordData) {
    chooseWords("W", "0002", "4");
    enterWord(1, 3, "1", false);
    EXPECT_EQ(imageByte(6), 0);
    EXPECT_EQ(imageByte(10), 1);
    clickCell(1, 2);
    EXPECT_EQ(text("txtWStatus"), "Invalid Range !!");
    EXPECT_EQ(wordDialog(), nullptr);
}

TEST_F(WritePageTest, DialogNamesTheRegisterOfItsCell) {
    chooseWords("W", "0000", "16");
    clickCell(1, 13);
    ASSERT_NE(wordDialog(), nullptr);
    EXPECT_EQ(wordDialog()->windowTitle().toStdString(), "W 0012");
}

TEST_F(WritePageTest, WordOutOfRangeEmptiesTheCellAndLeavesTheDialogOpen) {
    chooseWords("W", "0000", "4");
    enterWord(1, 1, "7", false);
    enterWord(1, 1, "65536", false);
    ASSERT_NE(wordDialog(), nullptr);
    EXPECT_EQ(text("txtWStatus"), "Rage Over (0 to 65535)");
    EXPECT_EQ(cell(1, 1), "");
    EXPECT_EQ(imageByte(6), 7);
    EXPECT_EQ(wordText()->selectedText().toStdString(), "65536");
    QTest::keyClicks(wordText(), QStringLiteral("65535"));
    QTest::keyClick(wordText(), Qt::Key_Return);
    EXPECT_EQ(imageByte(6), 0xFF);
}

TEST_F(WritePageTest, EscapeClosesTheDialogWithoutStoring) {
    chooseWords("W", "0000", "4");
    clickCell(1, 1);
    QTest::keyClicks(wordText(), QStringLiteral("9"));
    QTest::keyClick(wordText(), Qt::Key_Escape);
    EXPECT_EQ(wordDialog(), nullptr);
    EXPECT_EQ(imageByte(6), 0);
    EXPECT_EQ(cell(1, 1), "");
}

TEST_F(WritePageTest, DialogTakesDigitsAndHexadecimalLettersWhenTicked) {
    chooseWords("W", "0000", "4");
    clickCell(1, 1);
    QTest::keyClicks(wordText(), QStringLiteral("1aBx-2"));
    EXPECT_EQ(wordText()->text().toStdString(), "12");
    wordHex()->setChecked(true);
    QTest::keyClicks(wordText(), QStringLiteral("aFg"));
    EXPECT_EQ(wordText()->text().toStdString(), "12AF");
}

TEST_F(WritePageTest, DialogLetsTheTwoArrowCodesThroughAsCharacters) {
    chooseWords("W", "0000", "4");
    clickCell(1, 1);
    QTest::keyClicks(wordText(), QStringLiteral("%'"));
    EXPECT_EQ(wordText()->text().toStdString(), "%'");
    QTest::keyClick(wordText(), Qt::Key_Return);
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
    EXPECT_EQ(imageByte(6), 0);
}

TEST_F(WritePageTest, LargestCountsFillTheLengthByte) {
    driver.choose("cbWLength", "253");
    EXPECT_EQ(imageByte(3), 255);
    driver.click("optWrite_1");
    driver.choose("cbWLength", "126");
    EXPECT_EQ(imageByte(3), 254);
}

TEST_F(WritePageTest, CountOutsideTheOfferLeavesLengthAndData) {
    chooseBits("R", "0000", "0", "8");
    clickCell(1, 1);
    for (const char* const wrong : {"254", "-1", "300"}) {
        paste("cbWLength", wrong);
        EXPECT_EQ(imageByte(3), 10) << wrong;
        EXPECT_EQ(imageByte(6), 0xFF) << wrong;
        EXPECT_EQ(driver.box(), nullptr) << wrong;
    }
}

TEST_F(WritePageTest, CountThatIsNoNumberIsEmptiedAndBecomesOneLater) {
    chooseBits("R", "0000", "0", "8");
    paste("cbWLength", "abc");
    EXPECT_EQ(text("cbWLength"), "");
    driver.type("txtWDDA", "7");
    EXPECT_EQ(text("cbWLength"), "1");
}

TEST_F(WritePageTest, RowsFollowBitAndCount) {
    chooseBits("R", "0000", "0", "16");
    EXPECT_EQ(grid()->rowCount(), 1);
    driver.choose("cbWRegBit", "1");
    EXPECT_EQ(grid()->rowCount(), 2);
    driver.choose("cbWLength", "253");
    EXPECT_EQ(grid()->rowCount(), 16);
    paste("cbWLength", "0");
    EXPECT_EQ(grid()->rowCount(), 17);
}

TEST_F(WritePageTest, RowsWithoutARegisterFollowTheCountAlone) {
    driver.choose("cbWLength", "32");
    EXPECT_EQ(grid()->rowCount(), 3);
}

TEST_F(WritePageTest, RowRulePutsABitWhereNoneIsChosen) {
    driver.choose("cbWRegister", "R");
    driver.choose("cbWRegAddress", "0000");
    EXPECT_EQ(text("cbWRegBit"), "1");
    EXPECT_EQ(imageByte(4), 0x01);
}

TEST_F(WritePageTest, RowRulesBitWritesNoAddressInWordMode) {
    chooseWords("W", "0003", "4");
    EXPECT_EQ(text("cbWRegBit"), "1");
    EXPECT_EQ(imageByte(4), 0x03);
    EXPECT_EQ(imageByte(5), 0x02);
}

TEST_F(WritePageTest, RowHeadingsShowTheRegisterOfTheirFirstCell) {
    EXPECT_EQ(grid()->verticalHeaderItem(0)->text().trimmed().toStdString(), "");
    chooseBits("M", "0003", "0", "40");
    EXPECT_EQ(grid()->verticalHeaderItem(0)->text().toStdString(), "0003");
    EXPECT_EQ(grid()->verticalHeaderItem(2)->text().toStdString(), "0005");
    chooseWords("SR", "016", "40");
    EXPECT_EQ(grid()->verticalHeaderItem(0)->text().toStdString(), "016");
    EXPECT_EQ(grid()->verticalHeaderItem(1)->text().toStdString(), "032");
}

TEST_F(WritePageTest, AnotherRegisterKeepsTheDataAndANewCountClearsIt) {
    chooseBits("R", "0000", "0", "8");
    clickCell(1, 3);
    driver.choose("cbWRegAddress", "0001");
    EXPECT_EQ(imageByte(8), 0xFF);
    EXPECT_EQ(cell(1, 4), "ON"); // the row rule has chosen bit 1
    driver.choose("cbWLength", "9");
    EXPECT_EQ(imageByte(8), 0);
    EXPECT_EQ(cell(1, 4), "");
}

TEST_F(WritePageTest, CountOf256LeavesTheAddress) {
    chooseBits("M", "0010", "4", "8");
    paste("cbWLength", "256");
    EXPECT_EQ(imageByte(3), 2);
    paste("cbWLength", "8");
    EXPECT_EQ(imageByte(3), 10);
    EXPECT_EQ(imageByte(4), 0xA4);
    EXPECT_EQ(imageByte(5), 0x0C);
}

TEST_F(WritePageTest, KeysThatTypeNothingLeaveDataAndAddress) {
    chooseBits("M", "0010", "4", "8");
    clickCell(1, 5);
    for (const char* const list : {"cbWRegister", "cbWRegAddress", "cbWRegBit", "cbWLength"}) {
        QTest::keyClick(driver.find(list), Qt::Key_Tab);
        QTest::keyClick(driver.find(list), Qt::Key_Backtab);
        QTest::keyClick(driver.find(list), Qt::Key_C, Qt::ControlModifier);
    }
    EXPECT_EQ(imageByte(6), 0xFF);
    EXPECT_EQ(text("cbWRegBit"), "4");
    EXPECT_EQ(imageByte(4), 0xA4);
}

TEST_F(WritePageTest, KeyInTheKindListRunsTheCountsHandler) {
    chooseBits("M", "0010", "4", "8");
    clickCell(1, 5);
    QTest::keyClick(driver.find("cbWRegister"), Qt::Key_Escape);
    EXPECT_EQ(imageByte(6), 0);
    EXPECT_EQ(text("cbWRegAddress"), "0010");
}

TEST_F(WritePageTest, AnotherOptionClearsTheImage) {
    chooseBits("M", "0010", "4", "8");
    clickCell(1, 5);
    driver.click("optWrite_1");
    EXPECT_EQ(imageByte(4), 0);
    EXPECT_EQ(imageByte(6), 0);
    EXPECT_EQ(cell(1, 5), "");
}

TEST_F(WritePageTest, CellBeyondTheFramedCountIsNotEdited) {
    chooseBits("R", "0000", "0", "8");
    paste("cbWLength", "300");
    clickCell(1, 15);
    EXPECT_EQ(text("txtWStatus"), "Invalid Range !!");
    EXPECT_EQ(cell(1, 15), "");
}

TEST_F(WritePageTest, WordPositionsOfNumber16AndMoreLieBelowTheLastRow) {
    chooseWords("W", "0016", "4");
    for (int column = 1; column <= 16; ++column) {
        clickCell(1, column);
        EXPECT_EQ(text("txtWStatus"), "Invalid Range !!") << column;
    }
    EXPECT_EQ(grid()->rowCount(), 1);
}

TEST_F(WritePageTest, SixteenColumnsOfTheWidestWordsFit) {
    chooseWords("W", "0000", "126");
    paste("cbWLength", "0");
    for (int column = 0; column < 16; ++column) {
        grid()->item(0, column)->setText(QStringLiteral("65535"));
        const int needed = QFontMetrics(grid()->font()).horizontalAdvance(QStringLiteral("65535"));
        EXPECT_GE(grid()->columnWidth(column), needed + 2) << column;
    }
    EXPECT_GT(grid()->verticalHeader()->length(),
              grid()->viewport()->height()); // the vertical scroll bar is there
    EXPECT_LE(grid()->horizontalHeader()->length(), grid()->viewport()->width());
}

TEST_F(WritePageTest, EmptiedCellForgetsItsBase) {
    chooseWords("W", "0000", "4");
    enterWord(1, 1, "10", true);
    driver.choose("cbWLength", "5");
    clickCell(1, 1);
    ASSERT_NE(wordDialog(), nullptr);
    EXPECT_FALSE(wordHex()->isChecked());
}

TEST_F(WritePageTest, RandomDataSurviveAnEmptiedCount) {
    openLine();
    chooseWords("W", "0000", "4");
    driver.click("chkRandomWrite");
    paste("cbWLength", "");
    driver.click("cmdWDSend");
    const Bytes request = sent(10);
    ASSERT_EQ(request.size(), 10U);
    EXPECT_NE(request[6] + request[7], 0);
}

TEST_F(WritePageTest, WordDialogTakesItsOkButtonAndSpaceOpensIt) {
    chooseWords("W", "0000", "4");
    grid()->setFocus();
    grid()->setCurrentCell(0, 1);
    QTest::keyClick(grid(), Qt::Key_Space);
    ASSERT_NE(wordDialog(), nullptr);
    QTest::keyClicks(wordText(), QStringLiteral("5"));
    QTest::mouseClick(wordDialog()->findChild<QAbstractButton*>(QStringLiteral("cmdInputOK")),
                      Qt::LeftButton);
    EXPECT_EQ(imageByte(8), 5);
}

TEST_F(WritePageTest, DataModesExcludeEachOtherAndStayTicked) {
    driver.click("optWrite_1");
    driver.click("chkCounter");
    driver.click("chkCounter");
    EXPECT_TRUE(driver.find<QCheckBox>("chkCounter")->isChecked());
    driver.click("chkRandomWrite");
    EXPECT_FALSE(driver.find<QCheckBox>("chkCounter")->isChecked());
    EXPECT_TRUE(driver.find<QCheckBox>("chkRandomWrite")->isChecked());
}

TEST_F(WritePageTest, BitWriteGoesOutAndIsAcknowledgedByLengthAlone) {
    openLine();
    paste("txtWDDA", "16");
    chooseBits("R", "0001", "15", "1");
    clickCell(1, 16);
    driver.click("cmdWDSend");
    const Bytes request = sent(9);
    ASSERT_EQ(request.size(), 9U);
    EXPECT_EQ(Bytes(request.begin(), request.begin() + 7), (Bytes{0x10, 0xFF, 0x22, 0x03, 0x1F, 0x00, 0xFF}));
    line.write(Bytes(7, 0xEE));
    EXPECT_TRUE(showsSoon("txtWStatus", "Data Receive OK !!"));
    EXPECT_EQ(text("txtReceiveWData"), "EE EE EE EE EE EE EE ");
}

TEST_F(WritePageTest, AcknowledgementsOfOtherLengthsAreDropped) {
    openLine();
    chooseBits("R", "0001", "15", "1");
    for (const std::size_t length : {6U, 8U}) {
        driver.click("cmdWDSend");
        line.write(Bytes(length, 0xEE));
        ASSERT_TRUE(runUntil([this] { return driver.link().AnswerReceived; }));
        EXPECT_EQ(text("txtReceiveWData"), "");
        EXPECT_EQ(text("txtWStatus"), "");
    }
}

TEST_F(WritePageTest, CounterModeSendsTheDataUnchanged) {
    openLine();
    chooseWords("W", "0000", "1");
    enterWord(1, 1, "4660", false);
    driver.click("chkCounter");
    driver.click("cmdWDSend");
    const Bytes request = sent(10);
    EXPECT_EQ(request.at(6), 0x34);
    EXPECT_EQ(request.at(7), 0x12);
}

TEST_F(WritePageTest, RandomModeFillsABitWriteToo) {
    openLine();
    chooseWords("W", "0000", "1");
    driver.click("chkRandomWrite");
    driver.click("optWrite_0");
    chooseBits("R", "0000", "0", "8");
    driver.click("cmdWDSend");
    const Bytes request = sent(16);
    ASSERT_EQ(request.size(), 16U);
    EXPECT_NE(Bytes(request.begin() + 6, request.begin() + 14), Bytes(8, 0x00));
    const std::uint16_t check = crc16(std::span(request).first(14));
    EXPECT_EQ(request[14], check & 0xFFU);
    EXPECT_EQ(request[15], check >> 8U);
}

TEST_F(WritePageTest, ContinuousWritingWaitsForItsAnswer) {
    chooseBits("R", "0001", "15", "1");
    paste("txtWriteTimerValue", "100");
    openLine();
    driver.click("chkWTimer");
    EXPECT_EQ(sent(9).size(), 9U);
    runFor(std::chrono::milliseconds(300));
    EXPECT_TRUE(line.readAvailable().empty());
    line.write(Bytes(7, 0x00));
    EXPECT_EQ(sent(9).size(), 9U);
}

TEST_F(WritePageTest, MissingRegisterAsksForData) {
    openLine();
    driver.click("cmdWDSend");
    EXPECT_EQ(driver.boxText(), "Data are missing. Please fill Data !!");
}

TEST_F(WritePageTest, SendingWithTheClosedPortSaysSo) {
    chooseBits("R", "0001", "15", "1");
    driver.find("cmdWDSend")->setEnabled(true);
    driver.click("cmdWDSend");
    EXPECT_EQ(text("txtWStatus"), "Port Closed");
}

TEST_F(WritePageTest, SendButtonFollowsThePort) {
    EXPECT_FALSE(driver.find("cmdWDSend")->isEnabledTo(driver.find("tabMode")));
    openLine();
    driver.click("optMode_0");
    driver.click("optMode_1");
    EXPECT_TRUE(driver.isEnabled("cmdWDSend"));
}

} // namespace
} // namespace varda::test
