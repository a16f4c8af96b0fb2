#include "core/files/append_file.h"

#include "core/files/file_calls.h"

#include <atomic>
#include <system_error>
#include <thread>

namespace varda::inline core {

namespace {

constexpr int ended = -1;

/// Brings the file to the disk each time the count of wishes has changed, and once more when they have ended.
void bringToDiskAsWished(int file, const std::atomic<int>& wishes) noexcept {
    for (int served = 0; served != ended;) {
        wishes.wait(served);
        served = wishes.load();
        bringToDisk(file);
    }
    closeDuplicate(file);
}

} // namespace

void AppendFile::sync() noexcept {
    if (!hasThread_) {
        startThread();
    }
    wishes_->fetch_add(1);
    wishes_->notify_one();
}

void AppendFile::startThread() noexcept {
    const int copy = duplicate(file_);
    try {
        std::thread([copy, wishes = wishes_] { bringToDiskAsWished(copy, *wishes); }).detach();
        hasThread_ = true;
    } catch (const std::system_error&) { // no thread to be had: the system brings the text to the disk in its
                                         // own time
        closeDuplicate(copy);
    }
}

void AppendFile::endThread() noexcept {
    wishes_->store(ended);
    wishes_->notify_one();
}

} // namespace varda::core
