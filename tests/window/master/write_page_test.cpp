#include "window/master/write_page_fixture.h"

namespace varda::test {
namespace {

TEST_F(WritePageTest, StartsWithBitWritingAndACountOfOne) {
    EXPECT_EQ(driver.link().CommMode, Mode{0x22});
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
    EXPECT_EQ(driver.link().CommMode, Mode{0x24});
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

} // namespace
} // namespace varda::test
