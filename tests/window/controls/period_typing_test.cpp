#include "support/window_test.h"

#include <QApplication>
#include <QWheelEvent>

namespace varda::test {
namespace {

struct PeriodField {
    const char* mode;
    const char* name;
};

/// The period field of one master page, as it is typed into.
class PeriodTypingTest : public WindowTest, public testing::WithParamInterface<PeriodField> {
protected:
    PeriodTypingTest() {
        driver.click(GetParam().mode);
        field()->setFocus();
        field()->selectAll();
    }

    QLineEdit* field() { return driver.find<QLineEdit>(GetParam().name); }

    /// What the field shows after each key, separated by blanks.
    std::string shownAfter(const char* keys) {
        QStringList shown;
        const QString typed = QString::fromLatin1(keys);
        for (const QChar key : typed) {
            QTest::keyClick(field(), key.toLatin1());
            shown.append(field()->text());
        }
        return shown.join(QLatin1Char(' ')).toStdString();
    }
};

TEST_P(PeriodTypingTest, DigitsContinueThoseThatWereRewritten) {
    EXPECT_EQ(shownAfter("50"), "100 100");
    field()->selectAll();
    EXPECT_EQ(shownAfter("250"), "100 100 250");
    field()->selectAll();
    EXPECT_EQ(shownAfter("1000"), "100 100 100 1000");
    field()->selectAll();
    EXPECT_EQ(shownAfter("abc"), "500 500 500");
}

TEST_P(PeriodTypingTest, RewritingLeavesTheCaretBehindTheNewText) {
    shownAfter("5");
    EXPECT_EQ(field()->cursorPosition(), 3);
    field()->setCursorPosition(0);
    shownAfter("x");
    EXPECT_EQ(field()->cursorPosition(), 3);
}

TEST_P(PeriodTypingTest, NumberBelowAHundredStaysTheShortestPeriod) {
    EXPECT_EQ(shownAfter("7"), "100");
    driver.find("txtTotalData")->setFocus();
    EXPECT_EQ(text(GetParam().name), "100");
}

TEST_P(PeriodTypingTest, AnythingElseEndsTheSeries) {
    const std::vector<std::pair<const char*, std::function<void()>>> ends = {
        {"another key", [this] { QTest::keyClick(field(), Qt::Key_Right); }},
        {"a click",
         [this] { QTest::mouseClick(field(), Qt::LeftButton, {}, QPoint(field()->width() - 4, 8)); }},
        {"a move of the caret and back",
         [this] {
             field()->setCursorPosition(0);
             field()->setCursorPosition(3);
         }},
        {"marking",
         [this] {
             field()->selectAll();
             field()->deselect();
             field()->end(false);
         }},
        {"an arrow key that has nothing to change", [this] { QTest::keyClick(field(), Qt::Key_Down); }},
        {"a turn of the wheel that has nothing to change",
         [this] {
             const QPointF middle = field()->rect().center();
             QWheelEvent wheel(middle, field()->mapToGlobal(middle), {}, QPoint(0, -120), Qt::NoButton, {},
                               Qt::NoScrollPhase, false);
             QCoreApplication::sendEvent(field(), &wheel);
         }},
        {"a text of the program's", [this] { paste(GetParam().name, "300"); }},
        {"leaving",
         [this] {
             driver.find("cmdHelp")->setFocus();
             field()->setFocus(Qt::OtherFocusReason);
             field()->end(false);
         }},
    };
    for (const auto& [name, end] : ends) {
        field()->selectAll();
        ASSERT_EQ(shownAfter("2"), "100") << name;
        end();
        const QString before = field()->text();
        EXPECT_EQ(shownAfter("5"), before.toStdString() + "5") << name;
    }
}

TEST_P(PeriodTypingTest, ShiftThatSomeKeyboardsNeedForDigitsGoesOn) {
    shownAfter("2");
    QTest::keyClick(field(), Qt::Key_Shift);
    EXPECT_EQ(shownAfter("50"), "100 250");
}

INSTANTIATE_TEST_SUITE_P(AllFourFields, PeriodTypingTest,
                         testing::Values(PeriodField{"optMode_0", "txtReadTimerValue"},
                                         PeriodField{"optMode_1", "txtWriteTimerValue"},
                                         PeriodField{"optMode_2", "txtMReadTimerValue"},
                                         PeriodField{"optMode_3", "txtMWriteTimerValue"}),
                         [](const auto& field) { return std::string(field.param.name); });

TEST_F(WindowTest, PeriodOfAScenarioIsTypedAsItStands) {
    driver.type("txtScnPeriod", "50");
    EXPECT_EQ(text("txtScnPeriod"), "50");
}

} // namespace
} // namespace varda::test
