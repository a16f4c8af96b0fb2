#pragma once

#include "core/insight/trace_export.h"
#include "window/controls/sliced_work.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace varda::window {

/// Writes lines of a trace into memory, slice by slice.
class SlicedExport {
public:
    /// Takes what was written, and how many lines those are.
    using Ended = std::function<void(std::string content, std::size_t lines)>;

    /// @param wentOn runs behind each slice that is not the last one
    SlicedExport(Clock& clock, std::function<void()> wentOn) : work_(clock, std::move(wentOn)) {}

    /// Begins, in the place of what is under way. @param trace, names are looked into until it ends
    void start(const Trace& trace, std::vector<Trace::Number> lines, TraceForm form,
               const RegisterNames& names, const Ended& ended);
    void cancel();

    /// How much of what is under way is done.
    std::optional<int> percent() const;

private:
    std::optional<TraceExport> export_;
    std::string content_;
    SlicedWork work_;
};

} // namespace varda::window
