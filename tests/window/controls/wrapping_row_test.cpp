#include "window/controls/wrapping_row.h"

#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <array>

namespace varda::test {
namespace {

using namespace window;

/// Three buttons of 100 x 20 and what is added, in the place of a row above a list.
class WrappingRowTest : public testing::Test {
protected:
    WrappingRowTest() {
        column = new QVBoxLayout(&widget);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(10);
        for (QPushButton*& button : buttons) {
            button = new QPushButton;
            button->setFixedSize(100, 20);
            row->addWidget(button);
        }
        column->addLayout(row);
        column->addWidget(&rest, 1);
    }
    void show(int width) {
        row->addItem(new QSpacerItem(20, 20, QSizePolicy::Expanding));
        WrappingRow::replace(column, row);
        widget.resize(width, 400);
        widget.show();
    }
    void resize(int width) { widget.resize(width, 400); }
    QRect place(int button) const { return buttons.at(static_cast<std::size_t>(button))->geometry(); }

    QWidget widget;
    QWidget rest{&widget};
    QVBoxLayout* column;
    QHBoxLayout* row = new QHBoxLayout;
    std::array<QPushButton*, 3> buttons{};
};

TEST_F(WrappingRowTest, GoesOnInAFurtherLineWhereItIsTooNarrow) {
    show(320);
    EXPECT_EQ(place(0), QRect(0, 0, 100, 20));
    EXPECT_EQ(place(2), QRect(220, 0, 100, 20));
    EXPECT_EQ(rest.y(), 30);
    resize(319);
    EXPECT_EQ(place(1), QRect(110, 0, 100, 20));
    EXPECT_EQ(place(2), QRect(0, 30, 100, 20));
    EXPECT_EQ(rest.y(), 60) << "what stands below makes room";
    resize(105);
    EXPECT_EQ(place(2), QRect(0, 60, 100, 20));
    EXPECT_EQ(widget.minimumSizeHint().width(), 100) << "the widest of them";
}

TEST_F(WrappingRowTest, WhatIsHiddenTakesNoRoom) {
    buttons[1]->hide();
    show(210);
    EXPECT_EQ(place(2), QRect(110, 0, 100, 20));
}

TEST_F(WrappingRowTest, WhatGrowsDoesSoAtTheEndOfALine) {
    auto* const field = new QLineEdit;
    field->setMinimumWidth(50);
    row->addWidget(field);
    show(900);
    EXPECT_EQ(field->x(), 330);
    EXPECT_EQ(field->width(), 900 - 330);
}

TEST_F(WrappingRowTest, ATextThatWrapsHasTheRestOfALineOrOneForItself) {
    auto* const text =
        new QLabel(QStringLiteral("words that stand in one line where there is room for them"));
    text->setWordWrap(true);
    row->addWidget(text);
    show(1200);
    EXPECT_EQ(text->x(), 330);
    EXPECT_EQ(text->y(), 0);
    EXPECT_EQ(text->width(), 1200 - 330);
    resize(400);
    EXPECT_EQ(text->x(), 0);
    EXPECT_EQ(text->y(), 30);
    EXPECT_EQ(text->width(), 400);
    EXPECT_GE(text->height(), text->heightForWidth(400));
    text->setText(QStringLiteral("few"));
    QCoreApplication::processEvents();
    EXPECT_EQ(text->y(), 0);
}

} // namespace
} // namespace varda::test
