#include "cli/monitor_command.h"

#include "cli/link_session.h"
#include "core/link/period.h"
#include "core/runs/monitor_run.h"

#include <ctime>
#include <ostream>

namespace varda::cli {
namespace {

/// Nothing is kept but the latest line.
class LatestLine : public MonitorLines {
public:
    std::size_t count() const override { return 0; }
    void append(MonitorLine line) override { text_ = line.text(); }
    void clear() override {}

    const std::string& text() const { return text_; }

private:
    std::string text_;
};

TimeOfDay now() {
    const std::time_t time = std::time(nullptr);
    const std::tm* const local = std::localtime(&time);
    return {local->tm_hour, local->tm_min, local->tm_sec};
}

} // namespace

void MonitorCommand::declare(CLI::App& app) {
    port_.declare(app);
    app.add_option("--log", log_, "Append the lines to this file");
    app.add_flag("--time", withTime_, "Begin each line with the time");
    app.add_flag("--characters", asCharacters_, "Show the bytes as characters");
}

ExitCode MonitorCommand::run(const Streams& streams, Report& report) {
    LinkSession session(startPeriod);
    LatestLine line;
    MonitorRun monitor(session.link(), session.loop(), line);
    if (!log_.empty()) {
        monitor.openLog(log_);
    }
    session.whenTold([&](const Exchange& exchange) {
        if (exchange.outcome != Outcome::Heard) {
            return;
        }
        const auto time = withTime_ ? std::optional(now()) : std::nullopt;
        if (!monitor.list(exchange.answer, time, asCharacters_)) {
            throw Failure(ExitCode::File, log_ + " takes no more: its disk is full.");
        }
        report.heard(exchange, line.text());
    });
    session.open(port_);
    monitor.start();
    streams.error << "Listening on " << port_.name << ". End with Ctrl+C.\n" << std::flush;
    session.run();
    monitor.stop();
    return ExitCode::Right;
}

} // namespace varda::cli
