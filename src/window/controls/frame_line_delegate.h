#pragma once

#include <QStyledItemDelegate>

#include <map>

class QListView;

namespace varda::window {

/// Paints the lines of a list of frames, which can be many and long: it measures none of them, for every
/// character of its font is as wide as any other, and lays out no more of a line than there is room to show.
///
/// The list has uniform item sizes; all items are as wide as the longest line.
class FrameLineDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// Becomes the delegate of a list, whose model stands by then.
    explicit FrameLineDelegate(QListView* list);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    void count(int first, int last, int by);
    void countAll();

    QListView* list_;
    const QAbstractItemModel* model_;
    std::map<qsizetype, int> lengths_; ///< how many lines have it
};

} // namespace varda::window
