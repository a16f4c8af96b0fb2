#pragma once

#include "core/base/clock.h"
#include "core/insight/decoder.h"
#include "core/insight/heard_request.h"
#include "core/link/exchange.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace varda::inline core {

/// A register as it was seen last.
struct WatchedRegister {
    struct Change {
        Clock::Time time;
        int value;
    };

    int station = 0; ///< that has it
    Point point{Access::Word, 0};
    int value = 0;
    Clock::Time seen;           ///< when it was seen last
    std::uint64_t changes = 0;  ///< times that the value was another one than before
    std::deque<Change> history; ///< the last values and when they were seen first, oldest first
};

/// The registers of each station that were seen in any answer and any write, while it is open: of frames
/// without a flaw only.
///
/// A register keeps its row until all are forgotten.
class RegisterWatch : public LinkObserver {
public:
    static constexpr std::size_t mostRegisters = 20'000; ///< further ones are counted
    static constexpr std::size_t longestHistory = 60;

    void open() { isOpen_ = true; }
    void close();
    void clear();

    void told(const Exchange& exchange) override;
    void connected() override { heard_.forget(); }

    std::size_t size() const { return registers_.size(); }
    const WatchedRegister& at(std::size_t row) const { return registers_[row]; }
    std::optional<std::size_t> rowOf(int station, const Point& point) const;
    /// How often a register found no room any more.
    std::uint64_t leftOut() const { return leftOut_; }

private:
    void see(const Bytes& burst, const Bytes& request, Clock::Time time);
    void see(const DecodedFrame& frame, Clock::Time time);
    void see(int station, const Field& field, Clock::Time time);

    bool isOpen_ = false;
    std::vector<WatchedRegister> registers_;
    std::map<std::pair<int, Point>, std::size_t> rows_;
    HeardRequest heard_;
    std::uint64_t leftOut_ = 0;
};

} // namespace varda::core
