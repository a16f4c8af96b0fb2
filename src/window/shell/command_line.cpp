#include "window/shell/command_line.h"

#include "core/files/file_path.h"
#include "device/serial_node.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <limits>
#include <sstream>
#include <string_view>

namespace varda::window {
namespace {

constexpr int notUnderstood = 2;

constexpr std::array<std::string_view, 6> modeNames = {"read",        "write",      "mixed-read",
                                                       "mixed-write", "simulation", "monitoring"};

/// As the options' texts are typed; what the window calls them is looked up when all has been read.
struct Typed {
    std::string mode;
    std::string parity;
};

std::vector<std::string> modes() { return {modeNames.begin(), modeNames.end()}; }

std::string parityText(const std::string& typed) {
    switch (typed.empty() ? ' ' : typed.front()) {
    case 'e':
    case 'E':
        return "EVEN";
    case 'o':
    case 'O':
        return "ODD";
    default:
        return "NONE";
    }
}

/// The parser's own check takes a name for one of the system's 8-bit letters, which are few on Windows.
std::string whyNoFile(const std::string& name) {
    std::error_code error;
    const auto kind = std::filesystem::status(filePath(name), error).type();
    if (kind == std::filesystem::file_type::directory) {
        return "File is actually a directory: " + name;
    }
    return kind == std::filesystem::file_type::not_found || kind == std::filesystem::file_type::none
               ? "File does not exist: " + name
               : std::string();
}

CLI::Validator existingFile() { return {whyNoFile, "FILE"}; }

void addPortOptions(CLI::App& app, CommandLine& line, Typed& typed) {
    app.add_option("--port", line.port, std::string(device::portNamesInWords()));
    app.add_option("--baud", line.baudRate, "Bits per second")
        ->check(CLI::Range(1, std::numeric_limits<int>::max()).description("above 0"));
    app.add_option("--data", line.dataBits, "Data bits")->check(CLI::IsMember({"5", "6", "7", "8"}));
    app.add_option("--stop", line.stopBits, "Stop bits")->check(CLI::IsMember({"1", "2"}));
    app.add_option("--parity", typed.parity, "Parity: none, even, odd, or their first letters")
        ->check(CLI::IsMember({"n", "e", "o", "none", "even", "odd"}, CLI::ignore_case));
    app.add_flag("--open", line.open, "Test the port, and open it");
}

void addPageOptions(CLI::App& app, CommandLine& line, Typed& typed) {
    app.add_option("--mode", typed.mode, "What the program does")->check(CLI::IsMember(modes()));
    app.add_option("--packets", line.packets, "Load prepared pairs of request and answer")
        ->check(existingFile());
    app.add_option("--scenario", line.scenario, "Load a scenario")->check(existingFile());
    app.add_option("files", line.files, "Loaded by what they hold: prepared pairs, or a scenario")
        ->check(existingFile());
}

void complete(CommandLine& line, const Typed& typed) {
    if (!typed.parity.empty()) {
        line.parity = parityText(typed.parity);
    }
    if (!typed.mode.empty()) {
        line.mode = static_cast<int>(std::ranges::find(modeNames, typed.mode) - modeNames.begin());
    }
}

} // namespace

std::variant<CommandLine, CommandLineAnswer> readCommandLine(std::vector<std::string> arguments) {
    CommandLine line;
    Typed typed;
    CLI::App app("Test and simulate programmable logic controllers on a serial host link.", "varda");
    app.set_version_flag("--version", "varda " VARDA_VERSION);
    app.allow_windows_style_options(false); // a slash begins a path there, too
    app.footer("Options that every Qt program understands, for example -style, are Qt's.");
    addPortOptions(app, line, typed);
    addPageOptions(app, line, typed);
    std::ranges::reverse(arguments); // as this parser wants them
    try {
        app.parse(arguments);
    } catch (const CLI::ParseError& end) {
        std::ostringstream text;
        const int result = app.exit(end, text, text);
        return CommandLineAnswer{text.str(), result == 0 ? 0 : notUnderstood};
    }
    complete(line, typed);
    return line;
}

std::optional<CommandLineAnswer> answerAtOnce(const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments) {
        if (argument == "--") {
            break; // files follow
        }
        if (argument == "--help" || argument == "-h" || argument == "--version") {
            return std::get<CommandLineAnswer>(readCommandLine({argument}));
        }
    }
    return std::nullopt;
}

} // namespace varda::window
