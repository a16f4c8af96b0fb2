#include "window/insight/history_delegate.h"

#include "window/insight/watch_model.h"

#include <QPainter>

#include <algorithm>

namespace varda::window {
namespace {

/// Steps, as a register has no values between two values. All are as far apart, so that the last ones stay
/// apart where the first are old.
QPolygonF stepsOf(const WatchedRegister& watched, const QRectF& room) {
    const auto [least, most] = std::ranges::minmax(watched.history, {}, &WatchedRegister::Change::value);
    const double range = std::max(1, most.value - least.value);
    const double width = room.width() / static_cast<double>(RegisterWatch::longestHistory);
    double left = room.right() - width * static_cast<double>(watched.history.size());
    QPolygonF line;
    for (const WatchedRegister::Change& change : watched.history) {
        const double height = room.bottom() - (change.value - least.value) / range * room.height();
        line << QPointF(left, height) << QPointF(left + width, height);
        left += width;
    }
    return line;
}

} // namespace

void HistoryDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    const auto* const model = static_cast<const WatchModel*>(index.model());
    constexpr double edge = 3;
    const bool isSelected = (option.state & QStyle::State_Selected) != 0;
    painter->save();
    painter->setPen(QPen(option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text), 1));
    painter->drawPolyline(
        stepsOf(model->at(index.row()), QRectF(option.rect).adjusted(edge, edge, -edge, -edge)));
    painter->restore();
}

} // namespace varda::window
