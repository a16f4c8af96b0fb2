#pragma once

#include "core/base/bytes.h"
#include "core/link/line.h"
#include "years/findings.h"
#include "years/hand_clock.h"
#include "years/sky.h"
#include "years/tape.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace varda::years {

class SimulatedLine;

/// What a line did to those at its ends, so that a run shows that faults came.
struct Faults {
    std::uint64_t altered = 0;
    std::uint64_t lost = 0;
    std::uint64_t doubled = 0;
    std::uint64_t babbled = 0; ///< bytes that nobody sent
    std::uint64_t split = 0;
    std::uint64_t overflown = 0; ///< bytes that found no room
    std::uint64_t unheard = 0;   ///< bytes that arrived where no line was open
    std::uint64_t unsent = 0;    ///< writes that found no room
    std::uint64_t refused = 0;   ///< writes, reads and openings that failed
    std::uint64_t hangUps = 0;
};

/// Two ends of a serial line, full duplex, with all that can happen to bytes on their way.
///
/// Bytes take the time that the rate gives them, then the latency, and keep their order.
class Cable {
public:
    Cable(HandClock& clock, Sky& sky, Tape& tape) : clock_(clock), sky_(sky), tape_(tape) {}
    Cable(const Cable&) = delete;
    Cable& operator=(const Cable&) = delete;
    ~Cable() = default;

    /// A closed line at one of the ends, 0 and 1.
    std::unique_ptr<Line> makeLine(int end);

    /// Time that so many bytes take on the line.
    Clock::Time::duration onWire(std::size_t bytes) const;
    /// Nothing is on its way, and nothing waits to be read.
    bool isQuiet() const;
    const Faults& faults() const { return faults_; }
    std::uint64_t bytes() const { return sent_; }
    /// Every byte that was handed over or came from nowhere has become of something.
    void account(Findings& findings) const;

private:
    friend class SimulatedLine;
    using Time = Clock::Time;

    struct End {
        SimulatedLine* open = nullptr;
        Time sentUntil;    ///< what was handed over here is on the wire until then
        Time arrivedUntil; ///< what arrives here has arrived by then
    };

    std::size_t backlog(int end) const;
    void transmit(int from, const Bytes& bytes);
    Bytes damaged(const Bytes& bytes);
    void sendPieces(int to, const Bytes& bytes, Time begin);
    void sendPiece(int to, Bytes piece, Time time);
    void deliver(int to, const Bytes& piece);
    void babble(int to);
    void hangUpLater(int end);

    HandClock& clock_;
    Sky& sky_;
    Tape& tape_;
    std::array<End, 2> ends_;
    Faults faults_;
    std::uint64_t sent_ = 0;
    std::uint64_t arrived_ = 0; ///< in the buffer of an open line
    std::uint64_t onTheirWay_ = 0;
};

/// One end of a cable, as a driver has it.
class SimulatedLine : public Line {
public:
    SimulatedLine(Cable& cable, int end) : cable_(cable), end_(end) {}
    SimulatedLine(const SimulatedLine&) = delete;
    SimulatedLine& operator=(const SimulatedLine&) = delete;
    ~SimulatedLine() override { SimulatedLine::close(); }

    void open(const LineSettings& settings) override;
    void close() noexcept override;
    std::size_t inBufferCount() const noexcept override { return input_.size() + counted_; }
    Burst read() override;
    void discard() noexcept override;
    void write(const Bytes& bytes) override;
    void keepFirst(std::size_t most) noexcept override;
    std::size_t unsentWrites() const noexcept override { return unsent_; }
    Burst look(std::size_t from) const override { return burstBehind(from, input_, arrivals_); }

private:
    friend class Cable;

    void take(const Bytes& piece, Clock::Time time);
    void hangUp();
    void keepEverything() noexcept;
    void countSurplus() noexcept;

    Cable& cable_;
    int end_;
    Bytes input_;
    std::vector<Arrival> arrivals_;
    std::size_t kept_ = static_cast<std::size_t>(-1);
    std::size_t counted_ = 0;
    std::size_t unsent_ = 0;
};

} // namespace varda::years
