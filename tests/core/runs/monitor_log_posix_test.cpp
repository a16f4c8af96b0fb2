#include "core/runs/monitor_log.h"
#include "support/manual_clock.h"
#include "support/raises.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

TEST(MonitorLogFilePosix, DeviceIsError75) {
    ManualClock clock;
    MonitorLog log(clock);
    EXPECT_EQ(numberRaisedBy([&] { log.open("/dev/null"); }), 75);
    EXPECT_FALSE(log.isOpen());
}

} // namespace
} // namespace varda::test
