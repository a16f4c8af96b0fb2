#pragma once

#include "core/link/serial_link.h"
#include "core/pairs/packet_table.h"
#include "years/diary.h"
#include "years/findings.h"
#include "years/hand_clock.h"
#include "years/tape.h"
#include "years/watched_line.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace varda::years {

/// A frame that stands on a page, by a second make: its bytes are what has to be sent.
struct ShownFrame {
    Bytes bytes;
    int answerLength = 0; ///< 0 where it stays what it was
};

/// What the witness has counted of one program.
struct Counts {
    static constexpr std::size_t outcomes = outcomeCount;

    std::array<std::uint64_t, outcomes> told{}; ///< by outcome
    std::uint64_t asked = 0;                    ///< requests whose answer was awaited
    std::uint64_t ended = 0;                    ///< of them those that something became of
    std::uint64_t answered = 0;                 ///< of these those that had their answer
    std::uint64_t again = 0;                    ///< bursts that were taken for answers after that
    std::uint64_t dropped = 0;                  ///< bytes thrown away unread, as the line has it
    std::uint64_t toldDropped = 0;              ///< and as the link tells
    std::uint64_t stuck = 0;                    ///< receptions that ended without their common end

    std::uint64_t of(Outcome outcome) const { return told.at(static_cast<std::size_t>(outcome)); }
};

/// Holds what a program says of its line against what the line carried, after each call and each word of the
/// link.
class Witness : public LineWatcher, public LinkObserver {
public:
    Witness(std::string name, const HandClock& clock, const SerialLink& link, const PacketTable& pairs,
            Findings& findings, Tape& tape, const Diary& diary)
        : name_(std::move(name)),
          clock_(clock),
          link_(link),
          pairs_(pairs),
          findings_(findings),
          tape_(tape),
          diary_(diary) {}

    /// The program's user is about to have this sent.
    void shows(ShownFrame frame) { shown_ = std::move(frame); }
    /// The program opened its port.
    void opened();
    /// The communication timer is about to tick.
    void ticks();
    /// What has to hold after every event.
    void check();
    /// What has to hold once all is healed and quiet.
    void checkQuiet();

    const Counts& counts() const { return counts_; }
    Outcome lastOutcome() const { return last_.outcome; }

    void closed();

    void wrote(const Bytes& bytes, bool isTaken) override;
    void refused(const Bytes& bytes) override;
    void read(const Burst& burst) override;
    void couldNotRead() override { read_.clear(); }
    void discarded(std::size_t bytes) override;
    void told(CommEvent event, std::size_t waiting) override;

    void told(const Exchange& exchange) override;

private:
    void require(bool holds, const char* what);
    void tell(const std::string& what, const Bytes& bytes) const;
    void requireShown(const Bytes& bytes);
    void requireReceived(const Bytes& told);
    void toldSent(const Exchange& exchange);
    void toldEnd(const Exchange& exchange);
    void toldAnswer(const Exchange& exchange);
    void toldPair(const Exchange& exchange);
    void toldUnknown(const Exchange& exchange);
    void endPending(const Exchange& exchange);
    void noteReception(Outcome outcome);
    std::optional<std::size_t> preparedRow(const Bytes& request) const;

    std::string name_;
    const HandClock& clock_;
    const SerialLink& link_;
    const PacketTable& pairs_;
    Findings& findings_;
    Tape& tape_;
    const Diary& diary_;
    Counts counts_;
    ShownFrame shown_;
    Bytes written_; ///< last
    Bytes read_;    ///< last
    std::size_t discarded_ = 0;
    Exchange last_;
    Bytes pending_;
    bool isPending_ = false;
    int pendingTicks_ = 0;
    Clock::Time noticed_; ///< when bytes were told of last
    bool isStuckAsLaidDown_ = false;
};

} // namespace varda::years
