#include "core/insight/register_watch.h"

namespace varda::inline core {

void RegisterWatch::close() {
    isOpen_ = false;
    heard_.forget(); // what answers it may not be seen
}

void RegisterWatch::clear() {
    registers_.clear();
    rows_.clear();
    leftOut_ = 0;
}

std::optional<std::size_t> RegisterWatch::rowOf(int station, const Point& point) const {
    const auto found = rows_.find({station, point});
    return found != rows_.end() ? std::optional(found->second) : std::nullopt;
}

void RegisterWatch::told(const Exchange& exchange) {
    if (!isOpen_) {
        return;
    }
    switch (exchange.outcome) {
    case Outcome::Sent:
        return see(exchange.request, {}, exchange.sent.last);
    case Outcome::Answered:
    case Outcome::WrongLength:
    case Outcome::Ignored:
        return see(exchange.answer, exchange.request, exchange.received.last);
    case Outcome::Unknown:
        return see(exchange.request, {}, exchange.received.last);
    case Outcome::AnsweredByPair:
    case Outcome::AnsweredFromMemory:
        see(exchange.request, {}, exchange.received.last);
        return see(exchange.answer, exchange.request, exchange.sent.last);
    case Outcome::Heard: {
        const auto request = heard_.hear(exchange.answer);
        return see(exchange.answer, request ? *request : Bytes(), exchange.received.last);
    }
    default:
        return;
    }
}

void RegisterWatch::see(const Bytes& burst, const Bytes& request, Clock::Time time) {
    for (const DecodedFrame& frame : decodeBurst(burst, request)) {
        see(frame, time);
    }
}

void RegisterWatch::see(const DecodedFrame& frame, Clock::Time time) {
    if (!frame.isSound()) {
        return;
    }
    const Field* const station = frame.find(frame.kind.isAnswer ? FieldRole::Source : FieldRole::Destination);
    for (const Field& field : frame.fields) {
        if (field.role == FieldRole::Value && field.point) {
            see(station->number, field, time);
        }
    }
}

void RegisterWatch::see(int station, const Field& field, Clock::Time time) {
    const Point& point = *field.point;
    const int value = field.number;
    const auto row = rowOf(station, point);
    if (!row && registers_.size() == mostRegisters) {
        ++leftOut_;
        return;
    }
    if (!row) {
        rows_.emplace(std::pair(station, point), registers_.size());
        registers_.push_back({station, point, value, time, 0, {{time, value}}});
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
