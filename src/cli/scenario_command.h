#pragma once

#include "cli/junit.h"
#include "cli/line_choice.h"
#include "cli/subcommand.h"
#include "core/link/period.h"

namespace varda::cli {

class ScenarioCommand : public Subcommand {
public:
    std::string name() const override { return "run"; }
    std::string purpose() const override { return "Send the frames of a scenario"; }
    void declare(CLI::App& app) override;
    /// Right where every line was answered, or as it was expected.
    ExitCode run(const Streams& streams, Report& report) override;

private:
    void writeFiles(const std::vector<LineResult>& results, const std::vector<std::string>& taken) const;

    LineChoice line_;
    std::string file_;
    std::string expectations_;
    std::string junit_;
    std::string html_;
    std::string take_;
    int rounds_ = 1;
    int period_ = startPeriod;
};

} // namespace varda::cli
