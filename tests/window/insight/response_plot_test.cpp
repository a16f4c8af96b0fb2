#include "window/insight/response_plot.h"

#include "core/insight/link_statistics.h"
#include "support/manual_clock.h"

#include <QImage>

#include <gtest/gtest.h>

#include <chrono>

namespace varda::test {
namespace {

using namespace std::chrono_literals;
using window::ResponsePlot;

/// A plot in colours that are easily told apart: frame green, responses red, marks and words blue.
class ResponsePlotTest : public testing::Test {
protected:
    ResponsePlotTest() {
        QPalette palette;
        palette.setColor(QPalette::Base, Qt::white);
        palette.setColor(QPalette::Mid, QColor(0, 255, 0));
        palette.setColor(QPalette::Highlight, QColor(255, 0, 0));
        palette.setColor(QPalette::Text, QColor(0, 0, 255));
        plot_.setPalette(palette);
        plot_.resize(800, 300);
        clock.advance(3'600'000);
        statistics.open();
        plot_.plot(statistics, clock);
        draw();
        area = placeOf([](QColor colour) { return colour.green() > 200 && colour.red() < 100; });
    }

    /// A request, and what became of it just now.
    void tell(Outcome outcome, std::chrono::milliseconds time = 0ms) {
        const Clock::Time now = clock.now();
        Exchange exchange;
        exchange.mode = Mode::WordRead;
        exchange.outcome = Outcome::Sent;
        exchange.request = {5, 0, 0x23, 3, 0, 2, 2, 0x0B, 0x22};
        exchange.sent = {now - time, now - time};
        statistics.told(exchange);
        exchange.outcome = outcome;
        exchange.received = {now, now};
        statistics.told(exchange);
    }
    void draw() {
        plot_.refresh();
        picture = plot_.grab().toImage();
    }
    static bool isRed(QColor colour) {
        return colour.red() > 150 && colour.blue() < 120 && colour.green() < 120;
    }
    static bool isBlue(QColor colour) {
        return colour.blue() > 150 && colour.red() < 120 && colour.green() < 120;
    }

    /// The smallest rectangle around the pixels of a colour within another one.
    template <typename Is>
    QRect placeOf(Is&& is, QRect within = {}) const {
        within = within.isNull() ? picture.rect() : within;
        QRect place;
        for (int y = within.top(); y <= within.bottom(); ++y) {
            for (int x = within.left(); x <= within.right(); ++x) {
                place = is(picture.pixelColor(x, y)) ? place.united(QRect(x, y, 1, 1)) : place;
            }
        }
        return place;
    }
    QRect inside() const { return area.adjusted(1, 1, -1, -1); }
    int columnOf(double minutesAgo) const {
        return area.right() - static_cast<int>(minutesAgo / 10 * area.width());
    }
    int rowOf(double part) const { return area.bottom() - static_cast<int>(part * area.height()); }
    std::string words() const { return plot_.accessibleDescription().toStdString(); }

    ManualClock clock;
    LinkStatistics statistics;
    QImage picture;
    QRect area;

private:
    ResponsePlot plot_;
};

TEST_F(ResponsePlotTest, WithoutSamplesThereIsAFrameAlone) {
    EXPECT_GT(area.width(), 600);
    EXPECT_GT(area.height(), 200);
    EXPECT_TRUE(placeOf(isRed, inside()).isNull());
    EXPECT_TRUE(placeOf(isBlue, inside()).isNull());
}

TEST_F(ResponsePlotTest, AnAnswerStandsAtItsTimeAndAsHighAsItTook) {
    tell(Outcome::Answered, 40ms);
    clock.advance(5 * 60'000);
    tell(Outcome::Answered, 100ms); // makes the scale go up to 100 ms
    clock.advance(60'000);
    draw();
    const QRect older = placeOf(isRed, QRect(inside().topLeft(), QPoint(columnOf(4), inside().bottom())));
    EXPECT_NEAR(older.center().x(), columnOf(6), 2);
    EXPECT_NEAR(older.center().y(), rowOf(0.4), 3);
    EXPECT_LE(older.width(), 4);
    EXPECT_LE(older.height(), 5);
    const QRect newer = placeOf(isRed, QRect(QPoint(columnOf(4), area.top() - 2), inside().bottomRight()));
    EXPECT_NEAR(newer.center().x(), columnOf(1), 2);
    EXPECT_NEAR(newer.center().y(), rowOf(1), 3);
}

TEST_F(ResponsePlotTest, AnswersOfOneColumnAreAStrokeFromTheShortestToTheLongest) {
    for (const auto time : {20ms, 100ms, 60ms}) {
        tell(Outcome::Answered, time);
    }
    clock.advance(60'000);
    draw();
    const QRect stroke = placeOf(isRed, inside());
    EXPECT_NEAR(stroke.top(), rowOf(1), 3);
    EXPECT_NEAR(stroke.bottom(), rowOf(0.2), 3);
    EXPECT_LE(stroke.width(), 4);
    const int middle = stroke.center().x();
    EXPECT_TRUE(isRed(picture.pixelColor(middle, rowOf(0.5))) ||
                isRed(picture.pixelColor(middle + 1, rowOf(0.5))));
}

/// Broad above and pointed below.
TEST_F(ResponsePlotTest, ASilenceIsATriangleAtItsTime) {
    tell(Outcome::Silent);
    clock.advance(3 * 60'000);
    draw();
    const QRect mark = placeOf(isBlue, inside());
    EXPECT_NEAR(mark.center().x(), columnOf(3), 2);
    EXPECT_GE(mark.bottom(), area.bottom() - 3);
    EXPECT_GE(mark.height(), 4);
    EXPECT_GE(placeOf(isBlue, QRect(mark.topLeft(), QSize(mark.width(), 1))).width(), 4);
    EXPECT_LE(placeOf(isBlue, QRect(mark.bottomLeft(), QSize(mark.width(), 1))).width(), 2);
    EXPECT_TRUE(isBlue(picture.pixelColor(mark.center().x(), mark.top() + 1)));
}

/// Apart above and below, together in the middle.
TEST_F(ResponsePlotTest, AnAnswerThatWasDroppedIsACrossAtItsTime) {
    tell(Outcome::WrongLength);
    clock.advance(7 * 60'000);
    draw();
    const QRect mark = placeOf(isBlue, inside());
    EXPECT_NEAR(mark.center().x(), columnOf(7), 2);
    EXPECT_GE(mark.bottom(), area.bottom() - 3);
    EXPECT_GE(mark.width(), 5);
    EXPECT_GE(mark.height(), 5);
    EXPECT_TRUE(isBlue(picture.pixelColor(mark.center())));
    EXPECT_FALSE(isBlue(picture.pixelColor(mark.center().x(), mark.top())));
    EXPECT_FALSE(isBlue(picture.pixelColor(mark.center().x(), mark.bottom())));
    EXPECT_FALSE(isBlue(picture.pixelColor(mark.left(), mark.center().y())));
}

TEST_F(ResponsePlotTest, MovesOnWithTimeWhereNothingComes) {
    tell(Outcome::Answered, 40ms);
    tell(Outcome::Silent);
    clock.advance(9 * 60'000 + 30'000);
    draw();
    EXPECT_FALSE(placeOf(isRed, inside()).isNull());
    EXPECT_NE(words().find("1 answer, the slowest after 40.0 ms, 1 silence, 0 dropped"), std::string::npos)
        << words();
    clock.advance(60'000);
    draw();
    EXPECT_TRUE(placeOf(isRed, inside()).isNull());
    EXPECT_TRUE(placeOf(isBlue, inside()).isNull());
    EXPECT_NE(words().find("0 answers, the slowest after 0.0 ms, 0 silences, 0 dropped"), std::string::npos)
        << words();
    tell(Outcome::Answered, 8ms); // of the scale the old ones are no part any more
    clock.advance(60'000);
    draw();
    EXPECT_NEAR(placeOf(isRed, inside()).center().y(), rowOf(0.8), 3);
}

} // namespace
} // namespace varda::test
