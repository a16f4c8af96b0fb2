#include "window/insight/trace_table.h"

#include "window/controls/frame_font.h"
#include "window/controls/shaped_text_delegate.h"
#include "window/controls/steady_scroll_bar.h"
#include "window/controls/table_lines.h"
#include "window/insight/trace_model.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <array>
#include <numeric>

namespace varda::window {

namespace {

/// What usually stands in the columns before the bytes.
constexpr std::array usualTexts = {"00:00:00.0000",        "00000.000",   "received ",
                                   "answer to word write", "255 to 255 ", "W 0000 .. W 0000"};

} // namespace

TraceTable::TraceTable(QWidget* parent) : QTableView(parent) {
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegate(new ShapedTextDelegate(this));
    giveSteadyScrollBars(this);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &TraceTable::scrolled);
    fitRows();
}

void TraceTable::showTrace(TraceModel* model) {
    trace_ = model;
    setModel(model);
    fitColumns(this, usualTexts);
    constexpr int edges = 12;
    const int groups = QFontMetrics(frameFont()).horizontalAdvance(QStringLiteral("00 ").repeated(8));
    horizontalHeader()->resizeSection(static_cast<int>(usualTexts.size()), groups + edges);
}

void TraceTable::fitRows() {
    showLines(this, std::max(fontMetrics().height(), QFontMetrics(frameFont()).height()));
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

/// The lines in sight stay where they are, or the latest one stays in sight.
template <typename Change>
void TraceTable::keepSight(Change&& change) {
    const QScopedValueRollback<bool> moving(isMoving_, true);
    const int before = verticalScrollBar()->value();
    const int gone = change();
    if (isFollowing_) {
        scrollToBottom();
    } else if (gone > 0) {
        verticalScrollBar()->setValue(std::max(0, before - gone));
    }
    chooseAgain();
}

void TraceTable::takeNews() {
    keepSight([this] { return trace_->takeNews(); });
    viewport()->update(); // what became of a line may depend on those behind it
}

void TraceTable::setFilter(const TraceFilter& filter) {
    const QScopedValueRollback<bool> moving(isMoving_, true);
    trace_->setFilter(filter);
}

bool TraceTable::fill() {
    bool isMore = false;
    keepSight([this, &isMore] {
        isMore = trace_->fill();
        return 0;
    });
    return isMore;
}

/// Where the lines are followed it is not brought into sight.
void TraceTable::chooseAgain() {
    const auto row = chosen_ && !selectionModel()->hasSelection() ? trace_->rowOf(*chosen_) : std::nullopt;
    if (row) {
        setCurrentIndex(trace_->index(*row, 0));
        isFollowing_ ? scrollToBottom() : scrollTo(currentIndex());
    }
}

void TraceTable::choose(int row) {
    setCurrentIndex(trace_->index(row, std::max(0, currentIndex().column())));
    scrollTo(currentIndex());
}

std::optional<Trace::Number> TraceTable::chosenLine() const {
    return currentIndex().isValid() ? std::optional(trace_->line(currentIndex().row())) : std::nullopt;
}

std::vector<Trace::Number> TraceTable::selectedLines() const {
    std::vector<Trace::Number> lines;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            lines.push_back(trace_->line(row));
        }
    }
    std::ranges::sort(lines);
    return lines;
}

int TraceTable::selectedCount() const {
    const QItemSelection selected = selectionModel()->selection();
    return std::accumulate(selected.begin(), selected.end(), 0,
                           [](int count, const auto& range) { return count + range.height(); });
}

/// A line that has left the trace hands on to another one, which nobody chose.
void TraceTable::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (!isMoving_ && current.isValid()) {
        follow(false);
        chosen_ = trace_->line(current.row());
        emit lineChosen(current.row());
    }
}

/// A choice that the user has taken back is none any more.
void TraceTable::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTableView::selectionChanged(selected, deselected);
    if (!isMoving_ && !selectionModel()->hasSelection()) {
        chosen_.reset();
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
