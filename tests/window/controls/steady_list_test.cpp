#include "window/controls/steady_list.h"

#include "core/protocol/random_draws.h"
#include "support/event_loop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScreen>
#include <QScrollBar>
#include <QStandardItemModel>

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <functional>
#include <iostream>
#include <vector>

namespace varda::test {
namespace {

class SteadyListTest : public testing::Test, public QObject {
protected:
    SteadyListTest() {
        list.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
        list.setModel(&lines);
        list.resize(200, 300);
        list.show();
        for (QScrollBar* const bar : bars) {
            bar->installEventFilter(this);
        }
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        painted += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

    void add(int count, const QString& text) {
        for (int line = 0; line < count; ++line) {
            lines.appendRow(new QStandardItem(text));
        }
        list.showEnd();
        runFor(std::chrono::milliseconds(5));
    }

    bool isShown(const QScrollBar* bar) {
        return runUntil([bar] { return bar->isVisible(); }, std::chrono::milliseconds(200));
    }

    /// Whether a part of the list looks on the screen as it does painted anew.
    bool isSeenAsItIs(QWidget* part) {
        const QRect place(part->mapTo(&list, QPoint()), part->size());
        const QImage seen = list.screen()->grabWindow(list.winId()).toImage().copy(place);
        return !part->isVisible() || seen.convertToFormat(QImage::Format_RGB32) ==
                                         part->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }

    bool isSeen(QWidget* part) {
        return runUntil([this, part] { return isSeenAsItIs(part); }, std::chrono::seconds(5));
    }
    bool areLinesSeen() { return isSeen(list.viewport()); }
    bool areBarsSeen() {
        runFor(std::chrono::milliseconds(20)); // a bar that has its picture taken takes itself for painted
        return isSeen(bars[0]) && isSeen(bars[1]);
    }

    QStandardItemModel lines;
    window::SteadyList list;
    const std::array<QScrollBar*, 2> bars = {list.verticalScrollBar(), list.horizontalScrollBar()};
    int painted = 0;
    const QString wide = QString(500, u'A');
};

TEST_F(SteadyListTest, ShowsItsScrollBarsWhereItNeedsThem) {
    add(1, QStringLiteral("A"));
    EXPECT_FALSE(isShown(bars[0]));
    EXPECT_FALSE(isShown(bars[1]));
    add(100, QStringLiteral("A"));
    EXPECT_TRUE(isShown(bars[0]));
    EXPECT_TRUE(runUntil([this] { return painted > 0; }));
    painted = 0;
    add(1, wide);
    EXPECT_TRUE(isShown(bars[1]));
    EXPECT_TRUE(runUntil([this] { return painted > 0; }));
    lines.clear();
    runFor(std::chrono::milliseconds(30));
    EXPECT_FALSE(bars[0]->isVisible());
    EXPECT_FALSE(bars[1]->isVisible());
    EXPECT_EQ(list.viewport()->size(), list.contentsRect().size());
}

TEST_F(SteadyListTest, WhatItHoldsIsSeen) {
    add(3, QStringLiteral("A"));
    EXPECT_TRUE(areLinesSeen() && areBarsSeen());
    add(100, QStringLiteral("B"));
    EXPECT_TRUE(areLinesSeen() && areBarsSeen()) << "with a scroll bar";
    add(1, wide);
    EXPECT_TRUE(areLinesSeen() && areBarsSeen()) << "with both";
    list.horizontalScrollBar()->setValue(40);
    add(20, QStringLiteral("C"));
    EXPECT_TRUE(areLinesSeen() && areBarsSeen()) << "moved";
    list.resize(150, 200);
    add(1, QStringLiteral("D"));
    EXPECT_TRUE(areLinesSeen() && areBarsSeen()) << "in another size";
    lines.removeRows(0, 110);
    EXPECT_TRUE(areLinesSeen() && areBarsSeen()) << "with fewer lines";
    lines.clear();
    EXPECT_TRUE(areLinesSeen() && areBarsSeen()) << "with none";
}

/// Whatever is done to its lines, what it keeps of the screen is right.
TEST_F(SteadyListTest, WhatItHoldsIsSeenAfterEveryStep) {
    constexpr unsigned seed = 20261124;
    std::cout << "seed " << seed << '\n';
    Draws draws(seed);
    const auto line = [&draws] {
        return new QStandardItem(QString(1 + draws.below(60), QChar(u'A' + draws.below(26))));
    };
    const std::vector<std::function<void()>> steps = {
        [&] { lines.appendRow(line()); },
        [&] { lines.insertRow(draws.below(lines.rowCount() + 1), line()); },
        [&] { lines.removeRows(draws.below(lines.rowCount() + 1), 1); },
        [&] {
            lines.clear();
            lines.appendRow(line());
        },
        [&] {
            for (int count = draws.below(6); count > 0; --count) {
                lines.appendRow(line());
            }
        },
        [&] { list.resize(100 + draws.below(150), 60 + draws.below(300)); },
        [&] { list.horizontalScrollBar()->setValue(draws.below(200)); },
        [&] { list.verticalScrollBar()->setValue(draws.below(40)); },
    };
    for (int count = 0; count < 1500; ++count) {
        const int step = draws.oneIn(2) ? 0 : draws.below(static_cast<int>(steps.size()));
        steps.at(static_cast<std::size_t>(step))();
        if (!draws.oneIn(4)) {
            list.showEnd();
        }
        if (draws.oneIn(3)) {
            QCoreApplication::processEvents();
        }
        if (draws.oneIn(2)) {
            ASSERT_TRUE(areLinesSeen() && (!draws.oneIn(50) || areBarsSeen()))
                << "step " << count << ", the last one was " << step;
        }
    }
}

TEST_F(SteadyListTest, ALineThatMovesNeitherScrollBarPaintsNone) {
    list.setUniformItemSizes(true);
    add(5000, wide);
    ASSERT_TRUE(isShown(bars[0]) && isShown(bars[1]));
    runFor(std::chrono::milliseconds(300));
    painted = 0;
    for (int line = 0; line < 10; ++line) {
        add(1, wide);
    }
    EXPECT_EQ(painted, 0);
}

} // namespace
} // namespace varda::test
