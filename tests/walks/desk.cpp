#include "walks/desk.h"

namespace varda::window_model {

std::string inShort(int count, const std::function<std::string(int)>& entry) {
    constexpr int few = 24;
    if (count > few) {
        return std::to_string(count) + ": " + entry(0) + " .. " + entry(count - 1);
    }
    std::string all;
    for (int row = 0; row < count; ++row) {
        all += "[" + entry(row) + "]";
    }
    return all;
}

const Lines& Desk::lines(const std::string& name) const {
    static const Lines none;
    const auto found = lists_.find(name);
    return found == lists_.end() ? none : found->second;
}

int Desk::selected(const std::string& name) const {
    const std::string row = value(name + ".selected");
    return row.empty() ? -1 : std::stoi(row);
}

std::string Desk::value(const std::string& key) const {
    const auto found = seen_.find(key);
    return found == seen_.end() ? std::string() : found->second;
}

Observation Desk::expected() const {
    Observation all = seen_;
    for (const auto& [name, entries] : lists_) {
        all[name + ".entries"] = inShort(static_cast<int>(entries.size()), [&entries = entries](int row) {
            return entries[static_cast<std::size_t>(row)];
        });
    }
    return all;
}

void Agenda::advance(int milliseconds) {
    const int end = now_ + milliseconds;
    while (!due_.empty() && due_.begin()->first <= end) {
        const auto next = due_.extract(due_.begin());
        now_ = next.key();
        next.mapped()();
    }
    now_ = end;
}

void Ticker::setInterval(int milliseconds) {
    interval_ = milliseconds;
    if (running_) {
        start();
    }
}

void Ticker::start() {
    running_ = true;
    ++run_;
    plan();
}

void Ticker::plan() {
    if (interval_ == 0) {
        return;
    }
    agenda_.after(interval_, [this, run = run_] {
        if (running_ && run == run_) {
            plan();
            tick_();
        }
    });
}

} // namespace varda::window_model
