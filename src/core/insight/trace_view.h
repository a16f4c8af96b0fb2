#pragma once

#include "core/insight/trace_filter.h"

#include <cstddef>
#include <deque>
#include <limits>

namespace varda::inline core {

/// The lines of a trace that pass a filter, by rows, as they were when the view was brought up to date last.
///
/// A model over it takes rows off its front and its end and puts new ones behind, each in one step. A line
/// that has left the trace meanwhile keeps its row until then; Trace::find knows it no more. To ask every
/// line of a full trace takes long: who has no such time lets the view look at some lines at a time.
class TraceView {
public:
    /// As many lines at a time as there are.
    static constexpr std::size_t all = std::numeric_limits<std::size_t>::max();

    /// What bringing it up to date has to do, in this order.
    struct Step {
        std::size_t gone = 0;         ///< rows that went away at the front
        std::size_t kept = 0;         ///< of those left, this many stayed; the rows behind them went away
        std::size_t added = 0;        ///< rows that came behind these
        std::size_t changedBegin = 0; ///< of those that stayed, what stands in these may have changed
    };

    explicit TraceView(const Trace& trace) : trace_(trace) {}

    const Trace& trace() const { return trace_; }
    std::size_t rows() const { return rows_.size(); }
    Trace::Number line(std::size_t row) const { return rows_[row]; }
    /// The first row whose line is `number` or a later one; rows() where there is none.
    std::size_t rowFrom(Trace::Number number) const;

    const TraceFilter& filter() const { return filter_; }
    /// Begins anew with another filter: no rows, until fill() brings those of the lines up to where they
    /// ended at the last update.
    void setFilter(const TraceFilter& filter);

    /// Looks at the next lines, no more than `most`, and adds rows for those that pass.
    /// @return whether lines are left to look at
    bool fill(std::size_t most = all);
    /// Lines that fill() has not looked at yet.
    std::size_t left() const;

    /// @param news what the trace told since the last update
    /// @param most lines to look at that are new; fill() goes on with the others
    Step update(const Trace::News& news, std::size_t most = all);

private:
    Trace::Number firstOther(const Trace::News& news) const;
    Trace::Number firstOfChanged(const Trace::News& news) const;
    static Trace::Number firstChanged(const Trace::News& news);

    const Trace& trace_;
    TraceFilter filter_;
    std::deque<Trace::Number> rows_;
    Trace::Number end_ = 0;  ///< of the lines that were looked at
    Trace::Number goal_ = 0; ///< where the lines ended at the last update
};

} // namespace varda::core
