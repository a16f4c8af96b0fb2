#pragma once

#include "core/base/clock.h"

#include <cstddef>
#include <functional>
#include <utility>

namespace varda::window {

/// Work on many lines, slice by slice: the first slice at once, the others when the window has looked at its
/// events, so that it answers all the time.
class SlicedWork {
public:
    /// Lines of a slice: a few hundredths of a second, whatever is done with them.
    static constexpr std::size_t slice = 1000;

    using Slice = std::function<bool()>; ///< goes on by a slice; whether there is more

    /// @param wentOn runs behind each slice that is not the last one
    SlicedWork(Clock& clock, std::function<void()> wentOn) : clock_(clock), wentOn_(std::move(wentOn)) {}

    /// Begins, in the place of what is under way.
    /// @param work what it throws ends it
    /// @param ended runs behind the last slice, and not when it is cancelled
    void start(Slice work, std::function<void()> ended);
    void cancel();
    bool isRunning() const { return work_ != nullptr; }

private:
    void goOn();

    Clock& clock_;
    std::function<void()> wentOn_;
    Slice work_;
    std::function<void()> ended_;
    Wait next_;
};

} // namespace varda::window
