#pragma once

#include "core/insight/register_names.h"
#include "core/insight/trace.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace varda::inline core {

/// The forms in which a trace can be taken along.
enum class TraceForm : std::uint8_t {
    Text,      ///< columns side by side, for reading
    Csv,       ///< fields between commas, as RFC 4180 has them, with a heading
    JsonLines, ///< one object a line
    Pcapng     ///< a capture for Wireshark: link type USER0, directions, verdicts as comments
};

/// Takes the parts of an export, in order. What it throws ends the export.
using ExportSink = std::function<void(std::string_view part)>;

/// Writes lines of a trace. Those that are gone are left out; in a capture those as well that have no bytes
/// or never went over the line.
void exportTrace(const Trace& trace, std::span<const Trace::Number> lines, TraceForm form,
                 const RegisterNames& names, const ExportSink& sink);

/// A field of a CSV file, in double quotes where it needs them.
std::string csvField(std::string_view text);

} // namespace varda::core
