#include "support/window_test.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>

#include <fcntl.h>
#include <unistd.h>

namespace varda::test {
namespace {

/// A line whose far end takes nothing until the test reads, and whose driver is full of an earlier program's
/// bytes.
class SlowLineTest : public WindowTest {
protected:
    SlowLineTest() {
        driver.openPort(line.path());
        ::fcntl(line.nearEnd(), F_SETFL, O_NONBLOCK);
        for (const Bytes filling(4096, 0xEE); ::write(line.nearEnd(), filling.data(), filling.size()) > 0;) {
        }
    }

    std::string notice() { return driver.find<QLabel>("slowLine")->text().toStdString(); }
    /// Frames that the notice counts; 0 where there is none.
    int unsent() {
        const std::string text = notice();
        return text.starts_with(told) ? std::stoi(text.substr(std::string(told).size())) : 0;
    }

    /// A scenario of frames of 500 bytes.
    void runScenario(const char* period) {
        driver.find<QListWidget>("lstSchedule")->addItem(QStringLiteral("FF ").repeated(500));
        driver.find("cmdRunScenario")->setEnabled(true);
        paste("txtScnPeriod", period);
        driver.click("cmdRunScenario");
    }

    const Bytes readRequest = {0xFF, 0xFF, 0x21, 0x03, 0x00, 0x00, 0x08, 0xBD, 0x85};
    static constexpr const char* told = "The line is too slow. Frames not sent: ";
};

TEST_F(SlowLineTest, FramesThatDoNotFitAreCountedAndThePortStaysOpen) {
    EXPECT_EQ(unsent(), 0); // a killed program may have left a lock, which is told here as well
    runScenario("5");
    ASSERT_TRUE(runUntil([this] { return unsent() >= 20; })) << notice();
    EXPECT_EQ(driver.box(), nullptr);
    EXPECT_EQ(text("cmdPortOpen"), "Close Port");
}

TEST_F(SlowLineTest, TheNoticeGoesWithTheConnection) {
    runScenario("5");
    ASSERT_TRUE(runUntil([this] { return notice().starts_with(told); }));
    driver.click("cmdPortOpen");
    EXPECT_EQ(text("cmdPortOpen"), "Open Port");
    EXPECT_EQ(notice(), "");
    driver.click("cmdPortOpen");
    EXPECT_EQ(notice(), "");
}

TEST_F(SlowLineTest, ContinuousSendingGoesOnWhenTheLineHasCaughtUp) {
    driver.choose("cbRegister", "R");
    driver.choose("cbRegAddress", "0000");
    driver.choose("cbRegBit", "0");
    driver.choose("cbRLength", "8");
    runScenario("1");
    ASSERT_TRUE(runUntil([this] { return notice().starts_with(told); }));
    driver.click("cmdStopScenario");
    driver.click("chkRTimer");
    Bytes far;
    ASSERT_TRUE(runUntil([&] {
        const Bytes more = line.readAvailable();
        far.insert(far.end(), more.begin(), more.end());
        return far.size() > 9 && Bytes(far.end() - 9, far.end()) == readRequest;
    }));
    EXPECT_EQ(text("cmdPortOpen"), "Close Port");
    EXPECT_EQ(driver.box(), nullptr);
}

} // namespace
} // namespace varda::test
