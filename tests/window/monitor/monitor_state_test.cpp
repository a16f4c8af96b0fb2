#include "support/window_test.h"

namespace varda::test {
namespace {

/// What the page shows of its run.
class MonitorStateTest : public WindowTest {
protected:
    MonitorStateTest() { driver.click("optMode_5"); }

    /// The buttons that can be pressed: start, stop, clear.
    std::string on() {
        std::string names;
        for (const char* const button : {"cmdMonStart", "cmdMonStop", "cmdClear"}) {
            names += driver.isEnabled(button) ? std::string(button).substr(3) + ' ' : std::string();
        }
        return names;
    }
};

TEST_F(MonitorStateTest, StopIsOnWhereItWouldFreeTheLogFile) {
    EXPECT_EQ(on(), "MonStart MonStop ");
    driver.click("cmdMonStop");
    EXPECT_TRUE(driver.isEnabled("txtMonLogFile"));
    EXPECT_EQ(on(), "MonStart ");
    driver.click("chkMonLog");
    EXPECT_EQ(on(), "MonStart ");
    driver.click("chkMonLog");
    EXPECT_EQ(on(), "MonStart MonStop ");
    EXPECT_EQ(text("monitorState"), "Stopped");
}

TEST_F(MonitorStateTest, ShowsThatItListens) {
    openLine();
    driver.click("cmdMonStart");
    EXPECT_EQ(text("monitorState"), "Listening");
    EXPECT_EQ(on(), "MonStop ");
    EXPECT_TRUE(driver.find("cmdMonStop")->hasFocus());
    driver.listBurst({0x41});
    EXPECT_EQ(on(), "MonStop Clear ");
    driver.click("cmdMonStop");
    EXPECT_EQ(text("monitorState"), "Stopped");
    EXPECT_EQ(on(), "MonStart Clear ");
    EXPECT_TRUE(driver.find("cmdMonStart")->hasFocus());
    driver.click("cmdClear");
    EXPECT_EQ(on(), "MonStart ");
    EXPECT_TRUE(driver.find("lstMonitor")->hasFocus());
}

TEST_F(MonitorStateTest, AClosedPortIsSeenDuringARun) {
    openLine();
    driver.click("cmdMonStart");
    driver.click("cmdPortOpen");
    EXPECT_EQ(text("monitorState"), "Port closed");
    EXPECT_EQ(on(), "MonStart MonStop "); // Start says that the port has to be opened
    driver.click("cmdCommTest");
    driver.click("cmdPortOpen");
    EXPECT_EQ(text("monitorState"), "Listening");
    EXPECT_EQ(on(), "MonStop ");
}

TEST_F(MonitorStateTest, StartStaysOnWhereItsLogCouldNotBeOpened) {
    openLine();
    driver.click("chkMonLog");
    paste("txtMonLogFile", "/no/such/folder/a.log");
    driver.click("cmdMonStart");
    driver.closeBox();
    EXPECT_EQ(text("monitorState"), "Listening");
    EXPECT_EQ(on(), "MonStart MonStop ");
}

TEST_F(MonitorStateTest, EveryEndOfARunIsShown) {
    openLine();
    driver.click("cmdMonStart");
    driver.click("optMode_0");
    EXPECT_EQ(text("monitorState"), "Stopped");
    driver.click("optMode_5");
    EXPECT_EQ(on(), "MonStart MonStop ");
    driver.click("cmdMonStart");
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_EQ(text("monitorState"), "Stopped");
}

} // namespace
} // namespace varda::test
