#pragma once

#include "cli/fault_choice.h"
#include "cli/port_choice.h"

namespace varda::cli {

class LinkSession;

/// The line of a subcommand that sends: its port, and what is done wrong on purpose on it.
struct LineChoice {
    PortChoice port;
    FaultChoice faults;

    void declare(CLI::App& app);
    /// Switches the faults on and opens the port. @throws RuntimeError as both do
    void open(LinkSession& session, const Streams& streams, Report& report) const;
};

} // namespace varda::cli
