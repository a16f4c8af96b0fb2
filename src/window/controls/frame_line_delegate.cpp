#include "window/controls/frame_line_delegate.h"

#include "window/controls/texts.h"

#include <QApplication>
#include <QListView>

#include <algorithm>
#include <cmath>

namespace varda::window {

FrameLineDelegate::FrameLineDelegate(QListView* list)
    : QStyledItemDelegate(list), list_(list), model_(list->model()) {
    connect(model_, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex& /*parent*/, int first, int last) { count(first, last, 1); });
    connect(model_, &QAbstractItemModel::rowsAboutToBeRemoved, this,
            [this](const QModelIndex& /*parent*/, int first, int last) { count(first, last, -1); });
    connect(model_, &QAbstractItemModel::dataChanged, this, &FrameLineDelegate::countAll);
    connect(model_, &QAbstractItemModel::modelReset, this, &FrameLineDelegate::countAll);
    countAll();
    list->setItemDelegate(this);
}

void FrameLineDelegate::count(int first, int last, int by) {
    for (int row = first; row <= last; ++row) {
        const qsizetype length = model_->index(row, 0).data().toString().size();
        if ((lengths_[length] += by) == 0) {
            lengths_.erase(length);
        }
    }
}

/// A list that is taken down resets its model: the model is asked, never the list.
void FrameLineDelegate::countAll() {
    lengths_.clear();
    count(0, model_->rowCount() - 1, 1);
}

QSize FrameLineDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem line(option);
    initStyleOption(&line, index);
    line.text = QLatin1Char('0');
    const QStyle* const style = list_->style();
    QSize size = style->sizeFromContents(QStyle::CT_ItemViewItem, &line, {}, list_);
    const qsizetype longest = lengths_.empty() ? 0 : lengths_.rbegin()->first;
    size.rwidth() += static_cast<int>(std::ceil(static_cast<double>(longest) * characterWidth(line.font)));
    return size;
}

void FrameLineDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const double width = characterWidth(option->font);
    const int hidden = std::max(0, static_cast<int>(-option->rect.left() / width));
    const int shown =
        static_cast<int>(list_->viewport()->width() / width) + 2; // one may be cut at either edge
    option->text = option->text.mid(hidden, shown);
    option->rect.setLeft(option->rect.left() + static_cast<int>(hidden * width));
}

} // namespace varda::window
