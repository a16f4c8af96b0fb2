#include "window/controls/wrapping_row.h"

#include <QBoxLayout>
#include <QStyle>

#include <algorithm>
#include <utility>
#include <vector>

namespace varda::window {
namespace {

struct Place {
    QLayoutItem* item;
    QSize size;
};

/// Items side by side.
struct RowLine {
    std::vector<Place> places;
    int width = 0; ///< with the gaps between them
    int height = 0;

    void add(QLayoutItem* item, QSize size, int gap) {
        width += size.width() + (places.empty() ? 0 : gap);
        height = std::max(height, size.height());
        places.push_back({item, size});
    }
};

bool wraps(const QLayoutItem* item) { return item->hasHeightForWidth(); }

/// The rest of a line, or nothing where another line gives it fewer lines of text.
QSize sizeOfWrapping(QLayoutItem* item, int rest, int whole) {
    const int least = item->heightForWidth(whole);
    return rest > 0 && item->heightForWidth(rest) <= least ? QSize(rest, least) : QSize();
}

std::vector<RowLine> linesOf(const QList<QLayoutItem*>& items, int width, int gap) {
    std::vector<RowLine> lines(1);
    for (QLayoutItem* const item : items) {
        if (item->isEmpty()) {
            continue;
        }
        const RowLine& last = lines.back();
        const int rest = width - last.width - (last.places.empty() ? 0 : gap);
        QSize size = wraps(item) ? sizeOfWrapping(item, rest, width) : item->sizeHint();
        const bool fits = size.isValid() && size.width() <= rest;
        if (!fits && !last.places.empty()) {
            lines.emplace_back();
        }
        if (wraps(item) && !size.isValid()) {
            size = QSize(width, item->heightForWidth(width));
        }
        lines.back().add(item, size.boundedTo(QSize(width, size.height())), gap);
    }
    return lines;
}

void growLast(RowLine& line, int width) {
    if (!line.places.empty() && (line.places.back().item->expandingDirections() & Qt::Horizontal) != 0) {
        line.places.back().size.rwidth() += std::max(width - line.width, 0);
    }
}

} // namespace

void WrappingRow::replace(QBoxLayout* column, QBoxLayout* row) {
    const int place = column->indexOf(row);
    auto* const wrapping = new WrappingRow(column->spacing());
    while (QLayoutItem* const item = row->takeAt(0)) {
        if (item->spacerItem() != nullptr) {
            delete item;
        } else {
            wrapping->addItem(item);
        }
    }
    column->removeItem(row);
    delete row;
    column->insertLayout(place, wrapping);
}

WrappingRow::~WrappingRow() { qDeleteAll(std::exchange(items_, {})); }

QLayoutItem* WrappingRow::takeAt(int index) {
    return index >= 0 && index < items_.size() ? items_.takeAt(index) : nullptr;
}

QSize WrappingRow::sizeHint() const {
    QSize size;
    for (const QLayoutItem* const item : items_) {
        if (!item->isEmpty()) {
            const QSize hint = item->sizeHint();
            size = QSize(std::max(size.width(), 0) + (wraps(item) ? 0 : hint.width() + spacing()),
                         std::max(size.height(), item->minimumSize().height()));
        }
    }
    return size;
}

QSize WrappingRow::minimumSize() const {
    QSize size;
    for (const QLayoutItem* const item : items_) {
        if (!item->isEmpty()) {
            size = size.expandedTo(item->minimumSize());
        }
    }
    return size;
}

void WrappingRow::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

int WrappingRow::arrange(const QRect& rect, bool isReal) const {
    int top = rect.top();
    for (RowLine& line : linesOf(items_, rect.width(), spacing())) {
        growLast(line, rect.width());
        int left = rect.left();
        for (const Place& place : line.places) {
            if (isReal) {
                const QRect room(left, top, place.size.width(), line.height);
                place.item->setGeometry(
                    wraps(place.item) ? room
                                      : QStyle::alignedRect(Qt::LeftToRight, Qt::AlignVCenter | Qt::AlignLeft,
                                                            place.size, room));
            }
            left += place.size.width() + spacing();
        }
        top += line.height + spacing();
    }
    return std::max(top - spacing() - rect.top(), 0);
}

} // namespace varda::window
