#include "core/recordings/player.h"

#include "core/base/runtime_error.h"

#include <algorithm>
#include <utility>

namespace varda::inline core {

using std::chrono::duration_cast;
using std::chrono::microseconds;
using std::chrono::milliseconds;

std::vector<PlayedFrame> playedFrames(const Recording& recording) {
    std::vector<PlayedFrame> frames;
    std::optional<std::chrono::system_clock::time_point> first;
    const auto add = [&](std::chrono::system_clock::time_point time, const Bytes& bytes) {
        first = first.value_or(time);
        frames.push_back({duration_cast<microseconds>(time - *first), bytes});
    };
    for (const RecordedBurst& burst : recording) {
        if (burst.isSent) {
            add(burst.time, burst.bytes);
        }
    }
    if (frames.empty()) {
        for (const RecordedExchange& exchange : exchangesOf(recording)) {
            add(exchange.time, exchange.request);
        }
    }
    return frames;
}

Player::Player(Clock& clock, std::function<void(const Bytes& frame)> send)
    : clock_(clock), send_(std::move(send)) {}

void Player::load(std::vector<PlayedFrame> frames) {
    stop();
    frames_ = std::move(frames);
    next_ = 0;
    from_ = 0;
    latest_ = {};
}

void Player::start(double speed) {
    if (!(speed >= slowest && speed <= fastest)) { // which is no number neither
        throw RuntimeError(run_time_error::invalidProcedureCall,
                           "A recording is played at 0.001 to 1000 times its speed.");
    }
    stop();
    if (isAtEnd()) {
        return;
    }
    isRunning_ = true;
    speed_ = speed;
    from_ = next_;
    latest_ = {};
    started_ = clock_.now();
    waitForNext();
}

void Player::stop() {
    isRunning_ = false;
    wait_.cancel();
}

/// Since the start, at the speed of the start.
microseconds Player::wantedSince(std::size_t frame) const {
    const auto offset = frames_[frame].offset - frames_[from_].offset;
    return duration_cast<microseconds>(std::chrono::duration<double, std::micro>(offset) / speed_);
}

void Player::waitForNext() {
    const auto due = started_ + wantedSince(next_);
    const auto left = std::chrono::ceil<milliseconds>(due - clock_.now());
    wait_ = clock_.after(std::max(left, milliseconds(0)), [this] { play(); });
}

void Player::play() {
    note();
    const Bytes frame = frames_[next_++].bytes; // other frames may be loaded meanwhile
    try {
        send_(frame);
    } catch (...) {
        stop();
        throw;
    }
    isRunning_ = isRunning_ && !isAtEnd();
    if (isRunning_ && !wait_.isPending()) { // what is sent may have started it anew
        waitForNext();
    }
    played_();
}

void Player::note() {
    last_ = clock_.now();
    latest_ = std::max(latest_, duration_cast<microseconds>(last_ - started_ - wantedSince(next_)));
}

bool Player::step() {
    stop();
    if (isAtEnd()) {
        return false;
    }
    from_ = next_ + 1; // times mean nothing step by step
    const Bytes frame = frames_[next_++].bytes;
    send_(frame);
    played_();
    return true;
}

PlayerProgress Player::progress() const {
    PlayerProgress progress{.played = next_, .frames = frames_.size(), .latest = latest_};
    if (next_ > from_ + 1) {
        const auto periods = static_cast<std::int64_t>(next_ - from_ - 1);
        progress.periodWanted = wantedSince(next_ - 1) / periods;
        progress.periodReached = duration_cast<microseconds>(last_ - started_) / periods;
    }
    return progress;
}

} // namespace varda::core
