#include "core/insight/register_watch.h"

#include <utility>

namespace varda::inline core {

void RegisterWatch::clear() {
    registers_.clear();
    rows_.clear();
    leftOut_ = 0;
    ++changes_;
}

std::optional<std::size_t> RegisterWatch::rowOf(const Point& point) const {
    const auto found = rows_.find(point);
    return found != rows_.end() ? std::optional(found->second) : std::nullopt;
}

void RegisterWatch::told(const Exchange& exchange) {
    if (!isOpen_) {
        return;
    }
    const std::uint64_t before = changes_;
    switch (exchange.outcome) {
    case Outcome::Sent:
        see(decode(exchange.request), exchange.sent.last);
        break;
    case Outcome::Answered:
        see(decode(exchange.answer, exchange.request), exchange.received.last);
        break;
    case Outcome::AnsweredByPair:
    case Outcome::AnsweredFromMemory:
        see(decode(exchange.request), exchange.received.last);
        see(decode(exchange.answer, exchange.request), exchange.sent.last);
        break;
    case Outcome::Heard:
        hear(exchange);
        break;
    default:
        return;
    }
    if (changes_ != before && wakeUp_ && !std::exchange(isTold_, true)) {
        wakeUp_();
    }
}

void RegisterWatch::hear(const Exchange& exchange) {
    const auto frames = decodeBurst(exchange.answer, heardRequest_);
    for (const DecodedFrame& frame : frames) {
        see(frame, exchange.received.last);
    }
    heardRequest_.clear();
    if (!frames.empty() && frames.back().kind.isRequest()) {
        const DecodedFrame& last = frames.back();
        heardRequest_.assign(exchange.answer.begin() + static_cast<std::ptrdiff_t>(last.begin),
                             exchange.answer.begin() + static_cast<std::ptrdiff_t>(last.end));
    }
}

void RegisterWatch::see(const DecodedFrame& frame, Clock::Time time) {
    if (!frame.isSound()) {
        return;
    }
    for (const Field& field : frame.fields) {
        if (field.role == FieldRole::Value && field.point) {
            see(*field.point, field.number, time);
        }
    }
}

void RegisterWatch::see(const Point& point, int value, Clock::Time time) {
    ++changes_;
    const auto row = rowOf(point);
    if (!row && registers_.size() == mostRegisters) {
        ++leftOut_;
        return;
    }
    if (!row) {
        rows_.emplace(point, registers_.size());
        registers_.push_back({point, value, time, 0, {{time, value}}});
        return;
    }
    WatchedRegister& watched = registers_[*row];
    watched.seen = time;
    if (watched.value != value) {
        watched.value = value;
        ++watched.changes;
        watched.history.push_back({time, value});
        if (watched.history.size() > longestHistory) {
            watched.history.pop_front();
        }
    }
}

} // namespace varda::core
