#include "core/insight/trace_search.h"

#include <utility>

namespace varda::inline core {

TraceSearch::TraceSearch(const TraceView& view, TraceFilter wanted, std::optional<Trace::Number> from,
                         bool isForward)
    : view_(view), wanted_(std::move(wanted)), begin_(from), last_(from), isForward_(isForward) {}

/// Lines are remembered, not rows: those move when lines leave the trace.
std::optional<std::size_t> TraceSearch::nextRow() const {
    if (isForward_) {
        const std::size_t row = last_ ? view_.rowFrom(*last_ + 1) : 0;
        return row < view_.rows() ? std::optional(row) : std::nullopt;
    }
    const std::size_t row = last_ ? view_.rowFrom(*last_) : view_.rows();
    return row > 0 ? std::optional(row - 1) : std::nullopt;
}

bool TraceSearch::isPastBegin(Trace::Number number) const {
    return isForward_ ? number > *begin_ : number < *begin_;
}

bool TraceSearch::look(std::size_t most) {
    for (std::size_t count = 0; !found_ && count < most; ++count) {
        auto row = nextRow();
        if (!row && begin_ && !isRound_) {
            isRound_ = true;
            last_.reset();
            row = nextRow();
        }
        if (!row || (isRound_ && isPastBegin(view_.line(*row)))) {
            return false;
        }
        last_ = view_.line(*row);
        if (passes(wanted_, view_.trace(), *last_)) {
            found_ = last_;
        }
    }
    return !found_;
}

} // namespace varda::core
