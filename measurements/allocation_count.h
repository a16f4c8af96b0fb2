#pragma once

namespace varda::bench {

/// What was taken from the heap.
struct Allocations {
    long long count = 0;
    long long bytes = 0; ///< asked for
};

/// All that every thread of this process has taken since its start, its libraries included: the measuring
/// program's own malloc stands in place of the system's.
Allocations allocations();

} // namespace varda::bench
