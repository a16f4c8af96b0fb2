#include "window/insight/trace_table.h"

#include "window/controls/frame_font.h"
#include "window/insight/trace_model.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <array>

namespace varda::window {

TraceTable::TraceTable(QWidget* parent) : QTableView(parent) {
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed); // of 100,000 rows none is measured
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &TraceTable::scrolled);
    fitRows();
}

void TraceTable::showTrace(TraceModel* model) {
    trace_ = model;
    setModel(model);
    fitColumns();
}

void TraceTable::fitRows() {
    constexpr int edges = 6;
    const int height = std::max(fontMetrics().height(), QFontMetrics(frameFont()).height());
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(height + edges);
}

/// As wide as what usually stands there.
void TraceTable::fitColumns() {
    constexpr std::array usual = {"00:00:00.0000",        "00000.000",   "received ",
                                  "answer to word write", "255 to 255 ", "W 0000 .. W 0000"};
    constexpr int edges = 12;
    for (std::size_t column = 0; column < usual.size(); ++column) {
        const int width = fontMetrics().horizontalAdvance(QLatin1String(usual.at(column)));
        horizontalHeader()->resizeSection(static_cast<int>(column), width + edges);
    }
    const int groups = QFontMetrics(frameFont()).horizontalAdvance(QStringLiteral("00 ").repeated(8));
    horizontalHeader()->resizeSection(static_cast<int>(usual.size()), groups + edges);
}

void TraceTable::follow(bool isFollowing) {
    if (isFollowing != isFollowing_) {
        isFollowing_ = isFollowing;
        emit followingChanged(isFollowing);
    }
    if (isFollowing_) {
        const QScopedValueRollback<bool> moving(isMoving_, true);
        scrollToBottom();
    }
}

void TraceTable::takeNews() {
    const QScopedValueRollback<bool> moving(isMoving_, true);
    const int before = verticalScrollBar()->value();
    const int gone = trace_->takeNews();
    viewport()->update(); // what became of a line may depend on those behind it
    if (isFollowing_) {
        scrollToBottom();
    } else if (gone > 0) {
        verticalScrollBar()->setValue(std::max(0, before - gone));
    }
}

void TraceTable::choose(int row) {
    setCurrentIndex(trace_->index(row, std::max(0, currentIndex().column())));
    scrollTo(currentIndex());
}

std::optional<int> TraceTable::chosenRow() const {
    return currentIndex().isValid() ? std::optional(currentIndex().row()) : std::nullopt;
}

std::vector<int> TraceTable::selectedRows() const {
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    std::ranges::sort(rows);
    return rows;
}

/// A line that has left the trace hands on to another one, which nobody chose.
void TraceTable::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (!isMoving_ && current.isValid()) {
        follow(false);
        emit lineChosen(current.row());
    }
}

void TraceTable::scrolled(int value) {
    if (!isMoving_ && isVisible()) {
        follow(value == verticalScrollBar()->maximum());
    }
}

/// A window of another size moves the lines, too.
void TraceTable::updateGeometries() {
    const QScopedValueRollback<bool> moving(isMoving_, true);
    QTableView::updateGeometries();
}

void TraceTable::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        fitRows();
    }
}

} // namespace varda::window
