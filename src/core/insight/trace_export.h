#pragma once

#include "core/insight/register_names.h"
#include "core/insight/trace.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

/// The forms in which a trace can be taken along.
enum class TraceForm : std::uint8_t {
    Text,      ///< columns side by side, for reading
    Csv,       ///< fields between commas, as RFC 4180 has them, with a heading
    JsonLines, ///< one object a line
    Hex,       ///< the bytes of each line alone, of those that have any
    Pcapng     ///< a capture for Wireshark: link type USER0, directions, verdicts as comments
};

/// Takes the parts of an export, in order. What it throws ends the export.
using ExportSink = std::function<void(std::string_view part)>;

/// Writes lines of a trace, some at a time where all of them would take too long. Those that are gone are
/// left out; in hex those as well that have no bytes, in a capture those that never went over the line, too.
class TraceExport {
public:
    /// @param trace, names are looked into whenever lines are written
    TraceExport(const Trace& trace, std::vector<Trace::Number> lines, TraceForm form,
                const RegisterNames& names);

    /// Writes the next lines, no more than `most`; the heading before the first ones.
    /// @return whether lines are left
    bool write(const ExportSink& sink, std::size_t most = std::numeric_limits<std::size_t>::max());

    std::size_t size() const { return lines_.size(); }
    std::size_t done() const { return next_; }       ///< lines, those among them that were left out
    std::size_t written() const { return written_; } ///< lines that were not left out

private:
    const Trace& trace_;
    std::vector<Trace::Number> lines_;
    TraceForm form_;
    const RegisterNames& names_;
    bool isBegun_ = false;
    std::size_t next_ = 0;
    std::size_t written_ = 0;
};

/// Writes lines of a trace at once. @return how many were not left out
std::size_t exportTrace(const Trace& trace, std::vector<Trace::Number> lines, TraceForm form,
                        const RegisterNames& names, const ExportSink& sink);

} // namespace varda::core
