#pragma once

#include "cli/line_choice.h"
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
    LineChoice line_;
    std::string file_;
    double speed_ = 1;
    bool byStep_ = false;
};

} // namespace varda::cli
