#include "cli/scenario_command.h"

#include "cli/files.h"
#include "cli/link_session.h"
#include "core/runs/scenario_run.h"

#include <ostream>

namespace varda::cli {
namespace {

class FileLines : public ScenarioLines {
public:
    explicit FileLines(std::vector<std::string> lines) : lines_(std::move(lines)) {}

    int count() const override { return static_cast<int>(lines_.size()); }
    std::string line(int row) const override { return lines_.at(static_cast<std::size_t>(row)); }
    int current() const override { return current_; }
    void choose(int row) override { current_ = row; }

private:
    std::vector<std::string> lines_;
    int current_ = -1;
};

/// Sends the lines of some rounds and counts what becomes of them. As in the window, a line that nothing
/// comes for ends the run.
class Rounds {
public:
    Rounds(LinkSession& session, Report& report, std::vector<std::string> lines, int rounds)
        : session_(session),
          report_(report),
          lines_(std::move(lines)),
          left_(lines_.count() * rounds),
          timer_(session.loop().makeTimer([this] { sendNext(); })),
          run_(session.link(), *timer_, lines_) {
        session.whenTold([this](const Exchange& exchange) { count(exchange); });
    }

    void start(int period) { run_.start(std::to_string(period)); }
    void stop() { run_.stop(Mode::MonitorIdle); }

    int answered() const { return answered_; }
    int others() const { return others_; }
    bool isComplete() const { return left_ == 0 && others_ == 0; }

private:
    void sendNext() {
        if (left_ > 0) {
            --left_;
            run_.send(run_.next().value());
        }
    }

    void count(const Exchange& exchange) {
        if (exchange.outcome == Outcome::ThrownAway) {
            return;
        }
        if (exchange.outcome == Outcome::Sent) {
            return;
        }
        ++(exchange.outcome == Outcome::Answered ? answered_ : others_);
        report_.exchange(exchange);
        const bool isLast = left_ == 0 && exchange.outcome != Outcome::Overtaken;
        if (exchange.outcome == Outcome::Silent || isLast) {
            session_.stop();
        }
    }

    LinkSession& session_;
    Report& report_;
    FileLines lines_;
    int left_;
    std::unique_ptr<PeriodTimer> timer_;
    ScenarioRun run_;
    int answered_ = 0;
    int others_ = 0;
};

} // namespace

void ScenarioCommand::declare(CLI::App& app) {
    port_.declare(app);
    app.add_option("--rounds", rounds_, "How many times all lines are sent")
        ->check(CLI::Range(1, 1'000'000).description("1 to 1000000"))
        ->capture_default_str();
    app.add_option("--period", period_, "Milliseconds from one line to the next")
        ->check(CLI::Range(0, longestPeriod))
        ->capture_default_str();
    app.add_option("file", file_, "File of a scenario")->required()->check(CLI::ExistingFile);
}

ExitCode ScenarioCommand::run(const Streams& /*streams*/, Report& report) {
    LinkSession session(startPeriod);
    Rounds rounds(session, report, scenarioLines(file_), rounds_);
    session.open(port_);
    rounds.start(period_);
    const bool isWhole = session.run();
    rounds.stop();
    report.scenario(rounds_, rounds.answered(), rounds.others());
    return isWhole && rounds.isComplete() ? ExitCode::Right : ExitCode::Failed;
}

} // namespace varda::cli
