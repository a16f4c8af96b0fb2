#include "support/window_test.h"
#include "window/controls/drop_down_list.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QScrollBar>

namespace varda::test {
namespace {

class ListsTest : public WindowTest {
protected:
    QAbstractItemView* open(const char* name) {
        auto* const list = driver.find<QComboBox>(name);
        list->setFocus();
        list->showPopup();
        return list->view();
    }

    /// The entries that an open list marks.
    static std::string marked(const QAbstractItemView* list) {
        std::string texts;
        for (const QModelIndex& entry : list->selectionModel()->selectedIndexes()) {
            texts += entry.data().toString().toStdString() + ' ';
        }
        return texts;
    }

    void chooseWordKind(const char* kind) {
        driver.click("optRead_1");
        driver.choose("cbRegister", kind);
    }
};

TEST_F(ListsTest, LongListShowsAScrollBar) {
    chooseWordKind("SR");
    const QAbstractItemView* const numbers = open("cbRegAddress");
    EXPECT_EQ(numbers->model()->rowCount(), 512);
    EXPECT_TRUE(numbers->verticalScrollBar()->isVisible());
    EXPECT_GT(numbers->verticalScrollBar()->maximum(), 0);
}

TEST_F(ListsTest, EveryTypedInListHasAScrollBarWhereItIsLong) {
    for (const auto* const list : driver.window().findChildren<QComboBox*>()) {
        if (list->isEditable()) {
            EXPECT_EQ(list->view()->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded)
                << list->objectName().toStdString();
        }
    }
}

TEST_F(ListsTest, OpensWhatIsNotMadeBefore) {
    for (const auto* const list : driver.window().findChildren<QComboBox*>()) {
        EXPECT_EQ(list->findChild<QAbstractItemView*>(), nullptr) << list->objectName().toStdString();
    }
}

/// In every size of the font: some round to other heights than others do.
TEST_F(ListsTest, IsAsLargeAsQtsPolicyForAWidthInCharactersMakesIt) {
    for (const bool isTypedInto : {false, true}) {
        for (double points = 6; points <= 24; points += 0.5) {
            window::DropDownList list;
            QComboBox ofQt;
            ofQt.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
            const int characters = 1 + static_cast<int>(points) % 12;
            for (QComboBox* const each : {static_cast<QComboBox*>(&list), &ofQt}) {
                each->setMinimumContentsLength(characters);
                each->addItem(QStringLiteral("an entry that is longer than its list"));
                each->setEditable(isTypedInto);
                QFont font = driver.window().font();
                font.setPointSizeF(points);
                each->setFont(font);
            }
            EXPECT_EQ(list.sizeHint(), ofQt.sizeHint()) << points << ", " << characters;
            EXPECT_EQ(list.minimumSizeHint(), ofQt.minimumSizeHint()) << points << ", " << characters;
        }
    }
}

TEST_F(ListsTest, KeepsItsWidthWhateverItHolds) {
    const int width = driver.find("cbRegAddress")->width();
    chooseWordKind("SR");
    driver.choose("cbRegAddress", "511");
    EXPECT_EQ(driver.find("cbRegAddress")->width(), width);
}

TEST_F(ListsTest, MarksTheEntryThatWasChosen) {
    chooseWordKind("SR");
    driver.choose("cbRegAddress", "300");
    const QAbstractItemView* const numbers = open("cbRegAddress");
    EXPECT_EQ(marked(numbers), "300 ");
    EXPECT_TRUE(numbers->viewport()->rect().intersects(numbers->visualRect(numbers->currentIndex())));
}

TEST_F(ListsTest, MarksTheEntryThatWasTyped) {
    driver.type("cbPort", "COM17");
    const QAbstractItemView* const ports = open("cbPort");
    EXPECT_EQ(marked(ports), "COM17 ");
    EXPECT_TRUE(ports->viewport()->rect().intersects(ports->visualRect(ports->currentIndex())));
}

TEST_F(ListsTest, MarksAnEntryThatShowsMoreThanItsText) {
    driver.type("cbPort", "VIRTUAL");
    EXPECT_EQ(marked(open("cbPort")), "VIRTUAL (the embedded controller) ");
}

TEST_F(ListsTest, MarksNothingForATextThatIsNoEntry) {
    driver.type("cbPort", "COM21");
    EXPECT_EQ(marked(open("cbPort")), "");
}

TEST_F(ListsTest, TakesNoEntryForATextThatIsNone) {
    driver.type("cbPort", "COM21");
    QTest::keyClick(open("cbPort"), Qt::Key_Return);
    EXPECT_EQ(text("cbPort"), "COM21");
}

TEST_F(ListsTest, BeginsWithItsFirstEntryForATextThatIsNone) {
    driver.type("cbPort", "COM21");
    QAbstractItemView* const ports = open("cbPort");
    QTest::keyClick(ports, Qt::Key_Down);
    EXPECT_EQ(marked(ports), "COM1 ");
}

TEST_F(ListsTest, MarksTheOneThatWasChosenOfTwoThatAreAlike) {
    window::DropDownList list;
    list.addItems({QStringLiteral("first"), QStringLiteral("same"), QStringLiteral("same")});
    list.setCurrentIndex(2);
    list.showPopup();
    EXPECT_EQ(list.view()->currentIndex().row(), 2);
    list.hidePopup();
}

TEST_F(ListsTest, OnlyTheFieldIsYellowNotItsOpenList) {
    const QAbstractItemView* const ports = open("cbPort");
    chooseWordKind("R");
    const QAbstractItemView* const kinds = open("cbRegister");
    for (const QAbstractItemView* const list : {ports, kinds}) {
        EXPECT_EQ(list->palette().color(QPalette::Base), QApplication::palette().color(QPalette::Base));
    }
    EXPECT_EQ(driver.find("cbRegister")->palette().color(QPalette::Base), QColor(255, 255, 0));
}

TEST_F(ListsTest, OpeningAndLeavingAListChangesNothing) {
    driver.type("cbPort", "COM17");
    QTest::keyClick(open("cbPort"), Qt::Key_Escape);
    EXPECT_EQ(text("cbPort"), "COM17");
}

} // namespace
} // namespace varda::test
