#pragma once

#include "core/insight/trace.h"

#include <cstddef>
#include <optional>

namespace varda::inline core {

// An answer that came in pieces, each read alone: the program drops them one by one.

/// What was dropped right before a line, as one may take it for the beginning of an answer.
struct DroppedPieces {
    std::size_t came = 0;     ///< bytes of all these reads
    std::size_t expected = 0; ///< bytes that were awaited when the first of them came
};

DroppedPieces droppedBefore(const Trace& trace, Trace::Number number);

/// Whether a line is what lacked in those that were dropped before it.
bool isRest(const Trace& trace, Trace::Number number);

/// What came next.
struct NextRead {
    Trace::Number number = 0;      ///< of its first line
    Clock::Time::duration after{}; ///< the last byte of the read before it
};

/// The read behind that of a line, if one came before anything else was sent.
std::optional<NextRead> nextRead(const Trace& trace, Trace::Number number);

} // namespace varda::core
