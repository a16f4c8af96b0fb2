#include "window/shell/open_port_words.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

using window::PortState;

PortState stateOf(const std::string& field, const std::string& tested, bool isOpen = false) {
    return {.field = field,
            .tested = tested,
            .awaited = {},
            .isOpen = isOpen,
            .baudRate = "9600",
            .dataBits = "8",
            .stopBits = "1",
            .parity = "NONE"};
}

TEST(OpenPortWords, TellWhatIsOpenOrWouldBeOpened) {
    EXPECT_EQ(openPortText(stateOf("COM1", "")), "No port is tested yet");
    EXPECT_EQ(openPortText(stateOf("COM7", "VIRTUAL")), "Open Port opens VIRTUAL, 9600 8-N-1");
    EXPECT_EQ(openPortText(stateOf("COM7", " VIRTUAL ", true)), "Open: VIRTUAL, 9600 8-N-1");
}

TEST(OpenPortWords, HaveTheSettingsInTheUsualShortForm) {
    auto state = stateOf("COM1", "COM1", true);
    state.baudRate = "19200";
    state.dataBits = "7";
    state.parity = "EVEN";
    state.stopBits = "2";
    EXPECT_EQ(openPortText(state), "Open: COM1, 19200 7-E-2");
    state.parity = "ODD";
    EXPECT_EQ(openPortText(state), "Open: COM1, 19200 7-O-2");
    state.parity = "MARK";
    EXPECT_EQ(openPortText(state), "Open: COM1, 19200 7-MARK-2");
}

TEST(OpenPortWords, ShowTheStartValuesThatOpeningGivesToEmptyLists) {
    auto state = stateOf("COM1", "COM1");
    state.baudRate = state.dataBits = state.stopBits = state.parity = "";
    EXPECT_EQ(openPortText(state), "Open Port opens COM1, 9600 8-N-1");
}

TEST(OpenPortWords, TellWhatIsWaitedFor) {
    auto state = stateOf("COM1", "/dev/ttyUSB0");
    state.awaited = "/dev/ttyUSB0";
    EXPECT_EQ(openPortText(state), "Waiting for /dev/ttyUSB0 to come back");
    EXPECT_EQ(portInText(state), "/dev/ttyUSB0");
}

TEST(OpenPortWords, TellThatTheFieldWaitsForTest) {
    EXPECT_EQ(fieldText(stateOf("COM7", "")), "Press Test, then Open Port.");
    EXPECT_EQ(fieldText(stateOf("COM7", "VIRTUAL")),
              "This text waits for Test: until then Open Port opens VIRTUAL.");
    EXPECT_EQ(fieldText(stateOf("COM7", "VIRTUAL", true)), "This text waits for Test: VIRTUAL is open.");
    EXPECT_EQ(fieldText(stateOf(" COM7", "COM7 ")), "It is tested: Open Port opens it.");
    EXPECT_EQ(fieldText(stateOf("COM7", "COM7", true)), "It is open.");
}

} // namespace
} // namespace varda::test
