#include "window/insight/history_delegate.h"
#include "window/insight/watch_model.h"

#include "core/protocol/independent_check.h"
#include "support/manual_clock.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace varda::test {
namespace {

using namespace window;

/// The last values of W 0000, drawn red on white.
class HistoryDelegateTest : public testing::Test {
protected:
    static constexpr int width =
        3 + 4 * static_cast<int>(RegisterWatch::longestHistory) + 3; ///< four pixels a value
    static constexpr int height = 27;

    HistoryDelegateTest() { watch_.open(); }

    void see(int value) {
        Exchange answer;
        answer.mode = Mode::WordRead;
        answer.outcome = Outcome::Answered;
        answer.request = {5, 0, 0x23, 3, 0, 2, 1, 0x4B, 0x23};
        answer.answer =
            checked({0, 5, 0xA3, 2, static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)});
        watch_.told(answer);
    }
    QImage draw(bool isSelected = false) {
        model_.refresh();
        EXPECT_EQ(model_.rowCount(), 1);
        QImage picture(width, height, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        QStyleOptionViewItem option;
        option.rect = picture.rect();
        option.palette.setColor(QPalette::Text, Qt::red);
        option.palette.setColor(QPalette::HighlightedText, Qt::green);
        option.palette.setColor(QPalette::Highlight, Qt::white);
        option.state = isSelected ? QStyle::State_Enabled | QStyle::State_Selected : QStyle::State_Enabled;
        HistoryDelegate().paint(&painter, option, model_.index(0, WatchModel::History));
        return picture;
    }
    /// The heights at which a column has the line's colour, from the top.
    static std::vector<int> line(const QImage& picture, int fromRight, QColor colour = Qt::red) {
        std::vector<int> heights;
        for (int y = 0; y < height; ++y) {
            if (picture.pixelColor(width - 3 - fromRight, y) == colour) {
                heights.push_back(y);
            }
        }
        return heights;
    }

    static constexpr int top = 3;
    static constexpr int bottom = height - 3;

private:
    ManualClock clock_;
    RegisterWatch watch_;
    WatchModel model_{watch_, noNames(), clock_, nullptr};
};

TEST_F(HistoryDelegateTest, EachValueIsAStepAsHighAsItIsAmongTheOthers) {
    for (const int value : {100, 300, 200}) {
        see(value);
    }
    const QImage picture = draw();
    ASSERT_EQ(line(picture, 2).size(), 1U);
    EXPECT_NEAR(line(picture, 2)[0], (top + bottom) / 2.0, 1);
    ASSERT_EQ(line(picture, 6).size(), 1U);
    EXPECT_NEAR(line(picture, 6)[0], top, 1);
    ASSERT_EQ(line(picture, 10).size(), 1U);
    EXPECT_NEAR(line(picture, 10)[0], bottom, 1);
    EXPECT_TRUE(line(picture, 16).empty()) << "before the first value";
}

TEST_F(HistoryDelegateTest, FromOneValueToTheNextItGoesStraightUpOrDown) {
    see(100);
    see(300);
    const QImage picture = draw();
    std::size_t longest = 0;
    for (int fromRight = 2; fromRight <= 6; ++fromRight) {
        longest = std::max(longest, line(picture, fromRight).size());
    }
    EXPECT_GE(longest, static_cast<std::size_t>(bottom - top - 1));
}

TEST_F(HistoryDelegateTest, TheLastOfManyValuesFillTheCell) {
    for (int value = 0; value < 200; ++value) {
        see(value);
    }
    const QImage picture = draw();
    ASSERT_FALSE(line(picture, 2).empty());
    EXPECT_NEAR(line(picture, 2)[0], top, 1);
    ASSERT_FALSE(line(picture, width - 8).empty());
    EXPECT_NEAR(line(picture, width - 8).back(), bottom, 1);
}

TEST_F(HistoryDelegateTest, InAChosenRowItHasTheColourOfItsTexts) {
    see(100);
    const QImage picture = draw(true);
    EXPECT_TRUE(line(picture, 2).empty());
    EXPECT_FALSE(line(picture, 2, Qt::green).empty());
}

} // namespace
} // namespace varda::test
