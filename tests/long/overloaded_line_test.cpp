#include "core/protocol/frame.h"
#include "support/window_test.h"

#include <QLabel>
#include <QListWidget>

#include <chrono>
#include <span>

namespace varda::test {
namespace {

using namespace std::chrono_literals;

/// A line that takes less than the window sends, for as long as it takes to fill all that lies between.
class OverloadedLineTest : public WindowTest {
protected:
    /// Lets the far end take 960 bytes a second.
    void drainFor(std::chrono::seconds time) {
        for (auto passed = 0ms; passed < time; passed += 100ms) {
            runFor(100ms);
            const Bytes taken = line.read(96);
            received.insert(received.end(), taken.begin(), taken.end());
        }
    }

    Bytes received;
};

TEST_F(OverloadedLineTest, ContinuousSendingGoesOnAndEveryFrameThatIsSentIsWhole) {
    driver.click("optMode_2");
    driver.find<QListWidget>("lstMRReadReg")->addItem(QStringLiteral("WORD\tW0000\t120"));
    driver.click("optMRead_1");
    driver.choose("cbMRegister", "W");
    driver.choose("cbMRegAddress", "0000");
    driver.choose("cbMRLength", "1");
    paste("txtMReadTimerValue", "100");
    openLine();
    driver.click("chkMRTimer");
    drainFor(5s);
    EXPECT_TRUE(runUntil([this] { return !driver.find<QLabel>("slowLine")->text().isEmpty(); }, 60s));
    drainFor(5s);
    EXPECT_EQ(driver.box(), nullptr) << driver.boxText();
    EXPECT_EQ(text("cmdPortOpen"), "Close Port");
    constexpr std::size_t sentBytes = 2 * 120 + 7; // one more than the frame has
    for (std::span rest(received); rest.size() >= sentBytes; rest = rest.subspan(sentBytes)) {
        const auto frame = parse(rest);
        ASSERT_TRUE(frame) << "at byte " << received.size() - rest.size();
        ASSERT_EQ(frame->size() + 1, sentBytes);
    }
    EXPECT_GT(received.size(), 30 * sentBytes);
}

} // namespace
} // namespace varda::test
