#pragma once

#include "core/insight/trace_filter.h"

#include <cstddef>
#include <deque>

namespace varda::inline core {

/// The lines of a trace that pass a filter, by rows, as they were when the view was brought up to date last.
///
/// A model over it takes rows off its front and its end and puts new ones behind, each in one step. A line
/// that has left the trace meanwhile keeps its row until then; Trace::find knows it no more.
class TraceView {
public:
    /// What bringing it up to date has to do, in this order.
    struct Step {
        std::size_t gone = 0;         ///< rows that went away at the front
        std::size_t kept = 0;         ///< of those left, this many stayed; the rows behind them went away
        std::size_t added = 0;        ///< rows that came behind these
        std::size_t changedBegin = 0; ///< of those that stayed, what stands in these may have changed
    };

    explicit TraceView(const Trace& trace) : trace_(trace) {}

    std::size_t rows() const { return rows_.size(); }
    Trace::Number line(std::size_t row) const { return rows_[row]; }
    /// The first row whose line is `number` or a later one; rows() where there is none.
    std::size_t rowFrom(Trace::Number number) const;

    const TraceFilter& filter() const { return filter_; }
    /// Begins anew with another filter: all rows are other ones.
    void setFilter(const TraceFilter& filter);

    /// @param news what the trace told since the last update
    Step update(const Trace::News& news);

private:
    std::size_t add(Trace::Number from);

    const Trace& trace_;
    TraceFilter filter_;
    std::deque<Trace::Number> rows_;
    Trace::Number end_ = 0; ///< of the lines that were looked at
};

} // namespace varda::core
