#include "core/runs/monitor_log.h"
#include "support/manual_clock.h"
#include "support/raises.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace varda::test {
namespace {

TEST(MonitorLogFileWindows, LinesEndWithCarriageReturnAndLineFeed) {
    TemporaryFolder folder;
    ManualClock clock;
    MonitorLog log(clock);
    log.open(folder.file("line.log"));
    log.write("now");
    EXPECT_EQ(bytesOf(folder.file("line.log")), "now\r\n");
}

TEST(MonitorLogFileWindows, DeviceIsError75) {
    ManualClock clock;
    MonitorLog log(clock);
    for (const char* const device : {"NUL", "COM1", R"(\\.\COM1)"}) {
        EXPECT_EQ(numberRaisedBy([&] { log.open(device); }), 75) << device;
        EXPECT_FALSE(log.isOpen());
    }
}

TEST(MonitorLogFileWindows, NameThatCannotBeIsError75) {
    TemporaryFolder folder;
    ManualClock clock;
    MonitorLog log(clock);
    EXPECT_EQ(numberRaisedBy([&] { log.open(folder.file("what?.log")); }), 75);
    EXPECT_EQ(numberRaisedBy([&] { log.open(folder.file("line-\xE4\xFF.log")); }), 75);
    EXPECT_EQ(folder.entries(), 0);
}

} // namespace
} // namespace varda::test
