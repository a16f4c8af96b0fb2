#pragma once

#include "core/insight/trace_view.h"

#include <cstddef>
#include <optional>

namespace varda::inline core {

/// Looks for a line among the rows of a view, from a line on or back, and past the end on from the other one
/// until every row has been looked at. It may be done some rows at a time; what goes over the line in between
/// does no harm.
class TraceSearch {
public:
    /// @param from the line to begin behind, or before; nothing for the end that lies behind
    TraceSearch(const TraceView& view, TraceFilter wanted, std::optional<Trace::Number> from, bool isForward);

    /// Looks at the next rows, no more than `most`. @return whether it is to go on
    bool look(std::size_t most = TraceView::all);

    /// The line, once there is one.
    std::optional<Trace::Number> found() const { return found_; }
    /// Whether it has gone past an end.
    bool isRound() const { return isRound_; }

private:
    std::optional<std::size_t> nextRow() const;
    bool isPastBegin(Trace::Number number) const;

    const TraceView& view_;
    TraceFilter wanted_;
    std::optional<Trace::Number> begin_;
    std::optional<Trace::Number> last_; ///< that was looked at
    bool isForward_;
    bool isRound_ = false;
    std::optional<Trace::Number> found_;
};

} // namespace varda::core
