#pragma once

#include "cli/subcommand.h"

namespace varda::cli {

class PortsCommand : public Subcommand {
public:
    std::string name() const override { return "ports"; }
    std::string purpose() const override { return "List the serial ports of this computer"; }
    void declare(CLI::App& app) override;
    ExitCode run(const Streams& streams, Report& report) override;

private:
    /// @return how many ports there are
    static std::size_t list(Report& report);
    static std::size_t examine(Report& report);

    bool examine_ = false;
};

} // namespace varda::cli
