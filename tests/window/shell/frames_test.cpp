#include "support/window_test.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QWheelEvent>

namespace varda::test {
namespace {

class FramesTest : public WindowTest {
protected:
    FramesTest() { QApplication::clipboard()->setText(QStringLiteral("before")); }

    /// Opens the context menu of a field. @return its entry that copies, or nullptr where there is no menu
    QAction* openMenu(const char* field, const QPoint& where = QPoint(5, 5)) {
        auto* const scrollArea = driver.find<QAbstractScrollArea>(field);
        QWidget* const viewport = scrollArea->viewport();
        QContextMenuEvent event(QContextMenuEvent::Mouse, where, viewport->mapToGlobal(where));
        QCoreApplication::sendEvent(viewport, &event);
        return scrollArea->findChild<QAction*>(QStringLiteral("copyFrame"));
    }

    /// The mixed read page's answer with more than it can show at once.
    QPlainTextEdit* longAnswer() {
        std::string text;
        for (int byte = 0; byte < 1000; ++byte) {
            text += "5A ";
        }
        paste("txtReceiveMRData", text);
        return driver.find<QPlainTextEdit>("txtReceiveMRData");
    }

    static std::string clipboard() { return QApplication::clipboard()->text().toStdString(); }
};

TEST_F(FramesTest, CopiesTheWholeFrameWhereNothingIsSelected) {
    paste("txtReceiveRData", "FF FF A1 04 ");
    QAction* const copy = openMenu("txtReceiveRData");
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->text().toStdString(), "Copy");
    copy->trigger();
    EXPECT_EQ(clipboard(), "FF FF A1 04 ");
}

TEST_F(FramesTest, CopiesWhatIsSelected) {
    paste("txtReceiveRData", "FF FF A1 04 ");
    auto* const frame = driver.find<QPlainTextEdit>("txtReceiveRData");
    QTextCursor cursor = frame->textCursor();
    cursor.setPosition(6);
    cursor.setPosition(8, QTextCursor::KeepAnchor);
    frame->setTextCursor(cursor);
    openMenu("txtReceiveRData")->trigger();
    EXPECT_EQ(clipboard(), "A1");
}

TEST_F(FramesTest, CopiesAFrameThatItsModeHasDisabled) {
    driver.click("optMode_1");
    paste("txtReceiveWData", "FF FF A2 01 00 ");
    ASSERT_FALSE(driver.isEnabled("txtReceiveWData"));
    QAction* const copy = openMenu("txtReceiveWData");
    ASSERT_NE(copy, nullptr);
    copy->trigger();
    EXPECT_EQ(clipboard(), "FF FF A2 01 00 ");
}

TEST_F(FramesTest, HasNothingToCopyInAnEmptyFrame) {
    QAction* const copy = openMenu("txtReceiveRData");
    ASSERT_NE(copy, nullptr);
    EXPECT_FALSE(copy->isEnabled());
}

TEST_F(FramesTest, CopiesTheLineUnderThePointerAndChoosesNone) {
    auto* const scenario = driver.find<QListWidget>("lstSchedule");
    scenario->addItems({QStringLiteral("01 02 "), QStringLiteral("03 04 ")});
    scenario->setCurrentRow(0);
    const QPoint second = scenario->visualItemRect(scenario->item(1)).center();
    QTest::mousePress(scenario->viewport(), Qt::RightButton, {}, second);
    openMenu("lstSchedule", second)->trigger();
    EXPECT_EQ(clipboard(), "03 04 ");
    EXPECT_EQ(scenario->currentRow(), 0);
}

TEST_F(FramesTest, WheelScrollsAFrameThatItsModeHasDisabled) {
    driver.click("optMode_2");
    auto* const frame = longAnswer();
    ASSERT_FALSE(frame->isEnabled());
    QWidget* const viewport = frame->viewport();
    const QPointF middle = viewport->rect().center();
    QWheelEvent wheel(middle, viewport->mapToGlobal(middle), {}, QPoint(0, -240), Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(viewport, &wheel);
    EXPECT_EQ(frame->verticalScrollBar()->value(), 2);
}

TEST_F(FramesTest, ScrollBarMovesAFrameThatItsModeHasDisabled) {
    driver.click("optMode_2");
    auto* const frame = longAnswer();
    QScrollBar* const bar = frame->verticalScrollBar();
    ASSERT_GT(bar->maximum(), 0);
    QTest::mousePress(bar, Qt::LeftButton, {}, QPoint(bar->width() / 2, bar->height() - 1));
    EXPECT_EQ(bar->value(), bar->maximum());
}

TEST_F(FramesTest, DisabledFramesStayReadableWhenTheDesktopTurnsDark) {
    driver.click("optMode_1");
    const QPalette light = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(60, 60, 64), QColor(40, 40, 44)));
    QCoreApplication::processEvents();
    const QPalette shown = driver.find("txtReceiveWData")->palette();
    QApplication::setPalette(light);
    QCoreApplication::processEvents();
    EXPECT_GT(shown.color(QPalette::Disabled, QPalette::Text).lightness(), 200);
    EXPECT_LT(driver.find("txtReceiveWData")->palette().color(QPalette::Disabled, QPalette::Text).lightness(),
              50);
}

TEST_F(FramesTest, LeavesTheMonitorsListToItsPopUp) { EXPECT_EQ(openMenu("lstMonitor"), nullptr); }

TEST_F(FramesTest, FramesCanBeSelectedWithTheKeyboard) {
    paste("txtReceiveRData", "FF FF A1 04 ");
    auto* const frame = driver.find<QPlainTextEdit>("txtReceiveRData");
    frame->setFocus();
    QTest::keyClick(frame, Qt::Key_Home);
    QTest::keyClick(frame, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(frame, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(frame, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), "FF");
}

/// The window as a desktop scaled to 150 % draws it.
QImage scaledGrab(QWidget& window) {
    constexpr double scale = 1.5;
    QImage picture((QSizeF(window.size()) * scale).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    window.render(&picture);
    return picture;
}

TEST_F(FramesTest, UpperEdgeIsDrawnWhereverItFallsOnAScaledDesktop) {
    driver.click("optMode_2");
    auto* const frame = driver.find<QPlainTextEdit>("txtSendMRData");
    for (const int height : {720, 721, 722, 723}) { // an edge falls on a pixel, or between two
        driver.window().resize(1000, height);
        const QPoint corner = frame->mapTo(&driver.window(), QPoint(0, 0));
        const QImage picture = scaledGrab(driver.window());
        const int column = (corner.x() + frame->width() / 2) * 3 / 2;
        const QRgb inside = picture.pixel(column, (corner.y() + frame->height() / 2) * 3 / 2);
        const int top = corner.y() * 3 / 2;
        EXPECT_TRUE(qGray(picture.pixel(column, top)) < qGray(inside) - 20 ||
                    qGray(picture.pixel(column, top + 1)) < qGray(inside) - 20)
            << height;
    }
}

} // namespace
} // namespace varda::test
