#pragma once

#include "cli/report.h"
#include "cli/streams.h"
#include "core/faults/fault_injector.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace varda::cli {

/// What a subcommand does wrong on purpose to what it sends.
struct FaultChoice {
    std::string faults;
    std::optional<std::uint64_t> seed;

    void declare(CLI::App& app);
    /// Switches the faults on, and reports each of them. A seed that was drawn is told.
    /// @throws RuntimeError 13 where the text is not understood
    void apply(FaultInjector& injector, const Streams& streams, Report& report) const;
};

} // namespace varda::cli
