#pragma once

#include "cli/failure.h"
#include "cli/report.h"
#include "cli/streams.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>
#include <vector>

namespace varda::cli {

/// One thing that the tool does: what it declares is its part of the command line, of the help and of the
/// manual page.
class Subcommand {
public:
    Subcommand() = default;
    Subcommand(const Subcommand&) = delete;
    Subcommand& operator=(const Subcommand&) = delete;
    virtual ~Subcommand() = default;

    virtual std::string name() const = 0;
    /// A line of the help.
    virtual std::string purpose() const = 0;
    virtual void declare(CLI::App& app) = 0;
    /// @throws Failure, RuntimeError
    virtual ExitCode run(const Streams& streams, Report& report) = 0;
};

/// All of them, in the order of the help.
std::vector<std::unique_ptr<Subcommand>> makeSubcommands();

} // namespace varda::cli
