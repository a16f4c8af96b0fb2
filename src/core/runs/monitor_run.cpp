#include "core/runs/monitor_run.h"

#include <utility>

namespace varda::inline core {

void MonitorRun::start() {
    link_.enterMode(Mode::Monitoring);
    isRunning_ = true;
}

void MonitorRun::stop() {
    link_.enterMode(Mode::MonitorIdle);
    isRunning_ = false;
    log_.close();
}

bool MonitorRun::list(const Bytes& burst, const std::optional<TimeOfDay>& time, bool asCharacters) {
    MonitorLine line = {time ? timeStamp(*time) : std::string(), burst, asCharacters};
    if (lines_.count() > monitorLineLimit) {
        lines_.clear();
    }
    std::string logged = log_.isOpen() ? line.text() : std::string();
    lines_.append(std::move(line));
    return !log_.isOpen() || log_.write(std::move(logged));
}

} // namespace varda::core
