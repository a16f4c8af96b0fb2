#pragma once

#include "core/insight/register_names.h"
#include "core/insight/trace.h"

#include <optional>
#include <string>
#include <string_view>

namespace varda::inline core {

/// Which lines of a trace somebody wants to see; what is not set lets every line pass.
struct TraceFilter {
    std::string kind; ///< in small letters; part of the kind's words, "bit read" for example
    std::optional<Direction> direction;
    std::optional<int> station; ///< either of the two of any of its frames
    std::optional<Point> point; ///< a word stands for its bits too, and a bit for its word
    Bytes bytes;                ///< side by side somewhere in the line
    bool onlyWrong = false;
    bool onlyMarked = false;

    bool operator==(const TraceFilter&) const = default;
};

bool passes(const TraceFilter& filter, const Trace& trace, Trace::Number number);

/// Reads a filter as one types it: "sent", "received" and "event"; "wrong" and "marked"; "station 5"; a
/// register, "W 0100" or "R0012.3"; "hex 0A FF", up to the next word of another kind. What else is typed is
/// looked for in the kind, "word read" for example. Half a word filters already.
TraceFilter readTraceFilter(std::string_view typed);

} // namespace varda::core
