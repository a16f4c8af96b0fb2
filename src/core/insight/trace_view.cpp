#include "core/insight/trace_view.h"

#include <algorithm>

namespace varda::inline core {

std::size_t TraceView::rowFrom(Trace::Number number) const {
    return static_cast<std::size_t>(std::ranges::lower_bound(rows_, number) - rows_.begin());
}

void TraceView::setFilter(const TraceFilter& filter) {
    filter_ = filter;
    rows_.clear();
    end_ = 0;
}

std::size_t TraceView::left() const {
    const Trace::Number next = std::max(end_, trace_.begin());
    return goal_ > next ? static_cast<std::size_t>(goal_ - next) : 0;
}

bool TraceView::fill(std::size_t most) {
    end_ = std::max(end_, trace_.begin());
    for (std::size_t count = std::min(most, left()); count > 0; --count, ++end_) {
        if (passes(filter_, trace_, end_)) {
            rows_.push_back(end_);
        }
    }
    return left() > 0;
}

/// The first line that passes now and did not before, or the other way round; the end where there is none.
/// Marks count where the filter asks for them, and nobody looks which of many lines those are.
Trace::Number TraceView::firstOther(const Trace::News& news) const {
    const Trace::Number other = firstOfChanged(news);
    return filter_.onlyMarked && news.markedFrom ? std::min(*news.markedFrom, other) : other;
}

Trace::Number TraceView::firstOfChanged(const Trace::News& news) const {
    for (const Trace::Number number : news.changed) {
        const std::size_t row = rowFrom(number);
        const bool isShown = row < rows_.size() && rows_[row] == number;
        if (number >= end_ || isShown != passes(filter_, trace_, number)) {
            return std::min(number, end_);
        }
    }
    return end_;
}

/// The end where nothing has changed.
Trace::Number TraceView::firstChanged(const Trace::News& news) {
    const Trace::Number changed = news.changed.empty() ? news.end : news.changed.front();
    return std::min(changed, news.markedFrom.value_or(changed));
}

/// Where a change makes an older line pass or fail, the rows from there on come anew.
TraceView::Step TraceView::update(const Trace::News& news, std::size_t most) {
    Step step;
    step.gone = rowFrom(trace_.begin());
    rows_.erase(rows_.begin(), rows_.begin() + static_cast<std::ptrdiff_t>(step.gone));
    end_ = firstOther(news);
    goal_ = news.end;
    step.kept = rowFrom(end_);
    step.changedBegin = std::min(rowFrom(firstChanged(news)), step.kept);
    rows_.resize(step.kept);
    fill(most);
    step.added = rows_.size() - step.kept;
    return step;
}

} // namespace varda::core
