#include "core/runs/monitor_log.h"

#include "core/files/append_file.h"

namespace varda::inline core {
namespace {

/// A crash or a power cut loses no more than what came within this time.
constexpr auto longestLoss = std::chrono::seconds(1);

} // namespace

MonitorLog::MonitorLog(Clock& clock) : clock_(clock) {}

MonitorLog::~MonitorLog() { close(); }

void MonitorLog::open(const std::string& path) {
    close();
    file_ = std::make_unique<AppendFile>(path);
}

bool MonitorLog::write(std::string line) {
    if (file_ == nullptr) {
        return false;
    }
    syncLater();
    if (endsInStump_) { // of a line that the full disk cut
        line.insert(0, lineEnd);
    }
    line += lineEnd;
    endsInStump_ = !file_->append(line);
    return !endsInStump_;
}

void MonitorLog::syncLater() {
    if (!sync_.isPending()) {
        sync_ = clock_.after(longestLoss, [this] { file_->sync(); });
    }
}

void MonitorLog::close() {
    if (file_ != nullptr) {
        file_->sync();
    }
    file_.reset();
    sync_.cancel();
    endsInStump_ = false;
}

} // namespace varda::core
