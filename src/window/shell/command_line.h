#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace varda::window {

/// What the command line wishes of the window; without any wish it starts as it always does.
struct CommandLine {
    std::optional<std::string> port; ///< this and the next four are texts of their lists
    std::optional<std::string> baudRate;
    std::optional<std::string> dataBits;
    std::optional<std::string> stopBits;
    std::optional<std::string> parity;
    bool open = false;                   ///< test the port and open it
    std::optional<int> mode;             ///< index of its option
    std::optional<std::string> packets;  ///< file of prepared pairs
    std::optional<std::string> scenario; ///< file of a scenario
    std::vector<std::string> files;      ///< loaded by what they hold
};

/// What is printed instead of showing a window.
struct CommandLineAnswer {
    std::string text;
    int exitCode = 0; ///< 0 for help and version, 2 for a command line that is not understood
};

/// Reads the arguments behind the program's name, without those that are Qt's.
std::variant<CommandLine, CommandLineAnswer> readCommandLine(std::vector<std::string> arguments);

/// The answer to arguments that ask for help or for the version, whatever else they say: it needs no screen.
std::optional<CommandLineAnswer> answerAtOnce(const std::vector<std::string>& arguments);

} // namespace varda::window
