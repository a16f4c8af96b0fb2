#include "window/bench/recording_player.h"

#include <chrono>
#include <utility>

namespace varda::window {

RecordingPlayer::RecordingPlayer(Clock& clock, QObject* parent)
    : QObject(parent), clock_(clock), player_(clock, [this](const Bytes& frame) { send(frame); }) {
    player_.whenPlayed([this] { emit wentOn(); });
}

void RecordingPlayer::load(std::vector<PlayedFrame> frames) {
    stop();
    player_.load(std::move(frames));
    emit wentOn();
}

void RecordingPlayer::rewind() {
    stop();
    player_.rewind();
    emit wentOn();
}

bool RecordingPlayer::takePort() {
    end_.cancel();
    hasPort_ = hasPort_ || use_.begin();
    return hasPort_;
}

void RecordingPlayer::play(double speed) {
    if (!isAtEnd() && takePort()) {
        player_.start(speed);
        emit wentOn();
    }
}

void RecordingPlayer::step() {
    if (!isAtEnd() && takePort()) {
        player_.step();
    }
}

/// The last frame's end is awaited before the port is given back. A port that refuses a frame ends it all.
void RecordingPlayer::send(const Bytes& frame) {
    isAwaiting_ = true;
    try {
        use_.send(frame);
    } catch (...) {
        endSoon();
        throw;
    }
}

void RecordingPlayer::told(const Exchange& exchange) {
    if (!hasPort_ || !isEnd(exchange.outcome)) {
        return;
    }
    isAwaiting_ = isAwaiting_ && exchange.outcome == Outcome::Overtaken;
    if (!isAwaiting_ && isAtEnd()) {
        endSoon();
    }
}

/// Not while the link tells: others are still to be told.
void RecordingPlayer::endSoon() {
    end_ = clock_.after(std::chrono::milliseconds(0), [this] { stop(); });
}

void RecordingPlayer::stop() {
    player_.stop();
    end_.cancel();
    isAwaiting_ = false;
    if (std::exchange(hasPort_, false)) {
        use_.end();
        emit wentOn();
    }
}

} // namespace varda::window
