#include "cli/documents.h"

#include "cli/failure.h"

#include <array>
#include <functional>

namespace varda::cli {
namespace {

/// What man takes for commands of its own stands behind a backslash.
std::string plain(const std::string& text) {
    std::string escaped;
    for (const char character : text) {
        if (character == '-' || character == '\\') {
            escaped += '\\';
        }
        escaped += character;
    }
    return !escaped.empty() && (escaped.front() == '.' || escaped.front() == '\'') ? "\\&" + escaped
                                                                                   : escaped;
}

bool isShown(const CLI::Option* option) { return !option->get_group().empty(); }

std::string entry(const std::string& what, const std::string& text) {
    return ".TP\n.B " + plain(what) + '\n' + plain(text) + '\n';
}

std::string entriesOf(const CLI::App& app) {
    std::string text;
    for (const CLI::Option* const option : app.get_options(isShown)) {
        const std::string preset = option->get_default_str();
        text += entry(option->get_name(true, true),
                      option->get_description() + (preset.empty() ? "" : " (" + preset + " if not given)"));
    }
    return text;
}

std::string exitCodes() {
    struct Code {
        ExitCode code;
        const char* meaning;
    };
    constexpr std::array codes = {
        Code{ExitCode::Right, "every request was answered, and no answer has a flaw"},
        Code{ExitCode::Failed,
             "no answer, one of another length, or one with a flaw; a frame that is not sound"},
        Code{ExitCode::Usage, "the command line is not understood, or names a file that is not there"},
        Code{ExitCode::Port, "the port does not open, or went away"},
        Code{ExitCode::File, "a file cannot be read or written"}};
    std::string text;
    for (const Code& code : codes) {
        text += entry(std::to_string(static_cast<int>(code.code)), code.meaning);
    }
    return text;
}

std::string namesIn(const CLI::App& app) {
    std::string names;
    for (const CLI::Option* const option : app.get_options(isShown)) {
        for (const std::string& name : option->get_lnames()) {
            names += "--" + name + ' ';
        }
    }
    return names;
}

std::vector<const CLI::App*> subcommandsOf(const CLI::App& app) {
    return app.get_subcommands(std::function<bool(const CLI::App*)>([](const CLI::App*) { return true; }));
}

} // namespace

std::string manualPage(const CLI::App& app, const std::string& version) {
    std::string text = R"(.TH VARDA-CLI 1 "" "varda-cli )" + version + "\" \"User commands\"\n.SH NAME\n" +
                       "varda\\-cli \\- " + plain(app.get_description()) +
                       "\n.SH SYNOPSIS\n.B varda\\-cli\n[\\fIOPTION\\fR]... \\fISUBCOMMAND\\fR "
                       "[\\fIOPTION\\fR]... [\\fIOPERAND\\fR]...\n.SH OPTIONS\n" +
                       entriesOf(app) + ".SH SUBCOMMANDS\n";
    for (const CLI::App* const subcommand : subcommandsOf(app)) {
        text += ".SS " + plain(subcommand->get_name()) + '\n' + plain(subcommand->get_description()) + ".\n" +
                entriesOf(*subcommand);
    }
    return text + ".SH EXIT STATUS\n" + exitCodes() + ".SH SEE ALSO\n.BR varda (1)\n";
}

std::string bashCompletion(const CLI::App& app) {
    std::string subcommands;
    std::string cases;
    for (const CLI::App* const subcommand : subcommandsOf(app)) {
        subcommands += subcommand->get_name() + ' ';
        cases += "        " + subcommand->get_name() + ") words=\"" + namesIn(*subcommand) + "\" ;;\n";
    }
    return "# Completes the command line of varda-cli.\n"
           "_varda_cli() {\n"
           "    local words=\"" +
           subcommands + namesIn(app) +
           "\" word\n"
           "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
           "        case $word in\n" +
           cases +
           "        esac\n"
           "    done\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"${COMP_WORDS[COMP_CWORD]}\")\n"
           "}\n"
           "complete -o default -F _varda_cli varda-cli\n";
}

} // namespace varda::cli
