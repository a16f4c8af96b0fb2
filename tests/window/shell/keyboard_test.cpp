#include "support/window_test.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTabBar>
#include <QTabWidget>
#include <QWheelEvent>

#include <array>

namespace varda::test {
namespace {

class KeyboardTest : public WindowTest {
protected:
    void key(const char* control, Qt::Key pressed, Qt::KeyboardModifiers modifiers = {}) {
        driver.find(control)->setFocus();
        QTest::keyClick(driver.find(control), pressed, modifiers);
    }

    /// Turns the wheel over a control by so many of its clicks, upwards if positive.
    void turn(const char* control, int clicks, Qt::KeyboardModifiers modifiers = {}) {
        auto* const field = driver.find(control);
        const QPointF middle = field->rect().center();
        QWheelEvent wheel(middle, field->mapToGlobal(middle), {}, QPoint(0, clicks * 120), Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(field, &wheel);
    }
};

TEST_F(KeyboardTest, ControlAndADigitChooseTheMode) {
    for (int mode = 5; mode >= 0; --mode) {
        QTest::keyClick(&driver.window(), static_cast<Qt::Key>(Qt::Key_1 + mode), Qt::ControlModifier);
        EXPECT_EQ(driver.find<QTabWidget>("tabMode")->currentIndex(), mode);
        EXPECT_TRUE(driver.find<QAbstractButton>(("optMode_" + std::to_string(mode)).c_str())->isChecked());
    }
}

TEST_F(KeyboardTest, WheelOverTheTabsChangesNothing) {
    for (const char* const tabs : {"tabMode", "settingsTabs"}) {
        auto* const bar = driver.find<QTabWidget>(tabs)->tabBar();
        for (const int clicks : {-1, 1, -3}) {
            const QPointF middle = bar->rect().center();
            QWheelEvent wheel(middle, bar->mapToGlobal(middle), {}, QPoint(0, clicks * 120), Qt::NoButton, {},
                              Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(bar, &wheel);
            EXPECT_EQ(driver.find<QTabWidget>(tabs)->currentIndex(), 0) << tabs;
        }
    }
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
}

TEST_F(KeyboardTest, ChoosingAModeByKeyPutsTheFocusOnItsOption) {
    for (const bool open : {false, true}) {
        if (open) {
            openLine();
        }
        for (int from = 0; from < 6; ++from) {
            for (int to = 0; to < 6; ++to) {
                driver.click(("optMode_" + std::to_string(from)).c_str());
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(Qt::Key_1 + to),
                                Qt::ControlModifier);
                EXPECT_EQ(QApplication::focusWidget(),
                          driver.find(("optMode_" + std::to_string(to)).c_str()));
            }
        }
    }
}

TEST_F(KeyboardTest, F5SendsTheRequestOfTheShownMasterPage) {
    openLine();
    driver.choose("cbRegister", "R");
    driver.choose("cbRegAddress", "0000");
    driver.choose("cbRegBit", "0");
    driver.choose("cbRLength", "8");
    key("txtRDDA", Qt::Key_F5);
    EXPECT_EQ(sent(9).size(), 9U);
}

TEST_F(KeyboardTest, F5PressesSendOnEveryMasterPage) {
    openLine();
    for (const int mode : {0, 1, 2, 3}) {
        driver.click(("optMode_" + std::to_string(mode)).c_str());
        QTest::keyClick(&driver.window(), Qt::Key_F5);
        EXPECT_EQ(driver.boxTitle(), "Error") << mode; // the fields are empty, which the button tells
        driver.closeBox();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(KeyboardTest, F5DoesNothingWhereTheButtonIsDisabledOrThereIsNone) {
    QTest::keyClick(&driver.window(), Qt::Key_F5);
    EXPECT_EQ(driver.box(), nullptr);
    for (const char* const mode : {"optMode_4", "optMode_5"}) {
        driver.click(mode);
        QTest::keyClick(&driver.window(), Qt::Key_F5);
        EXPECT_EQ(driver.box(), nullptr) << mode;
    }
}

TEST_F(KeyboardTest, F5LeavesTheFocusInTheField) {
    openLine();
    key("txtRDDA", Qt::Key_F5);
    driver.closeBox();
    EXPECT_TRUE(driver.find("txtRDDA")->hasFocus());
}

constexpr std::array<std::array<const char*, 2>, 4> periodFields = {{{"optMode_0", "txtReadTimerValue"},
                                                                     {"optMode_1", "txtWriteTimerValue"},
                                                                     {"optMode_2", "txtMReadTimerValue"},
                                                                     {"optMode_3", "txtMWriteTimerValue"}}};

TEST_F(KeyboardTest, ArrowKeysChangeEveryPeriodByTenAndWithControlByAHundred) {
    for (const auto& [mode, field] : periodFields) {
        driver.click(mode);
        paste(field, "500");
        key(field, Qt::Key_Up);
        EXPECT_EQ(text(field), "510");
        key(field, Qt::Key_Up, Qt::ControlModifier);
        EXPECT_EQ(text(field), "610");
        key(field, Qt::Key_Down);
        EXPECT_EQ(text(field), "600");
        key(field, Qt::Key_Down, Qt::ControlModifier);
        EXPECT_EQ(text(field), "500");
    }
}

TEST_F(KeyboardTest, WheelChangesThePeriodByTenAndWithControlByAHundred) {
    driver.find("txtReadTimerValue")->setFocus();
    turn("txtReadTimerValue", 2);
    EXPECT_EQ(text("txtReadTimerValue"), "520");
    turn("txtReadTimerValue", -1, Qt::ControlModifier);
    EXPECT_EQ(text("txtReadTimerValue"), "420");
}

TEST_F(KeyboardTest, WheelLeavesAPeriodAloneThatHasNoFocus) {
    driver.find("txtRDDA")->setFocus();
    turn("txtReadTimerValue", 1);
    EXPECT_EQ(text("txtReadTimerValue"), "500");
}

TEST_F(KeyboardTest, PeriodsStayInTheirRange) {
    paste("txtReadTimerValue", "105");
    key("txtReadTimerValue", Qt::Key_Down);
    EXPECT_EQ(text("txtReadTimerValue"), "100");
    paste("txtReadTimerValue", "32760");
    key("txtReadTimerValue", Qt::Key_Up);
    EXPECT_EQ(text("txtReadTimerValue"), "32767");
}

TEST_F(KeyboardTest, ScenarioPeriodTakesStepsToo) {
    key("txtScnPeriod", Qt::Key_Up);
    EXPECT_EQ(text("txtScnPeriod"), "510");
    paste("txtScnPeriod", "soon");
    key("txtScnPeriod", Qt::Key_Down);
    EXPECT_EQ(text("txtScnPeriod"), "490");
    paste("txtScnPeriod", "15");
    key("txtScnPeriod", Qt::Key_Down);
    EXPECT_EQ(text("txtScnPeriod"), "10");
}

TEST_F(KeyboardTest, StepDownNeverRaisesAPeriod) {
    paste("txtScnPeriod", "3");
    key("txtScnPeriod", Qt::Key_Down);
    EXPECT_EQ(text("txtScnPeriod"), "3");
    key("txtScnPeriod", Qt::Key_Up);
    EXPECT_EQ(text("txtScnPeriod"), "13");
}

TEST_F(KeyboardTest, StepBeyondTheLargestNumberLeavesIt) {
    paste("txtScnPeriod", "2147483647");
    key("txtScnPeriod", Qt::Key_Up);
    EXPECT_EQ(text("txtScnPeriod"), "2147483647");
    paste("txtScnPeriod", "-2147483648");
    key("txtScnPeriod", Qt::Key_Down);
    EXPECT_EQ(text("txtScnPeriod"), "-2147483648");
}

TEST_F(KeyboardTest, StepsUnderstandWhatThePeriodUnderstands) {
    paste("txtScnPeriod", "&H64");
    key("txtScnPeriod", Qt::Key_Up);
    EXPECT_EQ(text("txtScnPeriod"), "110");
}

TEST_F(KeyboardTest, PeriodOfAnOpenPortTakesNoWheel) {
    openLine();
    ASSERT_FALSE(driver.isEnabled("txtReadTimerValue"));
    turn("txtReadTimerValue", 1);
    EXPECT_EQ(text("txtReadTimerValue"), "500");
}

} // namespace
} // namespace varda::test
