#include "core/recordings/player.h"

#include "core/base/runtime_error.h"

#include <algorithm>
#include <utility>

namespace varda::inline core {

using std::chrono::duration_cast;
using std::chrono::microseconds;
using std::chrono::milliseconds;

FrameCollector::FrameCollector(const Recording& recording)
    : recording_(recording), isAsking_(std::ranges::any_of(recording, &RecordedBurst::isSent)) {}

bool FrameCollector::goOn(std::size_t bursts) {
    const std::size_t end = next_ + std::min(bursts, recording_.size() - next_);
    for (; next_ < end; ++next_) {
        const RecordedBurst& burst = recording_[next_];
        if (!isAsking_) {
            requests_.take(burst);
        } else if (burst.isSent) {
            add(burst.time, burst.bytes);
        }
    }
    return next_ < recording_.size();
}

void FrameCollector::add(std::chrono::system_clock::time_point time, Bytes bytes) {
    first_ = first_.value_or(time);
    frames_.push_back({duration_cast<microseconds>(time - *first_), std::move(bytes)});
}

std::vector<PlayedFrame> FrameCollector::takeFrames() {
    for (RecordedExchange& exchange : requests_.takeExchanges()) {
        add(exchange.time, std::move(exchange.request));
    }
    return std::move(frames_);
}

std::vector<PlayedFrame> playedFrames(const Recording& recording) {
    FrameCollector collector(recording);
    collector.goOn(recording.size());
    return collector.takeFrames();
}

Player::Player(Clock& clock, std::function<void(const Bytes& frame)> send)
    : clock_(clock), send_(std::move(send)) {}

void Player::load(std::vector<PlayedFrame> frames) {
    frames_ = std::move(frames);
    rewind();
}

void Player::rewind() {
    stop();
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
