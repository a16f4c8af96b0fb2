#pragma once

#include "core/base/clock.h"
#include "window/system/alarm.h"

#include <functional>
#include <map>
#include <memory>

namespace varda::window {

/// Waits on the event loop. A wait that is under way when the clock is destroyed does not end any more.
class QtClock : public Clock {
public:
    QtClock();

    Time now() const override;
    void schedule(Duration wait, std::function<void()> due) override;

private:
    void ring();
    void setAlarm();

    std::multimap<Time, std::function<void()>>
        waits_; ///< by due time; of one time in the order of their beginning
    std::unique_ptr<Alarm> alarm_;
};

} // namespace varda::window
