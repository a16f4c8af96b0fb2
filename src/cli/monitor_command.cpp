#include "cli/monitor_command.h"

#include "cli/files.h"
#include "cli/link_session.h"
#include "core/link/period.h"
#include "core/recordings/capture_file.h"
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

/// What was heard, at its time of day.
CapturedPacket packetOf(const Exchange& exchange, Clock::Time now) {
    using TimeOfSystem = std::chrono::system_clock;
    const auto ago = std::chrono::duration_cast<TimeOfSystem::duration>(now - exchange.received.first);
    return {TimeOfSystem::now() - ago, false, exchange.answer, exchange.answer.size(), ""};
}

} // namespace

void MonitorCommand::declare(CLI::App& app) {
    port_.declare(app);
    app.add_option("--log", log_, "Append the lines to this file");
    app.add_option("--pcapng", capture_,
                   "Write a capture to this file, as Wireshark reads it; it begins anew");
    app.add_flag("--time", withTime_, "Begin each line with the time");
    app.add_flag("--characters", asCharacters_, "Show the bytes as characters");
}

ExitCode MonitorCommand::run(const Streams& streams, Report& report) {
    requireOwnFile(capture_, {log_});
    LinkSession session(startPeriod);
    LatestLine line;
    MonitorRun monitor(session.link(), session.loop(), line);
    if (!log_.empty()) {
        monitor.openLog(log_);
    }
    CaptureFile capture(session.loop());
    if (!capture_.empty()) {
        capture.open(capture_);
    }
    session.whenTold([&](const Exchange& exchange) {
        if (exchange.outcome != Outcome::Heard) {
            return;
        }
        if (capture.isOpen() && !capture.write(packetOf(exchange, session.loop().now()))) {
            throw Failure(ExitCode::File, capture_ + " takes no more: its disk is full.");
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
