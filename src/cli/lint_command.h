#pragma once

#include "cli/subcommand.h"

namespace varda::cli {

class LintCommand : public Subcommand {
public:
    std::string name() const override { return "lint"; }
    std::string purpose() const override { return "Look for what is wrong with prepared pairs"; }
    void declare(CLI::App& app) override;
    /// Right where nothing is.
    ExitCode run(const Streams& streams, Report& report) override;

private:
    std::vector<std::string> files_;
};

} // namespace varda::cli
