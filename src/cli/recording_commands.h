#pragma once

#include "cli/subcommand.h"

namespace varda::cli {

class ConvertCommand : public Subcommand {
public:
    std::string name() const override { return "convert"; }
    std::string purpose() const override {
        return "Make a scenario, prepared pairs or expectations of a recording";
    }
    void declare(CLI::App& app) override;
    ExitCode run(const Streams& streams, Report& report) override;

private:
    std::string file_;
    std::string scenario_;
    std::string packets_;
    std::string expectations_;
};

class CompareCommand : public Subcommand {
public:
    std::string name() const override { return "compare"; }
    std::string purpose() const override { return "Tell in what two recordings differ"; }
    void declare(CLI::App& app) override;
    /// Right where they do not.
    ExitCode run(const Streams& streams, Report& report) override;

private:
    std::string left_;
    std::string right_;
};

} // namespace varda::cli
