#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace varda::cli {

/// The port that a subcommand works on, and how its line is set.
struct PortChoice {
    std::string name;
    int baudRate = 9600;
    int dataBits = 8;
    int stopBits = 1;
    std::string parity = "none";

    void declare(CLI::App& app);
    /// As the serial control takes them: "9600,n,8,1".
    std::string settings() const;
};

} // namespace varda::cli
