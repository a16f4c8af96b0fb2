#include "window/controls/drop_down_list.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFontMetrics>
#include <QListView>
#include <QPalette>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace varda::window {
namespace {

/// The field has a colour while it has the focus, which its list would take over.
void keepOutOfTheYellow(QWidget* entries) {
    const QPalette usual = QApplication::palette(entries);
    QPalette palette;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        for (const QPalette::ColorRole role : {QPalette::Base, QPalette::Text}) {
            palette.setColor(group, role, usual.color(QPalette::Active, role));
        }
    }
    entries->setPalette(palette);
}

} // namespace

DropDownList::DropDownList(QWidget* parent) : QComboBox(parent) { setFocusPolicy(Qt::StrongFocus); }

/// What Qt's own policy for a width in characters comes to. To set that policy makes what opens.
QSize DropDownList::sizeHint() const {
    constexpr int leastTextHeight = 14; // as Qt has it
    constexpr int besideIcon = 4;
    const int textHeight = static_cast<int>(std::ceil(QFontMetricsF(fontMetrics()).height()));
    const QSize contents(minimumContentsLength() * fontMetrics().horizontalAdvance(u'X') +
                             iconSize().width() + besideIcon,
                         2 + std::max({textHeight, leastTextHeight, iconSize().height()}));
    QStyleOptionComboBox option;
    initStyleOption(&option);
    return style()->sizeFromContents(QStyle::CT_ComboBox, &option, contents, this);
}

void DropDownList::showPopup() {
    if (auto* const entries = qobject_cast<QListView*>(view())) {
        entries->setUniformItemSizes(true); // 2048 numbers open at once
    }
    keepOutOfTheYellow(view());
    QComboBox::showPopup();
    mark(shownRow());
}

void DropDownList::mark(int row) { view()->setCurrentIndex(model()->index(row, modelColumn())); }

/// An entry may show more than the text that it stands for.
int DropDownList::rowOf(const QString& text) const {
    return findData(text, Qt::EditRole, Qt::MatchExactly | Qt::MatchCaseSensitive);
}

/// A text that was typed chooses no entry by itself: the one that was chosen before may not be it any more.
int DropDownList::shownRow() const {
    const bool isChosen = itemData(currentIndex(), Qt::EditRole) == currentText();
    return isChosen ? currentIndex() : rowOf(currentText());
}

void DropDownList::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        QComboBox::wheelEvent(event);
    } else {
        event->ignore(); // the window scrolls
    }
}

} // namespace varda::window
