#pragma once

#include "cli/fault_choice.h"
#include "cli/port_choice.h"
#include "cli/subcommand.h"

namespace varda::cli {

class PlayCommand : public Subcommand {
public:
    std::string name() const override { return "play"; }
    std::string purpose() const override { return "Send once more what was recorded"; }
    void declare(CLI::App& app) override;
    /// Right where all of it was sent, whatever was answered.
    ExitCode run(const Streams& streams, Report& report) override;

private:
    PortChoice port_;
    FaultChoice faults_;
    std::string file_;
    double speed_ = 1;
    bool byStep_ = false;
};

} // namespace varda::cli
