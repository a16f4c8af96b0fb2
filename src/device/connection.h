#pragma once

#include "core/link/line.h"
#include "device/input_buffer.h"

#include <asio/cancellation_signal.hpp>
#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/serial_port.hpp>
#include <asio/steady_timer.hpp>

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace varda::device {

class NodeClaim;

/// An open serial port with a thread that fills its input buffer and empties its output buffer.
///
/// Its functions are for one thread, the owner's. They never wait for the line.
class Connection {
public:
    /// Of what waits to be sent behind an earlier write. A write finds room in there, or is not sent.
    static constexpr std::size_t mostUnsentBytes = 4096;
    /// How long what came in last can still be read when the line has gone away. A reader waits for the end
    /// of a frame before it reads, twice where more bytes have come meanwhile.
    static constexpr auto timeToRead = std::chrono::milliseconds(400);
    /// How long pieces are gathered that come to unread ones before it is told of them. Whoever leaves bytes
    /// unread waits for more, at least as long as this, and need not wake up for each piece of a busy line.
    static constexpr auto gatheringTime = std::chrono::milliseconds(100);

    /// What has happened since it was asked for last.
    struct News {
        bool received = false;
        bool unsent = false;
        bool hungUp = false; ///< the line went away, behind all that came in; nothing more will happen
    };

    /// @param claim of the port, whose handle the connection takes over
    /// @param tell called once when there is news, from whichever thread, and not again until they are taken
    /// @throws std::runtime_error where the driver refuses, std::system_error where the system does
    Connection(NodeClaim& claim, const LineSettings& settings, std::function<void()> tell);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    News takeNews();

    std::size_t inBufferCount() const;
    Burst read();
    Burst look(std::size_t from) const;
    /// Throws away what has come in up to now, wherever on the way to the input buffer it is.
    void discard();
    void keepFirst(std::size_t most);

    /// Sends the bytes, or counts them as unsent where the line has not taken enough of those before. Where
    /// it has taken all of them, bytes of any number are sent: that many wait then, but what is longer than
    /// the room for waiting ones could not be sent at all otherwise, however free the line.
    void write(const Bytes& bytes);
    std::size_t unsentWrites() const;

private:
    /// One read under way. Discarding begins another, and what this one still brings is dropped.
    struct Reading {
        asio::cancellation_signal end;
        std::array<std::uint8_t, 4096> piece{};
        bool isDropped = false; ///< set under both locks
    };

    void run() noexcept;
    void startReading();
    void received(Reading& reading, const std::error_code& error, std::size_t count);
    void tellOfPiece(bool isFirst, std::unique_lock<std::mutex>& input);
    void send(std::span<const std::uint8_t> bytes);
    void sendWaiting();
    void sent(const std::error_code& error, std::size_t count);
    void fail();
    void tellOfTheEnd(std::unique_lock<std::mutex>& input);
    void readOnWhereThereIsRoom();
    bool mayReadOn() const;
    bool isGone() const;
    void tellOf(bool News::*event, std::unique_lock<std::mutex>& input);

    const std::function<void()> tell_;
    asio::io_context context_{1}; ///< for one thread
    asio::executor_work_guard<asio::io_context::executor_type> work_{context_.get_executor()};

    // Two of them, so that who takes what came in never waits for the next read to begin. Where both are
    // locked, the port's comes first.
    mutable std::mutex portMutex_; ///< guards the port and what is under way there
    asio::serial_port port_{context_};
    std::shared_ptr<Reading> reading_; ///< null while the input buffer is full
    Bytes sending_;                    ///< being handed to the driver
    std::size_t handedOver_ = 0;       ///< bytes of these that it has
    Bytes waiting_;                    ///< behind them

    mutable std::mutex inputMutex_; ///< guards what has come of it
    InputBuffer input_;
    News news_;
    bool isTold_ = false;
    bool isGone_ = false;
    bool isEndTold_ = false;
    std::size_t unsentWrites_ = 0;

    // The thread's.
    asio::steady_timer endOfReading_{context_};
    asio::steady_timer endOfGathering_{context_};
    bool isGathering_ = false;

    std::thread thread_;
};

} // namespace varda::device
