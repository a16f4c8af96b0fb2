#pragma once

#include <iosfwd>

namespace varda::cli {

/// Where the tool reads and writes.
struct Streams {
    std::istream& in;
    std::ostream& out;   ///< what was asked for
    std::ostream& error; ///< progress, and what went wrong
};

} // namespace varda::cli
