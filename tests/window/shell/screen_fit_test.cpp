#include "window/shell/screen_fit_fixture.h"

#include <QApplication>

namespace varda::test {
namespace {

TEST_F(ScreenFitTest, AFieldThatGetsTheFocusFromElsewhereComesIntoSight) {
    resize({700, 300});
    driver.find("txtScnReceive")->setFocus();
    EXPECT_FALSE(driver.find("txtScnReceive")->visibleRegion().isEmpty());
    driver.find("cmdAddScenario")->setFocus();
    EXPECT_FALSE(driver.find("cmdAddScenario")->visibleRegion().isEmpty());
}

TEST_F(ScreenFitTest, EveryPageFitsEveryScreenAtEveryScale) {
    for (const Screen& screen : screens) {
        SCOPED_TRACE("screen of " + std::to_string(screen.width) + " x " + std::to_string(screen.height) +
                     " at " + std::to_string(screen.percent) + " %");
        expectFits(roomOn(screen));
    }
}

/// The fields of the simulation depend on what is simulated.
TEST_F(ScreenFitTest, EveryKindOfSimulationFitsEveryScreen) {
    showMost(4);
    auto* const kinds = driver.find<QComboBox>("cbSimMode");
    EXPECT_GE(kinds->count(), 6);
    for (int kind = 0; kind < kinds->count(); ++kind) {
        driver.choose("cbSimMode", kinds->itemText(kind).toStdString());
        for (const Screen& screen : screens) {
            resize(roomOn(screen));
            SCOPED_TRACE(kinds->itemText(kind).toStdString() + " in " +
                         std::to_string(driver.window().width()) + " x " +
                         std::to_string(driver.window().height()));
            EXPECT_EQ(driver.window().size(), roomOn(screen));
            expectAllInside();
            expectNoOverlaps();
            expectOnlyPagesScroll();
        }
    }
}

TEST_F(ScreenFitTest, EveryPageFitsWithTheLettersOfOtherDesktops) {
    const QFont before = QApplication::font();
    QFont larger(before);
    larger.setPointSizeF(11);
    QApplication::setFont(larger);
    resize({1366 - panelAndTitle.width(), 768 - panelAndTitle.height()});
    for (int mode = 0; mode < modeCount; ++mode) {
        showMost(mode);
        expectAllInside();
        expectNoOverlaps();
    }
    QApplication::setFont(before);
}

TEST_F(ScreenFitTest, EverythingCanBeScrolledToInAWindowOfAnySize) {
    resize({400, 300});
    EXPECT_EQ(driver.window().size(), QSize(400, 300));
    for (int mode = 0; mode < modeCount; ++mode) {
        showMost(mode);
        resize({400, 300});
        expectAllInside();
    }
}

TEST_F(ScreenFitTest, TabBringsWhatItReachesIntoSight) {
    resize({900, 440});
    showMost(4);
    driver.find("cbSimMode")->setFocus();
    for (int stops = 0; stops < 60 && QApplication::focusWidget() != driver.find("txtSimStatus"); ++stops) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_FALSE(QApplication::focusWidget()->visibleRegion().isEmpty())
            << nameOf(QApplication::focusWidget());
    }
    EXPECT_EQ(QApplication::focusWidget(), driver.find("txtSimStatus"));
}

TEST_F(ScreenFitTest, NothingScrollsInAWindowOfTheUsualSize) {
    resize({1024, 768});
    for (int mode = 0; mode < modeCount; ++mode) {
        showMost(mode);
        for (const QScrollArea* const area : driver.window().findChildren<QScrollArea*>()) {
            EXPECT_FALSE(area->isVisible() && area->verticalScrollBar()->isVisible())
                << nameOf(area->widget()) << " in mode " << mode;
        }
    }
}

TEST(FirstSize, IsNoLargerThanTheScreenHasRoomFor) {
    Program program({QStringLiteral("."), 1});
    const QSize room = program.window().screen()->availableSize();
    EXPECT_LT(program.window().width(), room.width());
    EXPECT_LT(program.window().height(), room.height());
}

TEST(FirstSize, LeavesThePlaceToTheWindowManager) {
    Program program({QStringLiteral("."), 1});
    EXPECT_FALSE(program.window().testAttribute(Qt::WA_Moved));
}

} // namespace
} // namespace varda::test
