#pragma once

#include "walks/walk.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// A second, independent make of the window for random walks: plain C++, nothing of the program's.
namespace varda::window_model {

using Octets = std::vector<std::uint8_t>;
using Lines = std::vector<std::string>;

using walks::Action;
using walks::Observation;

/// Draws that come out alike on every system.
class Draw {
public:
    explicit Draw(std::mt19937& engine) : engine_(engine) {}

    int below(int count) { return static_cast<int>(engine_() % static_cast<std::uint32_t>(count)); }
    bool once(int in) { return below(in) == 0; }
    template <typename T>
    T oneOf(const std::vector<T>& from) {
        return from.at(static_cast<std::size_t>(below(static_cast<int>(from.size()))));
    }

private:
    std::mt19937& engine_;
};

/// A list's entries in short: long ones by their number, the first and the last.
std::string inShort(int count, const std::function<std::string(int)>& entry);

/// The controls as the model has them. What was never set is not known, and is not compared.
class Desk {
public:
    std::string text(const std::string& name) const { return value(name + ".text"); }
    void show(const std::string& name, const std::string& text) { seen_[name + ".text"] = text; }
    bool isEnabled(const std::string& name) const { return value(name + ".enabled") != "0"; }
    void enable(const std::string& name, bool on) { seen_[name + ".enabled"] = on ? "1" : "0"; }
    bool isTicked(const std::string& name) const { return value(name + ".ticked") == "1"; }
    void tick(const std::string& name, bool on) { seen_[name + ".ticked"] = on ? "1" : "0"; }
    bool isVisible(const std::string& name) const { return value(name + ".visible") != "0"; }
    void setVisible(const std::string& name, bool on) { seen_[name + ".visible"] = on ? "1" : "0"; }

    const Lines& lines(const std::string& name) const;
    Lines& changeLines(const std::string& name) { return lists_[name]; }
    int selected(const std::string& name) const;
    void select(const std::string& name, int row) { seen_[name + ".selected"] = std::to_string(row); }

    bool knows(const std::string& key) const { return seen_.count(key) != 0; }
    void forget(const std::string& key) { seen_.erase(key); }
    void set(const std::string& key, const std::string& value) { seen_[key] = value; }
    Observation expected() const;

private:
    std::string value(const std::string& key) const;

    Observation seen_;
    std::map<std::string, Lines> lists_;
};

/// What falls due when; of what falls due at once, what was asked for first comes first.
class Agenda {
public:
    void after(int wait, std::function<void()> what) { due_.emplace(now_ + wait, std::move(what)); }
    void advance(int milliseconds);
    int now() const { return now_; }

private:
    int now_ = 0;
    std::multimap<int, std::function<void()>> due_;
};

/// A timer that ticks once a period while it runs.
class Ticker {
public:
    Ticker(Agenda& agenda, std::function<void()> tick) : agenda_(agenda), tick_(std::move(tick)) {}

    void setInterval(int milliseconds);
    void start();
    void stop() { running_ = false; }

private:
    void plan();

    Agenda& agenda_;
    std::function<void()> tick_;
    int interval_ = 500;
    int run_ = 0;
    bool running_ = false;
};

/// A message box: its title, its text, and what follows a Yes and a No.
struct Box {
    std::string title;
    std::string text;
    std::function<void()> yes;
    std::function<void()> no;
};

} // namespace varda::window_model
