#include "cli/play_command.h"

#include "cli/files.h"
#include "cli/link_session.h"
#include "core/link/period.h"
#include "core/recordings/player.h"

#include <istream>
#include <ostream>

namespace varda::cli {
namespace {

/// Plays on an open link, and reports what becomes of each frame.
class Playing {
public:
    Playing(LinkSession& session, Report& report, std::vector<PlayedFrame> frames)
        : session_(session), player_(session.loop(), [this](const Bytes& frame) { send(frame); }) {
        player_.load(std::move(frames));
        session.whenTold([this, &report](const Exchange& exchange) {
            if (!isEnd(exchange.outcome)) {
                return;
            }
            report.exchange(exchange);
            isAwaiting_ = isAwaiting_ && exchange.outcome == Outcome::Overtaken;
            stopWhereDone();
        });
        session.link().enterMode(Mode::Scenario);
    }

    /// @return false where a signal ended it, or else the input of steps
    bool play(double speed) {
        player_.start(speed);
        return session_.run();
    }

    bool playByStep(const Streams& streams) {
        for (std::string line; !player_.isAtEnd();) {
            streams.error << player_.progress().played + 1 << " of " << player_.progress().frames
                          << ": press Enter to send it.\n"
                          << std::flush;
            if (!std::getline(streams.in, line)) {
                return false;
            }
            player_.step();
            if (!session_.run()) {
                return false;
            }
        }
        return true;
    }

    PlayerProgress progress() const { return player_.progress(); }

private:
    void send(const Bytes& frame) {
        session_.link().sendScenarioFrame(frame, answerLengthOf(frame));
        isAwaiting_ = true;
    }

    /// The last frame's end is awaited; step by step each one's.
    void stopWhereDone() {
        if (!isAwaiting_ && !player_.isRunning()) {
            session_.stop();
        }
    }

    LinkSession& session_;
    Player player_;
    bool isAwaiting_ = false; ///< nothing has become yet of what was sent last
};

} // namespace

void PlayCommand::declare(CLI::App& app) {
    line_.declare(app);
    app.add_option("--speed", speed_, "How many times as fast as it was recorded")
        ->check(CLI::Range(Player::slowest, Player::fastest).description("0.001 to 1000"))
        ->capture_default_str();
    app.add_flag("--step", byStep_, "Send each frame at a line end on the standard input");
    app.add_option("file", file_, "Capture in the form pcapng")->required()->check(existingFile());
}

ExitCode PlayCommand::run(const Streams& streams, Report& report) {
    std::vector<PlayedFrame> frames = playedFrames(recording(file_, streams.error));
    if (frames.empty()) {
        throw Failure(ExitCode::File, file_ + " holds nothing that was sent, and no request.");
    }
    LinkSession session(startPeriod);
    Playing playing(session, report, std::move(frames));
    line_.open(session, streams, report);
    bool isWhole = false;
    doBoth([&] { isWhole = byStep_ ? playing.playByStep(streams) : playing.play(speed_); },
           [&] { report.played(playing.progress()); });
    return isWhole ? ExitCode::Right : ExitCode::Failed;
}

} // namespace varda::cli
