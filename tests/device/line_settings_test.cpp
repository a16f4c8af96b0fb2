#include "device/device_line.h"
#include "device/driver.h"
#include "device/line_setup.h"

#include "support/pseudo_terminal.h"
#include "support/raises.h"

#include <gtest/gtest.h>
#include <termios.h>

namespace varda {

using namespace device;
namespace {

using test::PseudoTerminal;

void ignoreTasks(const std::function<void()>& /*task*/) {}

class LineSettingsTest : public testing::Test {
protected:
    /// Opens with these settings. @return what the driver holds then
    termios heldAfter(const LineSettings& settings) {
        DeviceLine line(terminal.path(), ignoreTasks);
        line.open(settings);
        termios held{};
        EXPECT_EQ(::tcgetattr(terminal.nearEnd(), &held), 0);
        return held;
    }

    PseudoTerminal terminal;
};

TEST_F(LineSettingsTest, ReachTheDriverInEveryCombination) {
    for (const int dataBits : {5, 6, 7, 8}) {
        for (const int stopBits : {1, 2}) {
            for (const char parity : {'n', 'e', 'o'}) {
                const termios held = heldAfter({4800, parity, dataBits, stopBits});
                EXPECT_EQ((held.c_cflag & CSTOPB) != 0, stopBits == 2);
                EXPECT_EQ((held.c_cflag & PARODD) != 0, parity == 'o');
                EXPECT_EQ(driver::heldBaudRate(terminal.nearEnd()), 4800);
                EXPECT_EQ(held.c_cflag & CRTSCTS, 0U);
                EXPECT_EQ(held.c_iflag & (IXON | IXOFF | IXANY | ICRNL | ISTRIP | INPCK | PARMRK), 0U);
                EXPECT_EQ(held.c_lflag & (ICANON | ECHO | ISIG), 0U);
                EXPECT_EQ(held.c_oflag & OPOST, 0U);
            }
        }
    }
}

TEST_F(LineSettingsTest, TakeEveryBaudRateThatTheDriverTakes) {
    for (const int rate : {1, 50, 110, 2400, 4800, 9600, 10400, 12345, 19200, 31250, 38400, 57600, 74880,
                           115200, 230400, 250000, 921600, 3686400, 12000000}) {
        heldAfter({rate, 'n', 8, 1});
        EXPECT_EQ(driver::heldBaudRate(terminal.nearEnd()), rate);
    }
}

TEST_F(LineSettingsTest, GoBackFromAnOddBaudRateToAnUsualOne) {
    heldAfter({12345, 'n', 8, 1});
    const termios held = heldAfter({9600, 'n', 8, 1});
    EXPECT_EQ(::cfgetospeed(&held), static_cast<speed_t>(B9600));
    EXPECT_EQ(::cfgetispeed(&held), static_cast<speed_t>(B9600));
    EXPECT_EQ(driver::heldBaudRate(terminal.nearEnd()), 9600);
}

TEST(BaudRate, OfWhatIsNoPortIsNone) { EXPECT_EQ(driver::heldBaudRate(-1), 0); }

TEST(BaudRate, IsTakenWhereTheDriverComesNearEnough) {
    EXPECT_TRUE(isNearBaudRate(9600, 9600));
    EXPECT_TRUE(isNearBaudRate(115384, 115200));
    EXPECT_TRUE(isNearBaudRate(9312, 9600));
    EXPECT_FALSE(isNearBaudRate(9311, 9600));
    EXPECT_FALSE(isNearBaudRate(9600, 12345));
    for (const int rate : {1, 9600, 2147483647}) {
        EXPECT_FALSE(isNearBaudRate(0, rate)) << "a driver that does not tell holds none";
    }
    EXPECT_TRUE(isNearBaudRate(2147483647, 2147483647));
    EXPECT_FALSE(isNearBaudRate(1, 2147483647));
}

} // namespace
} // namespace varda
