#include "core/files/append_file.h"
#include "core/runs/monitor_log.h"
#include "support/manual_clock.h"
#include "support/raises.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>

namespace varda::test {
namespace {

/// Threads of this process.
long threads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
}

TEST(MonitorLogFilePosix, DeviceIsError75) {
    ManualClock clock;
    MonitorLog log(clock);
    EXPECT_EQ(numberRaisedBy([&] { log.open("/dev/null"); }), 75);
    EXPECT_FALSE(log.isOpen());
}

TEST(MonitorLogFilePosix, ASlowDiskHoldsNoMoreThanOneThread) {
    const TemporaryFolder folder;
    AppendFile file(folder.file("slow.log"));
    file.sync(); // starts the file's thread, and that of a sanitizer, which has one from the first thread on
    const long before = threads();
    long most = before;
    for (int line = 0; line < 500; ++line) {
        file.append("a line\n");
        file.sync();
        most = std::max(most, threads());
    }
    EXPECT_EQ(most, before);
}

} // namespace
} // namespace varda::test
