#include "window/controls/shaped_text_delegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace varda::window {
namespace {

const QStyle* styleOf(const QStyleOptionViewItem& item) {
    return item.widget != nullptr ? item.widget->style() : QApplication::style();
}

bool isOneLine(const QString& text) {
    return !text.contains(QLatin1Char('\n')) && !text.contains(QChar(QChar::LineSeparator)) &&
           !text.contains(QChar(QChar::ParagraphSeparator));
}

/// Nothing but text, from left to right, on the ground of the view.
bool isPlain(const QStyleOptionViewItem& item) {
    constexpr auto marks =
        QStyle::State_Selected | QStyle::State_MouseOver | QStyle::State_HasFocus | QStyle::State_Editing;
    constexpr auto usual = QStyleOptionViewItem::HasDisplay | QStyleOptionViewItem::Alternate;
    return !(item.state & marks) && !(item.features & ~usual) && item.direction == Qt::LeftToRight &&
           item.backgroundBrush.style() == Qt::NoBrush && isOneLine(item.text);
}

QColor textColor(const QStyleOptionViewItem& item) {
    const auto group = !(item.state & QStyle::State_Enabled)  ? QPalette::Disabled
                       : !(item.state & QStyle::State_Active) ? QPalette::Inactive
                                                              : QPalette::Normal;
    return item.palette.color(group, QPalette::Text);
}

} // namespace

void ShapedTextDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
    QStyleOptionViewItem item(option);
    initStyleOption(&item, index);
    paintItem(painter, item, {});
}

void ShapedTextDelegate::paintItem(QPainter* painter, const QStyleOptionViewItem& item,
                                   const Hidden& hidden) const {
    if (!isPlain(item) || !paintPlain(painter, item, hidden)) {
        styleOf(item)->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
    }
}

/// @return false where the item has no room for its text
bool ShapedTextDelegate::paintPlain(QPainter* painter, const QStyleOptionViewItem& item,
                                    const Hidden& hidden) const {
    if (item.text.isEmpty()) {
        return true;
    }
    constexpr int noLimit = 1 << 24; // pixels
    const QRect room = item.rect.marginsRemoved(edgesOf(item));
    const bool isCut = hidden.characters > 0;
    const ShapedTexts::Fitting fitting = {isCut ? noLimit : room.width(),
                                          QStyle::visualAlignment(item.direction, item.displayAlignment),
                                          item.textElideMode};
    TextPictures::Look look = {.text = isCut ? item.text.mid(hidden.characters) : item.text,
                               .font = item.font,
                               .fitting = fitting,
                               .place = {},
                               .size = {},
                               .pen = textColor(item).rgba()};
    const ShapedText& text = texts_.find(look.text, look.font, look.fitting);
    if (room.width() <= 0 || text.size.height() > room.height()) {
        return false;
    }
    const int top =
        QStyle::alignedRect(Qt::LayoutDirectionAuto, item.displayAlignment, text.size, room).top();
    look.place = {room.left() + hidden.width, static_cast<double>(top)};
    if (!paintPicture(painter, item, text, look)) {
        const QPen before = painter->pen();
        painter->setPen(textColor(item));
        text.draw(*painter, look.place);
        painter->setPen(before);
    }
    return true;
}

/// On the screen, where what a picture covers is of one colour and begins with a whole pixel.
bool ShapedTextDelegate::paintPicture(QPainter* painter, const QStyleOptionViewItem& item,
                                      const ShapedText& text, TextPictures::Look& look) const {
    const auto* const view = qobject_cast<const QAbstractItemView*>(item.widget);
    if (view == nullptr || painter->device() != view->viewport() ||
        item.features.testFlag(QStyleOptionViewItem::Alternate)) {
        return false;
    }
    const QWidget* const viewport = view->viewport();
    const QBrush& ground = viewport->palette().brush(viewport->backgroundRole());
    look.scale = static_cast<int>(viewport->devicePixelRatioF());
    if (!viewport->autoFillBackground() || ground.style() != Qt::SolidPattern || !ground.isOpaque() ||
        std::abs(viewport->devicePixelRatioF() - look.scale) > 0) {
        return false;
    }
    QRect shown = item.rect;
    shown.setLeft(std::max(shown.left(), 0));
    shown.setRight(std::min(shown.right(), viewport->width() - 1));
    if (shown.isEmpty()) {
        return true;
    }
    look.place -= shown.topLeft();
    look.size = shown.size();
    look.ground = ground.color().rgb();
    pictures_.keepFor(viewport->size(), look.scale);
    painter->drawPixmap(shown.topLeft(), pictures_.find(look, text));
    return true;
}

/// The style would lay the text out to tell, though they are the same for every text.
QMargins ShapedTextDelegate::edgesOf(const QStyleOptionViewItem& item) const {
    const QStyle* const style = styleOf(item);
    if (!edges_ || edges_->style != style || edges_->height != item.rect.height()) {
        constexpr int wide = 1000;
        QStyleOptionViewItem sample(item);
        sample.text = QStringLiteral("0");
        sample.rect.setWidth(wide);
        const int inner = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, item.widget) + 1;
        const QRect text = style->subElementRect(QStyle::SE_ItemViewItemText, &sample, item.widget)
                               .adjusted(inner, 0, -inner, 0);
        edges_ = {style, item.rect.height(),
                  QMargins(text.left() - sample.rect.left(), text.top() - sample.rect.top(),
                           sample.rect.right() - text.right(), sample.rect.bottom() - text.bottom())};
    }
    return edges_->margins;
}

} // namespace varda::window
