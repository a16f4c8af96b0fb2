#include "support/window_test.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QListWidget>
#include <QPlainTextEdit>

namespace varda::test {
namespace {

class FrameMenuTest : public WindowTest {
protected:
    FrameMenuTest() { QApplication::clipboard()->setText(QStringLiteral("before")); }

    /// Opens the context menu of a field. @return its entry that copies, or nullptr where there is no menu
    QAction* openMenu(const char* field) {
        auto* const scrollArea = driver.find<QAbstractScrollArea>(field);
        QWidget* const viewport = scrollArea->viewport();
        const QPoint middle = viewport->rect().center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, middle, viewport->mapToGlobal(middle));
        QCoreApplication::sendEvent(viewport, &event);
        return scrollArea->findChild<QAction*>(QStringLiteral("copyFrame"));
    }

    static std::string clipboard() { return QApplication::clipboard()->text().toStdString(); }
};

TEST_F(FrameMenuTest, CopiesTheWholeFrameWhereNothingIsSelected) {
    paste("txtReceiveRData", "FF FF A1 04 ");
    QAction* const copy = openMenu("txtReceiveRData");
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->text().toStdString(), "Copy");
    copy->trigger();
    EXPECT_EQ(clipboard(), "FF FF A1 04 ");
}

TEST_F(FrameMenuTest, CopiesWhatIsSelected) {
    paste("txtReceiveRData", "FF FF A1 04 ");
    auto* const frame = driver.find<QPlainTextEdit>("txtReceiveRData");
    QTextCursor cursor = frame->textCursor();
    cursor.setPosition(6);
    cursor.setPosition(8, QTextCursor::KeepAnchor);
    frame->setTextCursor(cursor);
    openMenu("txtReceiveRData")->trigger();
    EXPECT_EQ(clipboard(), "A1");
}

TEST_F(FrameMenuTest, CopiesAFrameThatItsModeHasDisabled) {
    driver.click("optMode_1");
    paste("txtReceiveWData", "FF FF A2 01 00 ");
    ASSERT_FALSE(driver.isEnabled("txtReceiveWData"));
    QAction* const copy = openMenu("txtReceiveWData");
    ASSERT_NE(copy, nullptr);
    copy->trigger();
    EXPECT_EQ(clipboard(), "FF FF A2 01 00 ");
}

TEST_F(FrameMenuTest, HasNothingToCopyInAnEmptyFrame) {
    QAction* const copy = openMenu("txtReceiveRData");
    ASSERT_NE(copy, nullptr);
    EXPECT_FALSE(copy->isEnabled());
}

TEST_F(FrameMenuTest, CopiesTheChosenLineOfAList) {
    auto* const scenario = driver.find<QListWidget>("lstSchedule");
    scenario->addItems({QStringLiteral("01 02 "), QStringLiteral("03 04 ")});
    scenario->setCurrentRow(1);
    openMenu("lstSchedule")->trigger();
    EXPECT_EQ(clipboard(), "03 04 ");
}

TEST_F(FrameMenuTest, LeavesTheMonitorsListToItsPopUp) { EXPECT_EQ(openMenu("lstMonitor"), nullptr); }

TEST_F(FrameMenuTest, FramesCanBeSelectedWithTheKeyboard) {
    paste("txtReceiveRData", "FF FF A1 04 ");
    auto* const frame = driver.find<QPlainTextEdit>("txtReceiveRData");
    frame->setFocus();
    QTest::keyClick(frame, Qt::Key_Home);
    QTest::keyClick(frame, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(frame, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(frame, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), "FF");
}

} // namespace
} // namespace varda::test
