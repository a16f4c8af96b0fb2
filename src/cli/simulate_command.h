#pragma once

#include "cli/line_choice.h"
#include "cli/memory_choice.h"
#include "cli/subcommand.h"

namespace varda::cli {

class SimulateCommand : public Subcommand {
public:
    std::string name() const override { return "simulate"; }
    std::string purpose() const override {
        return "Answer requests from files of prepared pairs, or from the memory of a controller";
    }
    void declare(CLI::App& app) override;
    /// Until it is ended from outside.
    ExitCode run(const Streams& streams, Report& report) override;

private:
    LineChoice line_;
    MemoryChoice memory_;
    std::vector<std::string> files_;
};

} // namespace varda::cli
