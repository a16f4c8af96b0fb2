#pragma once

#include "years/hand_clock.h"

#include <chrono>
#include <iostream>
#include <string>
#include <utility>

namespace varda::years {

/// Tells what happens from some time on, for who replays a finding.
class Diary {
public:
    explicit Diary(const HandClock& clock) : clock_(clock) {}

    void tellFrom(std::chrono::milliseconds time) { from_ = Clock::Time(time); }

    template <typename Words>
    void tell(Words&& words) const {
        if (clock_.now() >= from_) {
            const auto since =
                std::chrono::duration_cast<std::chrono::microseconds>(clock_.now().time_since_epoch());
            std::cout << since.count() / 1000 << " ms: " << std::forward<Words>(words)() << '\n';
        }
    }

private:
    const HandClock& clock_;
    Clock::Time from_ = Clock::Time::max();
};

} // namespace varda::years
