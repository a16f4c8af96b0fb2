#include "monitor/monitor_log.h"

#include "platform/append_file.h"

namespace varda {
namespace {

/// A crash or a power cut loses no more than what came within this time.
constexpr auto longestLoss = std::chrono::seconds(1);

} // namespace

MonitorLog::~MonitorLog() { close(); }

void MonitorLog::open(const std::string& path) {
    close();
    file_ = std::make_shared<AppendFile>(path);
}

bool MonitorLog::write(const std::string& line) {
    if (file_ == nullptr) {
        return false;
    }
    syncLater();
    const std::string stumpEnd = endsInStump_ ? lineEnd : ""; // of a line that the full disk cut
    endsInStump_ = !file_->append(stumpEnd + line + lineEnd);
    return !endsInStump_;
}

void MonitorLog::syncLater() {
    if (syncIsDue_) {
        return;
    }
    syncIsDue_ = true;
    clock_.after(longestLoss, [this, file = std::weak_ptr<AppendFile>(file_)] {
        if (const auto open = file.lock()) {
            syncIsDue_ = false;
            open->sync();
        }
    });
}

void MonitorLog::close() {
    if (file_ != nullptr) {
        file_->sync();
    }
    file_.reset();
    syncIsDue_ = false;
    endsInStump_ = false;
}

} // namespace varda
