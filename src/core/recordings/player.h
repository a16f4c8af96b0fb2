#pragma once

#include "core/base/clock.h"
#include "core/recordings/recording.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace varda::inline core {

/// Something that is to be sent, so long after the first of them.
struct PlayedFrame {
    std::chrono::microseconds offset{0};
    Bytes bytes;

    bool operator==(const PlayedFrame&) const = default;
};

/// What a recording has to be played: what was sent; of one in which nothing was, the requests.
std::vector<PlayedFrame> playedFrames(const Recording& recording);

/// The same, some bursts at a time.
class FrameCollector {
public:
    /// @param recording outlives this, and stays as it is
    explicit FrameCollector(const Recording& recording);

    /// @return whether there are more bursts than these
    bool goOn(std::size_t bursts);
    /// When there are no more. Called once.
    std::vector<PlayedFrame> takeFrames();

private:
    void add(std::chrono::system_clock::time_point time, Bytes bytes);

    const Recording& recording_;
    bool isAsking_; ///< it was recorded by who sent something
    std::size_t next_ = 0;
    ExchangeFinder requests_{false};
    std::optional<std::chrono::system_clock::time_point> first_;
    std::vector<PlayedFrame> frames_;
};

/// How far a player is.
struct PlayerProgress {
    std::size_t played = 0;
    std::size_t frames = 0;
    std::chrono::microseconds periodWanted{0};  ///< mean, of those that were played since the start
    std::chrono::microseconds periodReached{0}; ///< likewise; both 0 before the second one
    std::chrono::microseconds latest{0};        ///< the most that one of them was behind its time
};

/// Sends the frames of a recording once more: at the times that they had, faster or slower, or step by step.
/// A frame that is late does not put off the others.
class Player {
public:
    static constexpr double slowest = 0.001;
    static constexpr double fastest = 1000;

    /// @param clock outlives the player @param send may throw, which ends the playing; it may start, stop and
    /// step the player, but not destroy it
    Player(Clock& clock, std::function<void(const Bytes& frame)> send);

    /// Other frames, before the first of them.
    void load(std::vector<PlayedFrame> frames);
    /// Begins anew, before the first frame.
    void rewind();
    /// Plays from where it stands; the next frame goes out at once. @param speed 2 is twice as fast
    /// @throws RuntimeError 5 outside slowest .. fastest
    void start(double speed = 1);
    /// Stands still before the next frame.
    void stop();
    /// Sends the next frame, whatever its time. @return false where there is none
    bool step();

    bool isRunning() const { return isRunning_; }
    bool isAtEnd() const { return next_ == frames_.size(); }
    PlayerProgress progress() const;
    /// Runs after each frame, and when the player has come to its end.
    void whenPlayed(std::function<void()> played) { played_ = std::move(played); }

private:
    std::chrono::microseconds wantedSince(std::size_t frame) const;
    void waitForNext();
    void play();
    void note();

    Clock& clock_;
    std::function<void(const Bytes&)> send_;
    std::function<void()> played_ = [] {};
    std::vector<PlayedFrame> frames_;
    std::size_t next_ = 0;
    double speed_ = 1;
    bool isRunning_ = false;
    Wait wait_;
    std::size_t from_ = 0; ///< frame that the start began with
    Clock::Time started_;
    Clock::Time last_;
    std::chrono::microseconds latest_{0};
};

} // namespace varda::core
