#pragma once

#include <QStyledItemDelegate>

namespace varda::window {

/// Draws the last values of a watched register as a small line.
class HistoryDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace varda::window
