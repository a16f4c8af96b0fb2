#include "window/controls/steady_scroll_bar.h"

#include "support/event_loop.h"

#include <QStyle>
#include <QStyleOptionSlider>

#include <gtest/gtest.h>

#include <chrono>

namespace varda::test {
namespace {

using window::SteadyScrollBar;

class PaintedScrollBar : public SteadyScrollBar {
public:
    using SteadyScrollBar::SteadyScrollBar;

    /// Whether it was painted for what was done to it.
    template <typename Change>
    bool isPaintedAfter(Change&& change) {
        runFor(std::chrono::milliseconds(30));
        painted_ = 0;
        change();
        runUntil([this] { return painted_ > 0; }, std::chrono::milliseconds(60));
        return painted_ > 0;
    }
    int painted() const { return painted_; }
    QRect paintedSlider() const { return paintedSlider_; }
    QRect slider() const {
        QStyleOptionSlider option;
        initStyleOption(&option);
        return style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        ++painted_;
        paintedSlider_ = slider();
        SteadyScrollBar::paintEvent(event);
    }

private:
    int painted_ = 0;
    QRect paintedSlider_;
};

/// Of a list with its end in sight.
class SteadyScrollBarTest : public testing::Test {
protected:
    void showWith(int lines) {
        bar.resize(16, 300);
        bar.setPageStep(20);
        bar.setRange(0, lines);
        bar.setValue(lines);
        bar.show();
    }
    void addLine() {
        bar.setRange(0, bar.maximum() + 1);
        bar.setValue(bar.maximum());
    }

    PaintedScrollBar bar{Qt::Vertical};
};

TEST_F(SteadyScrollBarTest, IsPaintedWhereItLooksOtherThanBeforeAndNowhereElse) {
    showWith(1500);
    EXPECT_TRUE(bar.isPaintedAfter([this] { bar.setValue(0); }));
    EXPECT_TRUE(bar.isPaintedAfter([this] { bar.setValue(1); })) << "no longer at its begin";
    EXPECT_TRUE(bar.isPaintedAfter([this] { bar.setValue(750); }));
    EXPECT_TRUE(bar.isPaintedAfter([this] { bar.setRange(0, 100); }));
    EXPECT_TRUE(bar.isPaintedAfter([this] { bar.resize(16, 200); }));
    EXPECT_TRUE(bar.isPaintedAfter([this] { bar.setEnabled(false); }));
    EXPECT_FALSE(bar.isPaintedAfter([] {}));
}

TEST_F(SteadyScrollBarTest, IsNotPaintedForALineThatDoesNotMoveIt) {
    showWith(20'000);
    EXPECT_FALSE(bar.isPaintedAfter([this] {
        const QRect before = bar.slider();
        addLine();
        ASSERT_EQ(bar.slider(), before);
    }));
    runFor(std::chrono::milliseconds(1100));
    EXPECT_EQ(bar.painted(), 0);
}

TEST_F(SteadyScrollBarTest, FollowsAListThatGrowsOnceASecond) {
    showWith(5);
    ASSERT_TRUE(runUntil([this] { return bar.painted() > 0; }));
    runFor(std::chrono::milliseconds(30)); // and what showing it brings besides
    const QRect before = bar.slider();
    const auto start = std::chrono::steady_clock::now();
    const int painted = bar.painted();
    for (int line = 0; line < 60; ++line) {
        addLine();
        runFor(std::chrono::milliseconds(5));
    }
    const auto seconds = (std::chrono::steady_clock::now() - start) / std::chrono::seconds(1);
    ASSERT_NE(bar.slider(), before);
    EXPECT_LE(bar.painted() - painted, seconds + 1);
    while (bar.paintedSlider() == bar.slider()) {
        addLine();
    }
    runFor(std::chrono::milliseconds(5));
    bar.grab(); // a picture of it is not what is seen
    const int pictured = bar.painted();
    EXPECT_TRUE(runUntil([&] { return bar.painted() > pictured && bar.paintedSlider() == bar.slider(); }));
}

TEST_F(SteadyScrollBarTest, FollowsTheUserAtOnce) {
    showWith(100);
    EXPECT_TRUE(bar.isPaintedAfter([this] { bar.setValue(50); }));
    EXPECT_TRUE(bar.isPaintedAfter([this] { bar.setValue(100); })) << "back at the end";
    bar.setSliderDown(true);
    EXPECT_TRUE(bar.isPaintedAfter([this] { bar.setRange(0, 60); }));
}

} // namespace
} // namespace varda::test
