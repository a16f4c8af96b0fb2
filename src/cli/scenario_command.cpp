#include "cli/scenario_command.h"

#include "cli/failure.h"
#include "cli/files.h"
#include "cli/html_report.h"
#include "cli/link_session.h"
#include "core/files/atomic_file.h"
#include "core/insight/field_words.h"
#include "core/insight/taken_expectations.h"
#include "core/runs/scenario_run.h"

#include <chrono>
#include <ostream>

namespace varda::cli {
namespace {

using Expectations = std::vector<std::optional<Expectation>>;

bool isGone(const Exchange& exchange) { return exchange.outcome == Outcome::HungUp; }

/// Sends the lines of some rounds and judges what becomes of them. As in the window, a line that nothing
/// comes for ends the run, unless that is expected.
class Rounds {
public:
    /// @param wanted for each line; empty where every line is to be answered
    /// @param isTaking whatever comes is right where nothing is wanted
    Rounds(LinkSession& session, Report& report, std::vector<std::string> lines, Expectations wanted,
           int rounds, bool isTaking)
        : session_(session),
          report_(report),
          lines_(std::move(lines)),
          wanted_(std::move(wanted)),
          taken_(static_cast<std::size_t>(lines_.count())),
          isTaking_(isTaking),
          total_(static_cast<std::size_t>(lines_.count()) * static_cast<std::size_t>(rounds)),
          timer_(session.loop().makeTimer([this] { sendNext(); })),
          run_(session.link(), *timer_, lines_) {
        session.whenTold([this](const Exchange& exchange) { take(exchange); });
        run_.expectSilence([this](int line) { return isSilenceRight(line); });
    }

    void start(int period) { run_.start(std::to_string(period)); }
    void stop() { run_.stop(Mode::MonitorIdle); }

    const TakenExpectations& taken() const { return taken_; }
    const std::vector<LineResult>& results() const { return results_; }
    bool isComplete() const { return results_.size() == total_ && failures(results_) == 0; }

private:
    /// The line before, where nothing has become of it yet, is overtaken inside the send.
    void sendNext() {
        if (sent_ < total_) {
            ++sent_;
            run_.send(run_.next().value());
        }
    }

    void take(const Exchange& exchange) {
        if (!isEnd(exchange.outcome)) {
            return;
        }
        const bool isLost = isGone(exchange) && results_.size() < total_; // it is the next line's, then
        if (results_.size() == sent_ && !isLost) { // another burst, behind the one that ended the line
            report_.exchange(exchange);
            return;
        }
        const auto count = static_cast<std::size_t>(lines_.count());
        const int line = static_cast<int>(results_.size() % count);
        const int round = static_cast<int>(results_.size() / count) + 1;
        const std::string why = judge(exchange, line);
        const std::chrono::duration<double> time = exchange.received.last - exchange.sent.first;
        const bool isAnswered = exchange.outcome == Outcome::Answered;
        results_.push_back({round, line + 1, kindInWords(kindOf(exchange.request)),
                            isAnswered ? time.count() : 0, why, exchange.request, exchange.answer});
        taken_.take(static_cast<std::size_t>(line), exchange);
        report_.exchange(exchange);
        if (!wanted_.empty()) {
            report_.expectation(round, line + 1, why);
        }
        endWhere(exchange.outcome == Outcome::Silent && !run_.isSilenceExpected());
    }

    bool isSilenceRight(int line) const {
        if (wanted_.empty()) {
            return isTaking_;
        }
        const auto& wanted = wanted_.at(static_cast<std::size_t>(line));
        return wanted && wanted->isSilence();
    }

    std::string judge(const Exchange& exchange, int line) const {
        if (!wanted_.empty()) {
            const auto& wanted = wanted_.at(static_cast<std::size_t>(line));
            const bool endsTheRun =
                exchange.outcome == Outcome::Silent || isGone(exchange); // nobody said that it may
            return wanted ? wanted->judge(exchange) : endsTheRun ? whyNoAnswer(exchange) : std::string();
        }
        const bool isRight = exchange.outcome == Outcome::Answered || (isTaking_ && !isGone(exchange));
        return isRight ? std::string() : std::string(inWords(exchange.outcome));
    }

    void endWhere(bool isStopped) {
        if (isStopped || results_.size() == total_) {
            session_.stop();
        }
    }

    LinkSession& session_;
    Report& report_;
    ScenarioList lines_;
    Expectations wanted_;
    TakenExpectations taken_;
    bool isTaking_;
    const std::size_t total_; ///< lines of all rounds
    std::size_t sent_ = 0;
    std::unique_ptr<PeriodTimer> timer_;
    ScenarioRun run_;
    std::vector<LineResult> results_;
};

} // namespace

void ScenarioCommand::declare(CLI::App& app) {
    line_.declare(app);
    app.add_option("--rounds", rounds_, "How many times all lines are sent")
        ->check(CLI::Range(1, 1'000'000).description("1 to 1000000"))
        ->capture_default_str();
    app.add_option("--period", period_, "Milliseconds from one line to the next")
        ->check(CLI::Range(1, longestPeriod)) // a period of 0 never ends
        ->capture_default_str();
    app.add_option("--expect", expectations_, "File of what is expected of the lines' answers")
        ->check(existingFile());
    app.add_option("--junit", junit_, "Write the results to this file, as CI systems read them");
    app.add_option("--html", html_, "Write the results to this file as a page to read");
    app.add_option("--take", take_, "Write what comes to this file, as what is expected from now on");
    app.add_option("file", file_, "File of a scenario")->required()->check(existingFile());
}

ExitCode ScenarioCommand::run(const Streams& streams, Report& report) {
    requireOwnFile(junit_, {html_, take_, expectations_, file_});
    requireOwnFile(html_, {take_, expectations_, file_});
    std::vector<std::string> lines = scenarioLines(file_);
    Expectations wanted = expectations_.empty() ? Expectations() : expectations(expectations_, lines.size());
    LinkSession session(startPeriod);
    Rounds rounds(session, report, std::move(lines), std::move(wanted), rounds_, !take_.empty());
    line_.open(session, streams, report);
    rounds.start(period_);
    const bool isWhole = session.run([&] {
        rounds.stop();
        const std::size_t wrong = failures(rounds.results());
        const std::size_t right = rounds.results().size() - wrong;
        doBoth([&] { report.scenario(rounds_, static_cast<int>(right), static_cast<int>(wrong)); },
               [&] { writeFiles(rounds.results(), rounds.taken().texts()); });
    });
    return isWhole && rounds.isComplete() ? ExitCode::Right : ExitCode::Failed;
}

void ScenarioCommand::writeFiles(const std::vector<LineResult>& results,
                                 const std::vector<std::string>& taken) const {
    const auto write = [](const std::string& path, auto&& file) {
        if (!path.empty()) {
            file(path);
        }
    };
    const std::string name = readableName(file_);
    const auto writeTable = [&](const std::string& path) { replaceFile(path, junit(name, results)); };
    const auto writePage = [&](const std::string& path) { replaceFile(path, htmlReport(name, results)); };
    const auto writeTaken = [&](const std::string& path) { saveExpectations(path, taken); };
    doBoth([&] { write(junit_, writeTable); },
           [&] { doBoth([&] { write(html_, writePage); }, [&] { write(take_, writeTaken); }); });
}

} // namespace varda::cli
