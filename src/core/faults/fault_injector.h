#pragma once

#include "core/base/bytes.h"
#include "core/base/clock.h"
#include "core/faults/fault_draws.h"
#include "core/faults/fault_plan.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace varda::inline core {

/// A fault that was done.
struct FaultDone {
    std::uint64_t frame = 0; ///< of those sent under the plan, from 1
    FaultKind kind = FaultKind::Drop;
    std::string text; ///< "answer 12: check broken"
};

/// What goes out in the place of a frame.
struct FaultyFrame {
    struct Piece {
        std::chrono::milliseconds after{0}; ///< the frame was to be sent
        Bytes bytes;
    };

    std::vector<Piece> pieces; ///< in their order; none where nothing is sent
    std::vector<FaultDone> done;
    bool hangsUp = false; ///< the line goes away
};

/// Decides what is done on purpose to the frames that this program sends. The same plan and seed do the same
/// to the same frames, whatever the time.
class FaultInjector {
public:
    /// Counts frames and draws from the beginning. An empty plan ends all faults.
    void setPlan(FaultPlan plan, std::uint64_t seed);
    const FaultPlan& plan() const { return plan_; }
    std::uint64_t seed() const { return seed_; }
    bool isOn() const { return !plan_.empty(); }

    /// Is told each fault, before the bytes go out.
    void setWatcher(std::function<void(const FaultDone&)> watcher) { watcher_ = std::move(watcher); }

    /// The next frame that is to be sent. @param now for how long a silence lasts
    FaultyFrame send(const Bytes& frame, Clock::Time now);

private:
    bool strikes(std::size_t index);
    bool isSilent(Clock::Time now) const { return silentUntil_ && now < *silentUntil_; }
    void carryOut(std::size_t index, FaultyFrame& sent, Clock::Time now);
    void tell(const Bytes& original, FaultyFrame& sent);

    FaultPlan plan_;
    std::uint64_t seed_ = 0;
    std::vector<FaultDraws> draws_; ///< one for each planned fault
    std::uint64_t count_ = 0;
    std::optional<Clock::Time> silentUntil_;
    std::function<void(const FaultDone&)> watcher_ = [](const FaultDone&) {};
};

} // namespace varda::core
