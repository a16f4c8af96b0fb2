#include "core/faults/fault_injector.h"

#include "core/faults/frame_damage.h"

#include <algorithm>
#include <utility>

namespace varda::inline core {
namespace {

using Number = std::optional<std::uint32_t>;
using Piece = FaultyFrame::Piece;

/// Sends all pieces once more. Without a pause between them the last piece goes on.
Number doubled(FaultyFrame& sent, const FaultRange& pause, FaultDraws& draws) {
    const std::uint32_t time = draws.within(pause);
    Bytes& bytes = sent.pieces.front().bytes;
    if (time == 0) {
        const Bytes copy = bytes;
        bytes.insert(bytes.end(), copy.begin(), copy.end());
    } else {
        sent.pieces.push_back({std::chrono::milliseconds(time), bytes});
    }
    return time;
}

Number split(FaultyFrame& sent, const FaultRange& pause, FaultDraws& draws) {
    const std::uint32_t time = draws.within(pause);
    Bytes& first = sent.pieces.front().bytes;
    if (first.size() < 2) {
        return std::nullopt;
    }
    const auto place = static_cast<std::ptrdiff_t>(1 + draws.below(first.size() - 1));
    Piece rest{std::chrono::milliseconds(time), {first.begin() + place, first.end()}};
    first.erase(first.begin() + place, first.end());
    for (Piece& later : std::span(sent.pieces).subspan(1)) { // a copy of the whole comes behind the rest
        later.after += rest.after;
    }
    sent.pieces.insert(sent.pieces.begin() + 1, std::move(rest));
    return time;
}

Number late(FaultyFrame& sent, const FaultRange& range, FaultDraws& draws) {
    const std::uint32_t time = draws.within(range);
    for (Piece& piece : sent.pieces) {
        piece.after += std::chrono::milliseconds(time);
    }
    return time;
}

/// What a fault does to a frame that is going to be sent.
Number damaged(FaultyFrame& sent, const PlannedFault& fault, FaultDraws& draws) {
    Bytes& bytes = sent.pieces.front().bytes;
    switch (fault.kind) {
    case FaultKind::Command:
        return changeCommand(bytes, draws);
    case FaultKind::Station:
        return changeStation(bytes, fault.number, draws);
    case FaultKind::Check:
        return breakCheck(bytes, draws);
    case FaultKind::Flip:
        return flipBits(bytes, fault.number, draws);
    case FaultKind::Cut:
        return cutEnd(bytes, fault.number, draws);
    case FaultKind::NoiseBefore:
        return addNoiseBefore(bytes, fault.number, draws);
    case FaultKind::NoiseBehind:
        return addNoiseBehind(bytes, fault.number, draws);
    case FaultKind::Double:
        return doubled(sent, fault.number, draws);
    case FaultKind::Split:
        return split(sent, fault.number, draws);
    default:
        return late(sent, fault.number, draws);
    }
}

/// The number stands where the words have a place for it.
std::string inWords(FaultKind kind, std::uint32_t number) {
    std::string text(ruleOf(kind).done);
    const auto place = text.find('#');
    return place == std::string::npos ? text : text.replace(place, 1, std::to_string(number));
}

} // namespace

void FaultInjector::setPlan(FaultPlan plan, std::uint64_t seed) {
    plan_ = std::move(plan);
    seed_ = seed;
    draws_.clear();
    for (const PlannedFault& fault : plan_) {
        draws_.emplace_back(seed, fault.kind);
    }
    count_ = 0;
    silentUntil_.reset();
}

/// A share is drawn for every frame, also for one that another fault has kept back.
bool FaultInjector::strikes(std::size_t index) {
    const FaultRate& rate = plan_[index].rate;
    switch (rate.kind) {
    case FaultRate::Kind::Share:
        return draws_[index].below(FaultRate::million) < rate.number;
    case FaultRate::Kind::Only:
        return count_ == rate.number;
    default:
        return count_ % rate.number == 0;
    }
}

FaultyFrame FaultInjector::send(const Bytes& frame, Clock::Time now) {
    FaultyFrame sent;
    sent.pieces.push_back({{}, frame});
    if (!isOn() || frame.empty()) {
        return sent;
    }
    ++count_;
    for (std::size_t index = 0; index < plan_.size(); ++index) {
        if (strikes(index) && !sent.pieces.empty()) {
            carryOut(index, sent, now);
        }
    }
    if (isSilent(now)) {
        sent.pieces.clear();
    }
    tell(frame, sent);
    return sent;
}

void FaultInjector::carryOut(std::size_t index, FaultyFrame& sent, Clock::Time now) {
    const PlannedFault& fault = plan_[index];
    if (isSilent(now)) { // nothing goes out that could be damaged
        return;
    }
    Number number = 0;
    if (fault.kind == FaultKind::HangUp || fault.kind == FaultKind::Drop) {
        sent.hangsUp = fault.kind == FaultKind::HangUp;
        sent.pieces.clear();
    } else if (fault.kind == FaultKind::Silence) {
        number = draws_[index].within(fault.number);
        silentUntil_ = now + std::chrono::milliseconds(*number);
    } else {
        number = damaged(sent, fault, draws_[index]);
    }
    if (number) {
        sent.done.push_back({count_, fault.kind, inWords(fault.kind, *number)});
    }
}

void FaultInjector::tell(const Bytes& original, FaultyFrame& sent) {
    if (sent.pieces.empty() && sent.done.empty()) {
        sent.done.push_back({count_, FaultKind::Silence, "not sent, for the silence lasts"});
    }
    const std::string which =
        (isRequestCode(original) ? "request " : "answer ") + std::to_string(count_) + ": ";
    for (FaultDone& fault : sent.done) {
        fault.text.insert(0, which);
        watcher_(fault);
    }
}

} // namespace varda::core
