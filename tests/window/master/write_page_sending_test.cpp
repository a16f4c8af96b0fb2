#include "window/master/write_page_fixture.h"

namespace varda::test {
namespace {

TEST_F(WritePageTest, DataModesExcludeEachOtherAndStayTicked) {
    driver.click("optWrite_1");
    driver.click("chkCounter");
    driver.click("chkCounter");
    EXPECT_TRUE(driver.find<QCheckBox>("chkCounter")->isChecked());
    driver.click("chkRandomWrite");
    EXPECT_FALSE(driver.find<QCheckBox>("chkCounter")->isChecked());
    EXPECT_TRUE(driver.find<QCheckBox>("chkRandomWrite")->isChecked());
}

TEST_F(WritePageTest, BitWriteGoesOutAndIsAcknowledgedByLengthAlone) {
    openLine();
    paste("txtWDDA", "16");
    chooseBits("R", "0001", "15", "1");
    clickCell(1, 16);
    driver.click("cmdWDSend");
    const Bytes request = sent(9);
    ASSERT_EQ(request.size(), 9U);
    EXPECT_EQ(Bytes(request.begin(), request.begin() + 7), (Bytes{0x10, 0xFF, 0x22, 0x03, 0x1F, 0x00, 0xFF}));
    line.write(Bytes(7, 0xEE));
    EXPECT_TRUE(showsSoon("txtWStatus", "Data Receive OK !!"));
    EXPECT_EQ(text("txtReceiveWData"), "EE EE EE EE EE EE EE ");
}

TEST_F(WritePageTest, AcknowledgementsOfOtherLengthsAreDropped) {
    openLine();
    chooseBits("R", "0001", "15", "1");
    for (const std::size_t length : {6U, 8U}) {
        driver.click("cmdWDSend");
        ASSERT_EQ(sent(9).size(), 9U); // what comes before is thrown away
        line.write(Bytes(length, 0xEE));
        ASSERT_TRUE(runUntil([this] { return driver.link().AnswerReceived; }));
        EXPECT_EQ(text("txtReceiveWData"), "");
        EXPECT_EQ(text("txtWStatus"), "");
    }
}

TEST_F(WritePageTest, CounterModeSendsTheDataUnchanged) {
    openLine();
    chooseWords("W", "0000", "1");
    enterWord(1, 1, "4660", false);
    driver.click("chkCounter");
    driver.click("cmdWDSend");
    const Bytes request = sent(10);
    EXPECT_EQ(request.at(6), 0x34);
    EXPECT_EQ(request.at(7), 0x12);
}

TEST_F(WritePageTest, RandomModeFillsABitWriteToo) {
    openLine();
    chooseWords("W", "0000", "1");
    driver.click("chkRandomWrite");
    driver.click("optWrite_0");
    chooseBits("R", "0000", "0", "8");
    driver.click("cmdWDSend");
    const Bytes request = sent(16);
    ASSERT_EQ(request.size(), 16U);
    EXPECT_NE(Bytes(request.begin() + 6, request.begin() + 14), Bytes(8, 0x00));
    const std::uint16_t check = crc16(std::span(request).first(14));
    EXPECT_EQ(request[14], check & 0xFFU);
    EXPECT_EQ(request[15], check >> 8U);
}

TEST_F(WritePageTest, ContinuousWritingWaitsForItsAnswer) {
    chooseBits("R", "0001", "15", "1");
    paste("txtWriteTimerValue", "100");
    openLine();
    driver.click("chkWTimer");
    EXPECT_EQ(sent(9).size(), 9U);
    runFor(std::chrono::milliseconds(300));
    EXPECT_TRUE(line.readAvailable().empty());
    line.write(Bytes(7, 0x00));
    EXPECT_EQ(sent(9).size(), 9U);
}

TEST_F(WritePageTest, MissingRegisterAsksForData) {
    openLine();
    driver.click("cmdWDSend");
    EXPECT_EQ(driver.boxText(), "Data are missing. Please fill Data !!");
}

TEST_F(WritePageTest, SendingWithTheClosedPortSaysSo) {
    chooseBits("R", "0001", "15", "1");
    driver.find("cmdWDSend")->setEnabled(true);
    driver.click("cmdWDSend");
    EXPECT_EQ(text("txtWStatus"), "Port Closed");
}

TEST_F(WritePageTest, SendButtonFollowsThePort) {
    EXPECT_FALSE(driver.find("cmdWDSend")->isEnabledTo(driver.find("tabMode")));
    openLine();
    driver.click("optMode_0");
    driver.click("optMode_1");
    EXPECT_TRUE(driver.isEnabled("cmdWDSend"));
}

} // namespace
} // namespace varda::test
