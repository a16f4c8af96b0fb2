#include "support/tool_tip.h"
#include "window/master/write_page_fixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QStyledItemDelegate>
#include <QToolTip>

namespace varda::test {
namespace {

/// Opens up what a delegate paints.
class Painted : public QStyledItemDelegate {
public:
    static std::string text(const QTableWidget* grid, int row, int column) {
        QStyleOptionViewItem option;
        const auto* const delegate = qobject_cast<const QStyledItemDelegate*>(grid->itemDelegate());
        (delegate->*&Painted::initStyleOption)(&option, grid->model()->index(row - 1, column - 1));
        return option.text.toStdString();
    }
};

/// What the grid does beyond taking one value after another.
class WriteGridTest : public WritePageTest {
protected:
    void TearDown() override { QToolTip::hideText(); }

    /// The tool tip of a cell, empty where it has none.
    std::string tip(int row, int column) {
        const QPoint place = grid()->visualItemRect(grid()->item(row - 1, column - 1)).center();
        return toolTipAt(grid()->viewport(), place);
    }

    void pasteAt(int row, int column, const char* words) {
        QGuiApplication::clipboard()->setText(QString::fromLatin1(words));
        grid()->setFocus();
        grid()->setCurrentCell(row - 1, column - 1);
        QTest::keyClick(grid(), Qt::Key_V, Qt::ControlModifier);
    }

    std::string copied() {
        QTest::keyClick(grid(), Qt::Key_C, Qt::ControlModifier);
        return QGuiApplication::clipboard()->text().toStdString();
    }

    std::string cells(int first, int last) {
        std::string texts;
        for (int column = first; column <= last; ++column) {
            texts += cell(1, column) + '|';
        }
        return texts;
    }

    void leaveDialog() {
        QTest::keyClick(wordText(), Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    std::string reason() {
        const auto* const label = wordDialog()->findChild<QLabel*>(QStringLiteral("writeWordReason"));
        return label->isVisible() ? label->text().toStdString() : std::string();
    }
};

TEST_F(WriteGridTest, HexadecimalCellsShowTheirBase) {
    chooseWords("W", "0000", "4");
    enterWord(1, 1, "1234", true);
    enterWord(1, 2, "1234", false);
    EXPECT_EQ(cell(1, 1), "1234"); // what the dialog takes up again
    EXPECT_EQ(Painted::text(grid(), 1, 1), "1234h");
    EXPECT_EQ(Painted::text(grid(), 1, 2), "1234");
    EXPECT_EQ(Painted::text(grid(), 1, 3), "");
}

TEST_F(WriteGridTest, SixteenColumnsOfHexadecimalWordsFit) {
    chooseWords("W", "0000", "126");
    const int needed = QFontMetrics(grid()->font()).horizontalAdvance(QStringLiteral("DDDDh"));
    for (int column = 0; column < 16; ++column) {
        EXPECT_GE(grid()->columnWidth(column), needed) << column;
    }
    EXPECT_LE(grid()->horizontalHeader()->length(), grid()->viewport()->width());
}

TEST_F(WriteGridTest, DialogOfAnEmptyCellRemembersTheBase) {
    chooseWords("W", "0000", "4");
    enterWord(1, 1, "FF", true);
    clickCell(1, 2);
    ASSERT_NE(wordDialog(), nullptr);
    EXPECT_TRUE(wordHex()->isChecked());
    leaveDialog();
    enterWord(1, 2, "7", false);
    clickCell(1, 3);
    EXPECT_FALSE(wordHex()->isChecked());
    leaveDialog();
    clickCell(1, 1); // which has a base of its own
    EXPECT_TRUE(wordHex()->isChecked());
}

TEST_F(WriteGridTest, DialogSaysWhyItStaysOpen) {
    chooseWords("W", "0000", "4");
    clickCell(1, 1);
    EXPECT_EQ(reason(), "");
    QTest::keyClicks(wordText(), QStringLiteral("70000"));
    QTest::keyClick(wordText(), Qt::Key_Return);
    EXPECT_EQ(reason(), "70000 is no word of 0 to 65535.");
    QTest::keyClicks(wordText(), QStringLiteral("7"));
    EXPECT_EQ(reason(), "");
}

TEST_F(WriteGridTest, DialogSaysWhyAlsoWhereTheTextIsNoNumber) {
    chooseWords("W", "0000", "4");
    clickCell(1, 1);
    wordHex()->setChecked(true);
    QTest::keyClick(wordText(), Qt::Key_Return);
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
    EXPECT_EQ(reason(), "Nothing is no word of 0 to FFFF.");
    EXPECT_EQ(driver.box()->informativeText().toStdString(), reason());
}

TEST_F(WriteGridTest, TipOfAWordNamesItInBothBases) {
    chooseWords("W", "0050", "16");
    paste("cbWLength", "60");
    enterWord(4, 8, "1234", true); // position 56
    EXPECT_EQ(tip(4, 8), "W 0105 = 1234h = 4660");
    EXPECT_EQ(tip(1, 1), "W 0050 = 0000h = 0");
}

TEST_F(WriteGridTest, TipTellsWordsThatAreNotSent) {
    chooseWords("W", "0002", "4");
    enterWord(1, 6, "5", false); // number 2 allows the cells 3 to 6, and the request has 4 words
    EXPECT_EQ(tip(1, 6), "W 0007 = 0005h = 5, behind the words of the request");
    EXPECT_EQ(tip(1, 7), "W 0008 is not in the request");
}

TEST_F(WriteGridTest, TipOfABitNamesIt) {
    chooseBits("R", "0000", "14", "3");
    clickCell(1, 16);
    EXPECT_EQ(tip(1, 16), "R 0000.15 = ON");
    EXPECT_EQ(tip(2, 1), "R 0001.0 = OFF");
    EXPECT_EQ(tip(1, 14), "R 0000.13 is not in the request");
}

TEST_F(WriteGridTest, NoTipWithoutARegister) { EXPECT_EQ(tip(1, 1), ""); }

TEST_F(WriteGridTest, PastingFillsWordsFromTheChosenCellOn) {
    chooseWords("W", "0000", "8");
    pasteAt(1, 2, "4660\t0x12\nffh\t\n7\n");
    EXPECT_EQ(cells(1, 7), "|4660|12|FF||7||");
    EXPECT_EQ(imageText(8), "34");
    EXPECT_EQ(imageText(9), "12");
    EXPECT_EQ(imageByte(10), 0x12);
    EXPECT_EQ(imageByte(12), 0xFF);
    EXPECT_EQ(imageByte(16), 7);
    EXPECT_EQ(Painted::text(grid(), 1, 3), "12h");
    EXPECT_EQ(grid()->item(0, 2)->data(Qt::AccessibleTextRole).toString(), QStringLiteral("12h"));
    EXPECT_EQ(driver.box(), nullptr);
    EXPECT_EQ(text("txtSendWData").substr(0, 36), "FF FF 24 12 00 02 00 00 34 12 12 00 ");
}

TEST_F(WriteGridTest, PastingIsRefusedWhereTheDialogWouldBe) {
    chooseWords("W", "0002", "4");
    pasteAt(1, 2, "1\t2");
    EXPECT_EQ(text("txtWStatus"), "Invalid Range !!");
    EXPECT_EQ(cells(1, 6), "||||||");
    driver.click("optWrite_0");
    chooseBits("R", "0000", "0", "8");
    pasteAt(1, 1, "1\t2");
    EXPECT_EQ(cells(1, 4), "||||");
}

TEST_F(WriteGridTest, OneQuestionWhereNotAllOfItFits) {
    chooseWords("W", "0000", "3");
    pasteAt(1, 1, "1\t99999\t3\t4\t5");
    EXPECT_EQ(driver.boxText(),
              "Of 5 pasted words, 2 fit. \"99999\" is no word of 0 to 65535. The request has no "
              "place for 2. Do you want to enter those?");
    EXPECT_EQ(driver.boxTitle(), "Confirm");
    EXPECT_EQ(cells(1, 4), "||||");
    answerQuestion(true);
    EXPECT_EQ(cells(1, 4), "1||3||");
    EXPECT_EQ(imageByte(10), 3);
}

TEST_F(WriteGridTest, NoLeavesTheGridAsItIs) {
    chooseWords("W", "0000", "3");
    pasteAt(1, 2, "1\t2\t3");
    answerQuestion(false);
    EXPECT_EQ(cells(1, 3), "|||");
    EXPECT_EQ(imageByte(8), 0);
}

TEST_F(WriteGridTest, AWholeBookIsNotPasted) {
    chooseWords("W", "0000", "3");
    pasteAt(1, 1, std::string(65537, '1').c_str());
    EXPECT_EQ(driver.boxText(), "The clipboard holds more than a request has room for. Copy fewer cells.");
    EXPECT_EQ(cells(1, 3), "|||");
}

TEST_F(WriteGridTest, NothingIsAskedWhereNothingFits) {
    chooseWords("W", "0000", "3");
    pasteAt(1, 1, "abc");
    EXPECT_EQ(driver.boxText(), "Of 1 pasted words, 0 fit. \"abc\" is no word of 0 to 65535.");
    EXPECT_EQ(driver.boxTitle(), "Error");
}

TEST_F(WriteGridTest, WhatIsCopiedCanBePasted) {
    chooseWords("W", "0000", "8");
    enterWord(1, 1, "12AB", true);
    enterWord(1, 3, "7", false);
    grid()->setFocus();
    grid()->setCurrentCell(0, 0);
    EXPECT_EQ(copied(), "12ABh");
    for (int step = 0; step < 3; ++step) {
        QTest::keyClick(grid(), Qt::Key_Right, Qt::ShiftModifier);
    }
    EXPECT_EQ(copied(), "12ABh\t0\t7\t0");
    grid()->setCurrentCell(0, 4);
    QTest::keyClick(grid(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(cells(5, 8), "12AB|0|7|0|");
}

TEST_F(WriteGridTest, MarkingCellsWithShiftEditsNone) {
    chooseWords("W", "0000", "8");
    grid()->setFocus();
    grid()->setCurrentCell(0, 0);
    const QRect place = grid()->visualItemRect(grid()->item(0, 3));
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, Qt::ShiftModifier, place.center());
    EXPECT_EQ(wordDialog(), nullptr);
    EXPECT_EQ(copied(), "0\t0\t0\t0");
}

TEST_F(WriteGridTest, BitsAreCopiedAsTheyStand) {
    chooseBits("R", "0000", "0", "3");
    clickCell(1, 1);
    grid()->setCurrentCell(0, 0);
    EXPECT_EQ(copied(), "ON");
    grid()->setCurrentCell(0, 1);
    EXPECT_EQ(copied(), "OFF");
}

} // namespace
} // namespace varda::test
