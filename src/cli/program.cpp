#include "cli/program.h"

#include "cli/documents.h"
#include "cli/subcommand.h"
#include "core/base/runtime_error.h"
#include "core/link/comm_error.h"

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <ostream>
#include <utility>

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
    const std::string text = error.what();
    return error.advice().empty() ? text : text + (text.ends_with('.') ? " " : ". ") + error.advice();
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

/// Runs something that ends the tool. @return what it returns, or the code of what it throws, which is told
ExitCode guarded(const Streams& streams, const std::function<ExitCode()>& step) {
    try {
        return step();
    } catch (const Failure& failure) {
        return tell(streams, failure.code(), failure.what());
    } catch (const RuntimeError& error) {
        return tell(streams, codeOf(error), textOf(error));
    } catch (const std::exception& error) {
        return tell(streams, ExitCode::Failed, error.what());
    }
}

/// The command line, and what it asks for.
class Program {
public:
    explicit Program(const Streams& streams) : streams_(streams) {
        app_.set_version_flag("--version", "varda-cli " VARDA_VERSION);
        app_.require_subcommand(1);
        app_.allow_windows_style_options(false); // a slash begins a path there, too
        app_.fallthrough();
        app_.add_flag("--json", asJson_, "Write one JSON object a line, for machines");
        for (const auto& subcommand : subcommands_) {
            subcommand->declare(*app_.add_subcommand(subcommand->name(), subcommand->purpose()));
        }
        addDocuments(app_, streams.out);
    }

    ExitCode run(std::vector<std::string> arguments) {
        std::ranges::reverse(arguments); // as this parser wants them
        try {
            app_.parse(arguments);
        } catch (const CLI::ParseError& end) {
            const bool isAnswered = app_.exit(end, streams_.out, streams_.error) == 0;
            if (isAnswered) {
                flush(streams_.out);
            }
            return isAnswered ? ExitCode::Right : ExitCode::Usage;
        }
        Report report(streams_.out, asJson_);
        return chosen().run(streams_, report);
    }

private:
    /// The parser has seen to it that there is one.
    Subcommand& chosen() const {
        return **std::ranges::find_if(
            subcommands_, [this](const auto& subcommand) { return app_.got_subcommand(subcommand->name()); });
    }

    const Streams& streams_;
    CLI::App app_{"Talk to programmable logic controllers on a serial host link, without a window.",
                  "varda-cli"};
    const std::vector<std::unique_ptr<Subcommand>> subcommands_ = makeSubcommands();
    bool asJson_ = false;
};

} // namespace

int run(std::vector<std::string> arguments, const Streams& streams) {
    Program program(streams);
    return static_cast<int>(guarded(streams, [&] { return program.run(std::move(arguments)); }));
}

} // namespace varda::cli
