#include "core/files/append_file.h"

#include "core/files/file_calls.h"

#include <atomic>
#include <system_error>
#include <thread>

namespace varda::inline core {

void AppendFile::sync() noexcept {
    if (wantedSyncs_->fetch_add(1) > 0) {
        return; // the thread that is at it goes round once more
    }
    const int copy = duplicate(file_);
    try {
        std::thread([copy, wanted = wantedSyncs_] {
            int served = 0;
            do {
                served = wanted->load();
                bringToDisk(copy);
            } while (!wanted->compare_exchange_strong(served, 0));
            closeDuplicate(copy);
        }).detach();
    } catch (const std::system_error&) { // no thread to be had: the system brings the text to the disk in its
                                         // own time
        wantedSyncs_->store(0);
        closeDuplicate(copy);
    }
}

} // namespace varda::core
