#pragma once

#include "core/link/exchange.h"
#include "core/recordings/player.h"

#include <QObject>

#include <functional>
#include <optional>
#include <vector>

namespace varda::inline core {
class Clock;
} // namespace varda::core

namespace varda::window {

/// Plays a recording on the open port, which it has for itself meanwhile as a scenario has: from the first
/// frame on until the last one's end, or until it is stopped. Between two steps the port stays its own.
class RecordingPlayer : public QObject {
    Q_OBJECT

public:
    /// How the port is got and given back.
    struct PortUse {
        std::function<bool()> begin; ///< tells the user where it may not
        std::function<void(const Bytes& frame)> send;
        std::function<void()> end;
    };

    /// @param clock outlives this; its continuations pass a guard
    explicit RecordingPlayer(Clock& clock, QObject* parent = nullptr);

    void usePort(PortUse use) { use_ = std::move(use); }

    /// Another recording; stops what is played.
    void load(std::vector<PlayedFrame> frames);
    /// Begins anew, before the first frame; stops what is played.
    void rewind();
    void play(double speed);
    /// Sends the next frame alone.
    void step();
    /// Stands still, and gives the port back.
    void stop();
    void told(const Exchange& exchange);

    bool isPlaying() const { return player_.isRunning(); }
    bool hasPort() const { return hasPort_; }
    bool isAtEnd() const { return player_.isAtEnd(); }
    PlayerProgress progress() const { return player_.progress(); }

signals:
    void wentOn();

private:
    bool takePort();
    void send(const Bytes& frame);
    void endSoon();

    Clock& clock_;
    PortUse use_;
    Player player_;
    bool hasPort_ = false;
    bool isAwaiting_ = false; ///< nothing has become yet of what was sent last
    Wait end_;
};

} // namespace varda::window
