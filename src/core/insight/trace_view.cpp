#include "core/insight/trace_view.h"

#include <algorithm>

namespace varda::inline core {

std::size_t TraceView::rowFrom(Trace::Number number) const {
    return static_cast<std::size_t>(std::ranges::lower_bound(rows_, number) - rows_.begin());
}

void TraceView::setFilter(const TraceFilter& filter) {
    filter_ = filter;
    rows_.clear();
    add(trace_.begin());
}

std::size_t TraceView::add(Trace::Number from) {
    const std::size_t before = rows_.size();
    for (Trace::Number number = std::max(from, trace_.begin()); number < trace_.end(); ++number) {
        if (passes(filter_, trace_, number)) {
            rows_.push_back(number);
        }
    }
    end_ = trace_.end();
    return rows_.size() - before;
}

/// A change may make an older line pass or fail: where it does, the rows from there on come anew.
TraceView::Step TraceView::update(const Trace::News& news) {
    Step step;
    step.gone = rowFrom(trace_.begin());
    rows_.erase(rows_.begin(), rows_.begin() + static_cast<std::ptrdiff_t>(step.gone));
    const Trace::Number changed = std::max(news.changedBegin, trace_.begin());
    Trace::Number other = end_;
    for (Trace::Number number = changed; number < std::min(news.changedEnd, end_) && other == end_;
         ++number) {
        const std::size_t row = rowFrom(number);
        const bool isShown = row < rows_.size() && rows_[row] == number;
        other = isShown != passes(filter_, trace_, number) ? number : end_;
    }
    step.kept = rowFrom(other);
    step.changedBegin =
        news.changedBegin < news.changedEnd ? std::min(rowFrom(changed), step.kept) : step.kept;
    rows_.resize(step.kept);
    step.added = add(other);
    return step;
}

} // namespace varda::core
