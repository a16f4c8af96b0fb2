#pragma once

#include "core/base/period_timer.h"

#include <functional>
#include <string>
#include <utility>

namespace varda::window {

/// Opens the device that went away once it comes back, where the user wishes that. It is known by what it is,
/// not by the name that it was opened by; looked for by a timer, which runs only while it is waited for.
class AttachAgain {
public:
    /// How devices are known, found and opened.
    struct Ways {
        /// What the device of a port's name is known by; empty where by nothing.
        std::function<std::string(const std::string& name)> identityOf;
        /// The name that opens a device now, the last one where it still does; empty while it is not there.
        std::function<std::string(const std::string& identity, const std::string& lastName)> nameOf;
        /// Opens a port as its button does. @return false where it cannot be had yet
        std::function<bool(const std::string& name)> open;
    };

    /// How often a device is looked for, in milliseconds.
    static constexpr int lookingPeriod = 500;

    /// @param timer ticks into tick()
    AttachAgain(Ways ways, PeriodTimer& timer) : ways_(std::move(ways)), timer_(timer) {}

    /// A port was opened: its device is the one to come back.
    void opened(const std::string& name);
    /// The open port's device went away.
    void lost();
    /// The user has turned to something else, or opening failed: nothing is waited for any more.
    void forget();

    void wish(bool isWished);
    bool isWished() const { return isWished_; }
    /// Whether the device that went away, or the open one, would be known again.
    bool isKnown() const { return !identity_.empty(); }
    /// The name of the device that is waited for; empty where none is.
    std::string awaited() const { return timer_.isRunning() ? name_ : std::string(); }

    void tick();

private:
    void waitOrNot();

    Ways ways_;
    PeriodTimer& timer_;
    std::string identity_; ///< of the device that was opened last
    std::string name_;     ///< that it was opened by
    bool isLost_ = false;
    bool isWished_ = false;
};

} // namespace varda::window
