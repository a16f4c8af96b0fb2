#include "cli/program.h"

#include "cli/documents.h"
#include "cli/subcommand.h"
#include "core/base/runtime_error.h"
#include "core/link/comm_error.h"

#include <algorithm>
#include <array>
#include <functional>
#include <ostream>

namespace varda::cli {
namespace {

ExitCode codeOf(const RuntimeError& error) {
    constexpr std::array port = {comm_error::invalidPort, comm_error::inUse, comm_error::notOpen,
                                 comm_error::cannotBeSetUp, comm_error::readError};
    constexpr std::array file = {run_time_error::fileNotFound,    run_time_error::diskFull,
                                 run_time_error::tooManyFiles,    run_time_error::permissionDenied,
                                 run_time_error::fileAccessError, run_time_error::pathNotFound,
                                 run_time_error::deviceError};
    const auto has = [&error](const auto& numbers) {
        return std::ranges::find(numbers, error.number()) != numbers.end();
    };
    return has(port) ? ExitCode::Port : has(file) ? ExitCode::File : ExitCode::Usage;
}

/// The advice says what it is about, where there is one.
std::string textOf(const RuntimeError& error) {
    return error.advice().empty() ? error.what() : error.what() + (". " + error.advice());
}

ExitCode tell(const Streams& streams, ExitCode code, const std::string& text) {
    streams.error << "varda-cli: " << text << '\n';
    return code;
}

/// For those who install the tool; they are no subcommands, and not in the help.
void addDocuments(CLI::App& app, std::ostream& out) {
    const auto print = [&app, &out](const char* option, const std::function<std::string()>& document) {
        app.add_flag_callback(option,
                              [&out, document] {
                                  out << document();
                                  throw CLI::Success();
                              })
            ->group("");
    };
    print("--print-manual-page", [&app] { return manualPage(app, VARDA_VERSION); });
    print("--print-bash-completion", [&app] { return bashCompletion(app); });
}

ExitCode runGuarded(Subcommand& subcommand, const Streams& streams, bool asJson) {
    Report report(streams.out, asJson);
    try {
        return subcommand.run(streams, report);
    } catch (const Failure& failure) {
        return tell(streams, failure.code(), failure.what());
    } catch (const RuntimeError& error) {
        return tell(streams, codeOf(error), textOf(error));
    } catch (const std::exception& error) {
        return tell(streams, ExitCode::Failed, error.what());
    }
}

} // namespace

int run(std::vector<std::string> arguments, const Streams& streams) {
    CLI::App app("Talk to programmable logic controllers on a serial host link, without a window.",
                 "varda-cli");
    app.set_version_flag("--version", "varda-cli " VARDA_VERSION);
    app.require_subcommand(1);
    app.fallthrough();
    bool asJson = false;
    app.add_flag("--json", asJson, "Write one JSON object a line, for machines");
    const std::vector<std::unique_ptr<Subcommand>> subcommands = makeSubcommands();
    for (const auto& subcommand : subcommands) {
        subcommand->declare(*app.add_subcommand(subcommand->name(), subcommand->purpose()));
    }
    addDocuments(app, streams.out);
    std::ranges::reverse(arguments); // as this parser wants them
    try {
        app.parse(arguments);
    } catch (const CLI::ParseError& end) {
        const int result = app.exit(end, streams.out, streams.error);
        return static_cast<int>(result == 0 ? ExitCode::Right : ExitCode::Usage);
    }
    for (const auto& subcommand : subcommands) {
        if (app.got_subcommand(subcommand->name())) {
            return static_cast<int>(runGuarded(*subcommand, streams, asJson));
        }
    }
    return static_cast<int>(ExitCode::Usage);
}

} // namespace varda::cli
