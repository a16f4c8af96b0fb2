#pragma once

#include "cli/subcommand.h"
#include "core/base/bytes.h"

namespace varda::cli {

class DecodeCommand : public Subcommand {
public:
    std::string name() const override { return "decode"; }
    std::string purpose() const override { return "Explain frames, byte by byte"; }
    void declare(CLI::App& app) override;
    /// Right where no frame has a flaw.
    ExitCode run(const Streams& streams, Report& report) override;

private:
    bool decode(const std::string& text, const Bytes& request, Report& report) const;

    std::vector<std::string> frames_;
    std::string request_;
};

} // namespace varda::cli
