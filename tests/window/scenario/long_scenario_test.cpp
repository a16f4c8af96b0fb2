#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QFontMetricsF>
#include <QListWidget>
#include <QProxyStyle>
#include <QScrollBar>
#include <QStyleOptionViewItem>

#include <algorithm>

#include <cmath>

namespace varda::test {
namespace {

/// Counts what a list has measured and painted.
class CountingStyle : public QProxyStyle {
public:
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        measured += type == CT_ItemViewItem ? 1 : 0;
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        if (const auto* const item = qstyleoption_cast<const QStyleOptionViewItem*>(option)) {
            painted.append(item->text);
        }
        QProxyStyle::drawControl(element, option, painter, widget);
    }

    mutable int measured = 0;
    mutable QStringList painted;
};

class LongScenarioTest : public WindowTest {
protected:
    void SetUp() override { schedule()->setStyle(&style); }
    void TearDown() override { schedule()->setStyle(nullptr); }

    QListWidget* schedule() { return driver.find<QListWidget>("lstSchedule"); }

    void load(int lines, const std::string& frame) {
        std::string content = "[Information]\r\nTotal=" + std::to_string(lines) + "\r\n[Scenario]\r\n";
        for (int index = 0; index < lines; ++index) {
            content += "Scenario" + std::to_string(index) + "=" + frame + "\r\n";
        }
        writeBytes(folder.file("long.scn"), content);
        driver.click("cmdLoadScenario");
        chooseFile(folder.file("long.scn"));
        show();
    }

    void show() {
        schedule()->viewport()->repaint();
        QCoreApplication::processEvents();
    }

    TemporaryFolder folder;
    CountingStyle style;
    static constexpr int fewItems = 10; ///< whatever the number of lines
};

TEST_F(LongScenarioTest, LoadingMeasuresNoLine) {
    load(20'000, "FF FF 21 03 20 00 04 BC 4A");
    EXPECT_EQ(schedule()->count(), 20'000);
    EXPECT_LT(style.measured, fewItems);
}

TEST_F(LongScenarioTest, AddAndDelMeasureNoLine) {
    load(20'000, "FF FF 21 03 20 00 04 BC 4A");
    style.measured = 0;
    driver.click("cmdAddScenario");
    show();
    EXPECT_EQ(schedule()->count(), 20'001);
    EXPECT_LT(style.measured, fewItems);
    schedule()->setCurrentRow(10'000);
    style.measured = 0;
    driver.click("cmdDelScenario");
    show();
    EXPECT_EQ(schedule()->count(), 20'000);
    EXPECT_EQ(schedule()->currentRow(), 10'000);
    EXPECT_LT(style.measured, fewItems);
}

TEST_F(LongScenarioTest, NoMoreOfALineIsPaintedThanThereIsRoomFor) {
    const std::string longLine = [] {
        std::string groups;
        for (int index = 0; index < 5'000; ++index) {
            groups += std::to_string(index % 90 + 10) + ' ';
        }
        return groups;
    }();
    load(50, longLine);
    QScrollBar* const bar = schedule()->horizontalScrollBar();
    // not always whole pixels, which adds up
    const double character = QFontMetricsF(schedule()->font()).horizontalAdvance(QLatin1Char('0'));
    for (const int hidden : {0, 1'000, 14'000}) {
        style.painted.clear();
        bar->setValue(static_cast<int>(std::ceil(hidden * character)));
        show();
        ASSERT_FALSE(style.painted.isEmpty());
        EXPECT_LT(style.painted.first().size(), schedule()->width());
        EXPECT_TRUE(QString::fromStdString(longLine).mid(hidden).startsWith(style.painted.first())) << hidden;
    }
}

TEST_F(LongScenarioTest, TheEndOfTheLongestLineCanBeScrolledTo) {
    QScrollBar* const bar = schedule()->horizontalScrollBar();
    const int character = schedule()->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    schedule()->addItems({QStringLiteral("01"), QString(2'000, QLatin1Char('F')), QStringLiteral("02")});
    show();
    EXPECT_GE(bar->maximum() + schedule()->viewport()->width(), 2'000 * character);
    schedule()->setCurrentRow(1);
    driver.find("cmdDelScenario")->setEnabled(true);
    driver.click("cmdDelScenario");
    show();
    EXPECT_EQ(bar->maximum(), 0);
}

} // namespace
} // namespace varda::test
