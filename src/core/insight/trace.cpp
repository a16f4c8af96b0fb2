#include "core/insight/trace.h"

#include <algorithm>
#include <utility>

namespace varda::inline core {
TraceLine* Trace::lineOf(Number number) const {
    const bool isThere = number >= begin_ && number - begin_ < lines_.size();
    return isThere ? &lines_[static_cast<std::size_t>(number - begin_)] : nullptr;
}

const TraceLine* Trace::find(Number number) const { return lineOf(number); }

Trace::Number Trace::append(TraceLine line) {
    bytes_ += line.bytes.size();
    line.timeOfDay = timeOfDay(line.first);
    lines_.push_back(std::move(line));
    const Number number = end() - 1;
    dropOldest();
    wakeUp();
    return number;
}

void Trace::noteChange(Number number, std::size_t moreBytes) {
    bytes_ += moreBytes;
    if (number < newsEnd_) {
        changed_.insert(number);
    }
    dropOldest();
    wakeUp();
}

void Trace::dropOldest() {
    while (lines_.size() > mostLines || (bytes_ > mostBytes && lines_.size() > 1)) {
        bytes_ -= lines_.front().bytes.size();
        lines_.pop_front();
        ++begin_;
    }
}

/// A mark is told once for all lines, however many: what else is known of them stays as it is.
void Trace::mark(std::span<const Number> numbers, bool isMarked) {
    std::optional<Number> first;
    for (const Number number : numbers) {
        TraceLine* const line = lineOf(number);
        if (line != nullptr && std::exchange(line->isMarked, isMarked) != isMarked && !first) {
            first = number;
        }
    }
    if (!first) {
        return;
    }
    if (*first < newsEnd_) {
        markedFrom_ = std::min(*first, markedFrom_.value_or(*first));
    }
    wakeUp();
}

void Trace::clear() {
    begin_ = end();
    lines_.clear();
    bytes_ = 0;
    wakeUp();
}

bool Trace::isWrong(Number number) const {
    TraceLine* const line = lineOf(number);
    if (line == nullptr) {
        return false;
    }
    if (!line->isWrong) {
        line->isWrong = core::isWrong(*line);
    }
    return *line->isWrong;
}

void Trace::wakeUp() {
    if (wakeUp_ && !std::exchange(isTold_, true)) {
        wakeUp_();
    }
}

Trace::News Trace::takeNews() {
    isTold_ = false;
    newsEnd_ = end();
    const auto changed = std::exchange(changed_, {});
    return {begin(),
            end(),
            {changed.lower_bound(begin()), changed.end()},
            std::exchange(markedFrom_, std::nullopt)};
}

void Trace::setTimeOfDay(Clock::Time time, std::chrono::system_clock::time_point timeOfDay) {
    time_ = time;
    timeOfDay_ = timeOfDay;
}

std::chrono::system_clock::time_point Trace::timeOfDay(Clock::Time time) const {
    return timeOfDay_ + std::chrono::duration_cast<std::chrono::system_clock::duration>(time - time_);
}

} // namespace varda::core
