#pragma once

#include "cli/line_choice.h"
#include "cli/requests.h"
#include "cli/subcommand.h"
#include "core/link/period.h"

namespace varda::cli {

/// Sends requests one after the other, and waits for the answer of each.
class TransactionCommand : public Subcommand {
public:
    void declare(CLI::App& app) override;
    /// Right where every request was answered, and no answer has a flaw.
    ExitCode run(const Streams& streams, Report& report) override;

private:
    /// What the operands are, for the help.
    virtual std::string operandsInWords() const = 0;
    virtual std::vector<Request> makeRequests(const StationTexts& stations,
                                              const std::vector<Operand>& operands) const = 0;

    LineChoice line_;
    StationTexts stations_{.destination = "255", .source = "0"};
    int period_ = startPeriod;
    std::vector<std::string> words_;
};

class ReadCommand : public TransactionCommand {
public:
    std::string name() const override { return "read"; }
    std::string purpose() const override { return "Read bits or words"; }

private:
    std::string operandsInWords() const override;
    std::vector<Request> makeRequests(const StationTexts& stations,
                                      const std::vector<Operand>& operands) const override;
};

class WriteCommand : public TransactionCommand {
public:
    std::string name() const override { return "write"; }
    std::string purpose() const override { return "Write bits or words"; }

private:
    std::string operandsInWords() const override;
    std::vector<Request> makeRequests(const StationTexts& stations,
                                      const std::vector<Operand>& operands) const override;
};

class MixedReadCommand : public TransactionCommand {
public:
    std::string name() const override { return "mixed-read"; }
    std::string purpose() const override { return "Read bits and words from anywhere in one request"; }

private:
    std::string operandsInWords() const override;
    std::vector<Request> makeRequests(const StationTexts& stations,
                                      const std::vector<Operand>& operands) const override;
};

class MixedWriteCommand : public TransactionCommand {
public:
    std::string name() const override { return "mixed-write"; }
    std::string purpose() const override { return "Write bits and words anywhere in one request"; }

private:
    std::string operandsInWords() const override;
    std::vector<Request> makeRequests(const StationTexts& stations,
                                      const std::vector<Operand>& operands) const override;
};

} // namespace varda::cli
