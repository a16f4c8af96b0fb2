#include "window/controls/frame_font.h"
#include "window/controls/shaped_text_delegate.h"

#include <QApplication>
#include <QHeaderView>
#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTableView>
#include <QTextLayout>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace varda::test {
namespace {

using namespace window;

/// Draws items by the delegate and by Qt's own, to compare them.
class ShapedTextDelegateTest : public testing::Test {
protected:
    static constexpr int height = 21;

    template <typename Delegate>
    QImage draw(Delegate& delegate, const QString& text, QStyleOptionViewItem option) {
        QStandardItemModel model;
        model.appendRow(new QStandardItem(text));
        model.setData(model.index(0, 0), option.displayAlignment.toInt(), Qt::TextAlignmentRole);
        QImage picture(QSize(option.rect.right() + 20, height + 10) * scale, QImage::Format_RGB32);
        picture.setDevicePixelRatio(scale);
        picture.fill(option.palette.color(QPalette::Base));
        QPainter painter(&picture);
        delegate.paint(&painter, option, model.index(0, 0));
        return picture;
    }

    /// Twice by ours: laid out, and known from before.
    void expectSame(const QString& text, const QStyleOptionViewItem& option) {
        QStyledItemDelegate plain;
        const QImage wanted = draw(plain, text, option);
        for (int time = 0; time < 2; ++time) {
            EXPECT_EQ(draw(delegate_, text, option), wanted)
                << text.toStdString() << ", " << option.rect.width() << " wide, alignment "
                << option.displayAlignment.toInt() << ", state " << option.state.toInt() << ", scale "
                << scale << ", " << option.font.toString().toStdString();
        }
    }

    static QStyleOptionViewItem item(int width) {
        QStyleOptionViewItem option;
        option.rect = QRect(4, 3, width, height);
        option.state = QStyle::State_Enabled | QStyle::State_Active;
        option.displayAlignment = Qt::AlignLeft | Qt::AlignVCenter;
        option.showDecorationSelected = true;
        option.palette = QApplication::palette();
        return option;
    }

    static std::vector<QFont> fonts() {
        std::vector<QFont> all = {QApplication::font(), frameFont(), frameFont()};
        all.back().setPointSizeF(9.7);
        all.push_back(all.back());
        all.back().setBold(true);
        return all;
    }

    double scale = 1;

private:
    ShapedTextDelegate delegate_;
};

const std::vector<QString> texts = {
    QString(),
    QStringLiteral(" "),
    QStringLiteral("05 00 23 03 00 02 02 0B 22 "),
    QStringLiteral("answer to word read"),
    QString::fromUtf8("! Check wrong \u2013 taken \u25CF \u2400\u2421\u2426 AV To fi"),
    QStringLiteral("00000.125"),
};

TEST_F(ShapedTextDelegateTest, PaintsWhatTheStylePaints) {
    for (const double factor : {1.0, 1.5, 2.0}) {
        scale = factor;
        for (const QFont& font : fonts()) {
            for (const QString& text : texts) {
                QStyleOptionViewItem option = item(430);
                option.font = font;
                option.fontMetrics = QFontMetrics(font);
                expectSame(text, option);
            }
        }
    }
}

TEST_F(ShapedTextDelegateTest, WhatIsWiderThanItsColumnIsElided) {
    for (int width = 1; width < 200; width += 3) {
        for (const QString& text : texts) {
            expectSame(text, item(width));
        }
    }
}

TEST_F(ShapedTextDelegateTest, NumbersStandAtTheRight) {
    for (const Qt::Alignment alignment : {Qt::AlignRight | Qt::AlignVCenter, Qt::AlignHCenter | Qt::AlignTop,
                                          Qt::AlignRight | Qt::AlignBottom}) {
        QStyleOptionViewItem option = item(120);
        option.displayAlignment = alignment;
        expectSame(QStringLiteral("00000.125"), option);
        expectSame(QStringLiteral("a text that is cut off at its end"), option);
    }
}

TEST_F(ShapedTextDelegateTest, RowsTooLowForTheirTextAreCutAsTheStyleCutsThem) {
    for (int low = 1; low < 30; ++low) {
        QStyleOptionViewItem option = item(120);
        option.rect.setHeight(low);
        expectSame(texts.at(2), option);
    }
}

TEST_F(ShapedTextDelegateTest, SelectionFocusAndGreyLookAsEverywhere) {
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(0x20, 0x22, 0x24));
    dark.setColor(QPalette::Text, QColor(0xE0, 0xE1, 0xE2));
    dark.setColor(QPalette::Disabled, QPalette::Text, QColor(0x80, 0x81, 0x82));
    dark.setColor(QPalette::Inactive, QPalette::Text, QColor(0xC0, 0xC1, 0xC2));
    dark.setColor(QPalette::HighlightedText, Qt::yellow);
    for (const QPalette& palette : {QApplication::palette(), dark}) {
        for (const QStyle::State state :
             {QStyle::State(QStyle::State_None), QStyle::State(QStyle::State_Enabled),
              QStyle::State_Enabled | QStyle::State_Active,
              QStyle::State_Enabled | QStyle::State_Active | QStyle::State_Selected,
              QStyle::State_Enabled | QStyle::State_Selected, QStyle::State(QStyle::State_Selected),
              QStyle::State_Enabled | QStyle::State_Active | QStyle::State_MouseOver,
              QStyle::State_Enabled | QStyle::State_Active | QStyle::State_HasFocus |
                  QStyle::State_KeyboardFocusChange}) {
            QStyleOptionViewItem option = item(300);
            option.palette = palette;
            option.state = state;
            expectSame(texts.at(2), option);
        }
    }
}

TEST_F(ShapedTextDelegateTest, TextsOfMoreLinesAreLeftToTheStyle) {
    expectSame(QStringLiteral("one\ntwo"), item(300));
    expectSame(QString(QStringLiteral("one")) + QChar(QChar::LineSeparator) + QStringLiteral("two"),
               item(300));
}

/// Two tables of the same, of which one is painted by ours.
class ShapedTableTest : public testing::Test {
protected:
    ShapedTableTest() {
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                auto* const cell =
                    new QStandardItem(texts.at(static_cast<std::size_t>(row + column) % texts.size()));
                cell->setTextAlignment(column == 1 ? Qt::AlignRight | Qt::AlignVCenter
                                                   : Qt::AlignLeft | Qt::AlignVCenter);
                if (column == 2) {
                    cell->setFont(frameFont());
                }
                model_.setItem(row, column, cell);
            }
        }
        for (QTableView* const table : {&ours_, &other_}) {
            table->setModel(&model_);
            table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
            table->setWordWrap(false);
            table->resize(430, 300);
            table->setAttribute(Qt::WA_DontShowOnScreen);
            table->show();
        }
        ours_.setItemDelegate(new ShapedTextDelegate(&ours_));
    }

    template <typename Change>
    void expectSameAfter(const char* what, Change&& change) {
        for (QTableView* const table : {&ours_, &other_}) {
            change(*table);
        }
        for (int time = 0; time < 2; ++time) {
            EXPECT_EQ(ours_.grab().toImage(), other_.grab().toImage()) << what;
        }
    }

    static constexpr int rows = 40;
    static constexpr int columns = 6;
    QStandardItemModel model_;
    QTableView ours_;
    QTableView other_;
};

TEST_F(ShapedTableTest, TableLooksAsEveryTable) {
    expectSameAfter("at first", [](QTableView&) {});
    for (int down = 0; down < 40; down += 7) {
        expectSameAfter("scrolled down",
                        [&](QTableView& table) { table.verticalScrollBar()->setValue(down); });
        expectSameAfter("scrolled right",
                        [&](QTableView& table) { table.horizontalScrollBar()->setValue(9 * down); });
    }
    expectSameAfter("a column that cuts", [](QTableView& table) { table.setColumnWidth(2, 37); });
    expectSameAfter("selected", [](QTableView& table) { table.selectRow(12); });
    expectSameAfter("another text",
                    [this](QTableView&) { model_.item(5, 2)->setText(QStringLiteral("answer")); });
    expectSameAfter("low rows", [](QTableView& table) { table.verticalHeader()->setDefaultSectionSize(9); });
    expectSameAfter("dark", [](QTableView& table) {
        QPalette palette = table.palette();
        palette.setColor(QPalette::Base, QColor(0x20, 0x22, 0x24));
        palette.setColor(QPalette::Text, QColor(0xE0, 0xE1, 0xE2));
        table.setPalette(palette);
    });
    expectSameAfter("disabled", [](QTableView& table) { table.setEnabled(false); });
    expectSameAfter("striped", [](QTableView& table) { table.setAlternatingRowColors(true); });
}

TEST(ShapedTexts, DrawWhatALayoutDrawsHoweverOftenAndHoweverMany) {
    ShapedTexts shaped;
    const auto picture = [](auto&& draw) {
        QImage image(700, 30, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setPen(Qt::darkBlue);
        draw(painter);
        return image;
    };
    for (int round = 0; round < 2; ++round) {
        for (int number = 0; number < 3000; ++number) { // more than are kept
            const QString text = QStringLiteral("%1 05 00 23 03 00 02 02 0B 22").arg(number);
            const auto& found = shaped.find(text, frameFont(), {.width = 690});
            if (number % 500 == 0) {
                const QImage drawn =
                    picture([&](QPainter& painter) { found.draw(painter, QPointF(3.0, 2.0)); });
                EXPECT_EQ(drawn, picture([&](QPainter& painter) {
                              QTextLayout layout(text, frameFont());
                              layout.beginLayout();
                              layout.createLine();
                              layout.endLayout();
                              layout.draw(&painter, QPointF(3.0, 2.0));
                          }))
                    << number;
                EXPECT_EQ(drawn, picture([&](QPainter& painter) {
                              painter.setFont(frameFont());
                              painter.drawText(QPointF(3.0, 2.0 + QFontMetricsF(frameFont()).ascent()), text);
                          }))
                    << number;
            }
        }
    }
}

TEST(ShapedTexts, TextLongerThanAllThatIsKeptIsDrawnNevertheless) {
    ShapedTexts shaped;
    const QString text(200'000, QLatin1Char('0'));
    EXPECT_FALSE(shaped.find(text, frameFont(), {.width = 1 << 24}).runs.isEmpty());
    EXPECT_FALSE(shaped.find(QStringLiteral("0"), frameFont(), {.width = 100}).runs.isEmpty());
}

TEST(ShapedTexts, AnotherFontIsAnotherText) {
    ShapedTexts shaped;
    QFont large = frameFont();
    large.setPointSizeF(2 * large.pointSizeF());
    const int low = shaped.find(QStringLiteral("00"), frameFont(), {.width = 100}).size.height();
    EXPECT_GT(shaped.find(QStringLiteral("00"), large, {.width = 100}).size.height(), low);
    EXPECT_EQ(shaped.find(QStringLiteral("00"), frameFont(), {.width = 100}).size.height(), low);
}

} // namespace
} // namespace varda::test
