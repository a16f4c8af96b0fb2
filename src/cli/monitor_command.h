#pragma once

#include "cli/port_choice.h"
#include "cli/subcommand.h"

namespace varda::cli {

class MonitorCommand : public Subcommand {
public:
    std::string name() const override { return "monitor"; }
    std::string purpose() const override { return "List what comes in, and keep a log or a capture of it"; }
    void declare(CLI::App& app) override;
    /// Until it is ended from outside.
    ExitCode run(const Streams& streams, Report& report) override;

private:
    PortChoice port_;
    std::string log_;
    std::string capture_;
    bool withTime_ = false;
    bool asCharacters_ = false;
};

} // namespace varda::cli
