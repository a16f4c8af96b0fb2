#include "window/master/write_page_fixture.h"

namespace varda::test {
namespace {

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
    enterWord(1, 2, "10", false);
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

} // namespace
} // namespace varda::test
