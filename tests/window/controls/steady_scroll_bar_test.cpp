#include "window/controls/steady_scroll_bar.h"

#include "support/event_loop.h"

#include <QStyle>
#include <QStyleOptionSlider>

#include <gtest/gtest.h>

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
    QRect slider() const {
        QStyleOptionSlider option;
        initStyleOption(&option);
        return style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        ++painted_;
        SteadyScrollBar::paintEvent(event);
    }

private:
    int painted_ = 0;
};

TEST(SteadyScrollBar, IsPaintedWhereItLooksOtherThanBeforeAndNowhereElse) {
    PaintedScrollBar bar(Qt::Vertical);
    bar.resize(16, 300);
    bar.setPageStep(20);
    bar.setRange(0, 1500);
    bar.setValue(1500);
    bar.show();
    const auto line = [&bar] { // one more, with the end in sight
        bar.setRange(0, bar.maximum() + 1);
        bar.setValue(bar.maximum());
    };
    int painted = 0;
    int moved = 0;
    for (int count = 0; count < 12; ++count) {
        const QRect before = bar.slider();
        const bool isPainted = bar.isPaintedAfter(line);
        painted += isPainted ? 1 : 0;
        moved += bar.slider() != before ? 1 : 0;
        EXPECT_TRUE(isPainted || bar.slider() == before) << count;
    }
    EXPECT_LT(painted, 12) << moved << " times the slider moved";
    EXPECT_TRUE(bar.isPaintedAfter([&bar] { bar.setValue(0); }));
    EXPECT_TRUE(bar.isPaintedAfter([&bar] { bar.setValue(1); })) << "no longer at its begin";
    EXPECT_TRUE(bar.isPaintedAfter([&bar] { bar.setValue(750); }));
    EXPECT_TRUE(bar.isPaintedAfter([&bar] { bar.setRange(0, 100); }));
    EXPECT_TRUE(bar.isPaintedAfter([&bar] { bar.resize(16, 200); }));
    EXPECT_TRUE(bar.isPaintedAfter([&bar] { bar.setEnabled(false); }));
    EXPECT_FALSE(bar.isPaintedAfter([] {}));
}

} // namespace
} // namespace varda::test
