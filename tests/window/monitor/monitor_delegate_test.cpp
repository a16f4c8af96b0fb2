#include "window/monitor/monitor_delegate.h"

#include "window/controls/frame_font.h"
#include "window/monitor/monitor_model.h"

#include <QApplication>
#include <QImage>
#include <QListView>
#include <QPainter>
#include <QScrollBar>

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <string>

namespace varda::test {
namespace {

using namespace window;

/// Paints every line whole and measures it each time, by nothing but Qt's own.
class WholeLineDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const auto* const model = static_cast<const MonitorModel*>(index.model());
        return QStyledItemDelegate::sizeHint(option, model->index(model->longestRow()));
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        const auto* const model = static_cast<const MonitorModel*>(index.model());
        const std::string text = model->line(index.row()).text(MonitorModel::paintedBytes);
        QStyledItemDelegate::initStyleOption(option, QModelIndex());
        option->index = index;
        option->features |= QStyleOptionViewItem::HasDisplay;
        option->text = MonitorDelegate::withoutControls(
            QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
    }
};

class MonitorDelegateTest : public testing::Test {
protected:
    MonitorDelegateTest() {
        prepare(list_, new MonitorDelegate(&list_));
        prepare(other_, new WholeLineDelegate(&other_));
    }

    void prepare(QListView& list, QAbstractItemDelegate* delegate) {
        list.setModel(&model_);
        list.setItemDelegate(delegate);
        list.setFont(frameFont());
        list.setUniformItemSizes(true);
        list.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
        list.setSelectionMode(QAbstractItemView::ExtendedSelection);
        list.resize(640, 200);
        list.setAttribute(Qt::WA_DontShowOnScreen);
        list.show();
    }

    void append(const Bytes& burst, bool asCharacters, const std::string& stamp = {}) {
        model_.append({stamp, burst, asCharacters});
    }
    void appendEveryKind() {
        Bytes every(256);
        std::iota(every.begin(), every.end(), std::uint8_t{0});
        append({0x05, 0x00, 0x23}, false, "9:5:7 - ");
        append({}, false);
        append(Bytes(4000, 0x5A), false, "10:15:27 - ");
        append(every, true);
        append(Bytes(700, 'q'), true, "9:5:7 - ");
        append(every, false);
        append({'A', 'B'}, true);
    }

    /// Of the whole list, wherever it is scrolled to.
    void expectSame(const char* what) {
        ASSERT_EQ(list_.horizontalScrollBar()->maximum(), other_.horizontalScrollBar()->maximum()) << what;
        const int end = list_.horizontalScrollBar()->maximum();
        for (const int place : {0, 1, 7, 13, 500, end / 2, end - 3, end}) {
            for (QListView* const list : {&list_, &other_}) {
                list->horizontalScrollBar()->setValue(place);
            }
            EXPECT_EQ(list_.grab().toImage(), other_.grab().toImage()) << what << ", scrolled by " << place;
        }
    }

    MonitorModel model_;
    QListView list_;
    QListView other_;
};

TEST_F(MonitorDelegateTest, LinesLookAsIfTheyWerePaintedWhole) {
    appendEveryKind();
    expectSame("all kinds");
    for (QListView* const list : {&list_, &other_}) {
        list->selectAll();
        list->setCurrentIndex(model_.index(3, 0));
    }
    expectSame("one selected");
    for (QListView* const list : {&list_, &other_}) {
        list->selectAll();
    }
    expectSame("all selected");
    for (QListView* const list : {&list_, &other_}) {
        list->setEnabled(false);
    }
    expectSame("disabled");
}

TEST_F(MonitorDelegateTest, FontsOfEveryWidthLookAsIfLinesWerePaintedWhole) {
    appendEveryKind();
    for (const double points : {7.0, 8.3, 9.9, 12.1}) {
        QFont fixed = frameFont();
        fixed.setPointSizeF(points);
        for (const QFont& font : {fixed, QApplication::font()}) {
            list_.setFont(font);
            other_.setFont(font);
            expectSame(font.toString().toUtf8().constData());
        }
    }
}

TEST_F(MonitorDelegateTest, ListIsAsWideAsItsLongestLineWhateverCameAndWent) {
    constexpr unsigned seed = 20261122;
    std::mt19937 random(seed);
    for (int round = 0; round < 60; ++round) {
        if (round % 20 == 19) {
            model_.clear();
        }
        append(Bytes(random() % 1500, static_cast<std::uint8_t>(random())), random() % 2 == 0);
        const QModelIndex last = model_.index(model_.rowCount() - 1);
        EXPECT_EQ(list_.sizeHintForIndex(last), other_.sizeHintForIndex(last))
            << "round " << round << ", seed " << seed;
    }
}

} // namespace
} // namespace varda::test
