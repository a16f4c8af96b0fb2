#pragma once

#include <QStyledItemDelegate>

namespace varda::window {

/// Paints a line of the monitor one line high, whatever its bytes are, and no more of it than any screen is
/// wide.
class MonitorDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Visible stand-ins for the control characters of a text.
    static QString withoutControls(QString text);

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    /// Of every line that of the longest one: the list has uniform item sizes, and asks for its last line.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace varda::window
