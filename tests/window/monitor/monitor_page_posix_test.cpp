#include "window/monitor/monitor_page_fixture.h"

#include <csignal>

#include <sys/resource.h>

namespace varda::test {
namespace {

TEST_F(MonitorPageTest, LogAtItsSizeLimitIsToldByTheToolTipAloneAndGoesOnBehindIt) {
    const rlimit none = {RLIM_INFINITY, RLIM_INFINITY};
    std::signal(SIGXFSZ, SIG_IGN);
    chooseLog(folder.file("line.log"));
    startMonitoring();
    const QString before = driver.find("chkMonLog")->toolTip();
    const rlimit small = {10, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &small);
    driver.listBurst(Bytes(20, 0x41));
    setrlimit(RLIMIT_FSIZE, &none);
    EXPECT_EQ(driver.box(), nullptr);
    EXPECT_NE(driver.find("chkMonLog")->toolTip(), before);
    driver.listBurst({0x42});
    EXPECT_EQ(logged(), "41 41 41 4\n42 \n");
    driver.click("cmdMonStop");
    driver.click("cmdMonStart");
    EXPECT_EQ(driver.find("chkMonLog")->toolTip(), before);
}

} // namespace
} // namespace varda::test
