#pragma once

#include "core/insight/trace_line.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <vector>

namespace varda::inline core {

/// What went over the line, the latest lines of it: who shows them reads them by their numbers, where they
/// stand.
///
/// A line keeps its number; the number of the oldest that is left rises. Nobody is told line by line: a
/// change wakes the watcher up once, and again when it has taken the news.
class Trace {
public:
    using Number = std::uint64_t;

    static constexpr std::size_t mostLines = 100'000;
    static constexpr std::size_t mostLineBytes = 2048;               ///< that a line keeps
    static constexpr std::size_t mostBytes = std::size_t{32} << 20U; ///< that all of them keep

    /// What has changed since it was asked for last.
    struct News {
        Number begin = 0;                   ///< lines before this one are gone
        Number end = 0;                     ///< lines from where it was before up to here are new
        std::vector<Number> changed;        ///< those of the older ones that have changed, oldest first
        std::optional<Number> markedFrom{}; ///< the first of the older ones whose mark has changed
    };

    Number begin() const { return begin_; }
    Number end() const { return begin_ + lines_.size(); }
    std::size_t size() const { return lines_.size(); }
    /// nullptr where the line is gone, or not there yet; good until the trace changes.
    const TraceLine* find(Number number) const;

    Number append(TraceLine line);
    /// Changes a line, if it still is there.
    template <typename Edit>
    void change(Number number, Edit&& edit) {
        if (TraceLine* const line = lineOf(number)) {
            const std::size_t before = line->bytes.size();
            edit(*line);
            line->isWrong.reset();
            noteChange(number, line->bytes.size() - before);
        }
    }
    /// Marks lines, or takes their marks away, those that still are there. @param numbers in order
    void mark(std::span<const Number> numbers, bool isMarked);
    void mark(Number number, bool isMarked) { mark(std::span(&number, 1), isMarked); }
    void clear();

    /// Whether something is wrong with a line; asked again, it is not looked up again.
    bool isWrong(Number number) const;

    /// Runs on the interface thread when there is news, and not again until they are taken.
    void setWakeUp(std::function<void()> wakeUp) { wakeUp_ = std::move(wakeUp); }
    News takeNews();

    /// Ties the clock to the time of day, for the lines that are to come: those that are there keep theirs.
    void setTimeOfDay(Clock::Time time, std::chrono::system_clock::time_point timeOfDay);
    std::chrono::system_clock::time_point timeOfDay(Clock::Time time) const;

private:
    TraceLine* lineOf(Number number) const;
    void noteChange(Number number, std::size_t moreBytes);
    void dropOldest();
    void wakeUp();

    mutable std::deque<TraceLine> lines_; ///< isWrong is looked up when it is asked for
    Number begin_ = 0;
    std::size_t bytes_ = 0;    ///< that the lines keep
    Number newsEnd_ = 0;       ///< where the lines ended when news were taken last
    std::set<Number> changed_; ///< of the lines before that
    std::optional<Number> markedFrom_;
    bool isTold_ = false;
    std::function<void()> wakeUp_;
    Clock::Time time_;
    std::chrono::system_clock::time_point timeOfDay_;
};

} // namespace varda::core
