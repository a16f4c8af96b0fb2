#include "window/master/read_page_fixture.h"

#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTextCursor>

namespace varda::test {
namespace {

TEST_F(ReadPageTest, EverySendShowsTheRequestAlsoAfterAnEmptiedCount) {
    openLine();
    chooseBits("R", "0010", "11", "120");
    driver.type("cbRLength", "");
    EXPECT_EQ(text("txtSendRData"), "");
    driver.click("cmdRDSend");
    EXPECT_EQ(text("txtSendRData"), "FF FF 21 03 AB 00 78 CD 81 ");
}

TEST_F(ReadPageTest, TheSameRequestIsNotShownAnewWhenItIsSentAgain) {
    openLine();
    chooseWords("W", "0000", "8");
    auto* const request = driver.find<QPlainTextEdit>("txtSendRData");
    const std::string shown = text("txtSendRData");
    const QSignalSpy changes(request, &QPlainTextEdit::textChanged);
    QTextCursor cursor = request->textCursor();
    cursor.setPosition(6);
    cursor.setPosition(8, QTextCursor::KeepAnchor);
    request->setTextCursor(cursor);
    driver.click("cmdRDSend");
    driver.click("cmdRDSend");
    EXPECT_EQ(sent(18).size(), 18U);
    EXPECT_EQ(text("txtSendRData"), shown);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(request->textCursor().selectedText().toStdString(), "23");
}

TEST_F(ReadPageTest, BitReadGoesOutAsItsFrameAndItsAnswerIsShown) {
    openLine();
    driver.type("txtRDDA", "1");
    driver.type("txtRDSA", "0");
    chooseBits("M", "0002", "3", "16");
    driver.click("cmdRDSend");
    const Bytes request = sent(9);
    ASSERT_EQ(request.size(), 9U);
    EXPECT_EQ(Bytes(request.begin(), request.begin() + 7), (Bytes{0x01, 0x00, 0x21, 0x03, 0x23, 0x0C, 0x10}));
    EXPECT_EQ(driver.link().RxExpected, 22);

    line.write(Bytes(22, 0xFF));
    ASSERT_TRUE(showsSoon("txtRStatus", "Data Receive OK !!"));
    std::string groups;
    for (int byte = 0; byte < 22; ++byte) {
        groups += "FF ";
    }
    EXPECT_EQ(text("txtReceiveRData"), groups);
}

TEST_F(ReadPageTest, Count256IsSentAsZeroAndWaitsForTheLongAnswer) {
    openLine();
    chooseBits("R", "0000", "0", "256");
    driver.click("cmdRDSend");
    EXPECT_EQ(sent(9).at(6), 0x00);
    EXPECT_EQ(driver.link().RxExpected, 262);
    chooseWords("W", "0000", "1");
    driver.type("cbRLength", "256");
    driver.click("cmdRDSend");
    EXPECT_EQ(driver.link().RxExpected, 518);
}

TEST_F(ReadPageTest, SendingWithTheClosedPortSaysSo) {
    chooseBits("M", "0002", "3", "16");
    driver.find("cmdRDSend")->setEnabled(true);
    driver.click("cmdRDSend");
    EXPECT_EQ(text("txtRStatus"), "Port Closed");
    EXPECT_FALSE(driver.link().WaitingAnswer);
    EXPECT_EQ(driver.link().RxExpected, 0);
}

TEST_F(ReadPageTest, SendingLeavesFocusCaretAndSelection) {
    openLine();
    chooseBits("M", "0002", "3", "16");
    auto* const station = driver.find<QLineEdit>("txtRDDA");
    station->setFocus();
    station->setSelection(1, 1);
    driver.window().form().press("cmdRDSend");
    EXPECT_TRUE(station->hasFocus());
    EXPECT_EQ(station->selectedText().toStdString(), "5");
}

TEST_F(ReadPageTest, SendingLeavesAnOpenListOpen) {
    openLine();
    chooseBits("M", "0002", "3", "16");
    auto* const kinds = driver.find<QComboBox>("cbRegister");
    kinds->showPopup();
    driver.window().form().press("cmdRDSend");
    EXPECT_TRUE(kinds->view()->isVisible());
    kinds->hidePopup();
}

TEST_F(ReadPageTest, SendingEnablesThePeriodFieldAgain) {
    openLine();
    EXPECT_FALSE(driver.isEnabled("txtReadTimerValue"));
    chooseBits("M", "0002", "3", "16");
    driver.click("cmdRDSend");
    EXPECT_TRUE(driver.isEnabled("txtReadTimerValue"));
}

TEST_F(ReadPageTest, ContinuousReadingRepeatsWithoutWaitingForTheAnswer) {
    chooseBits("M", "0002", "3", "16");
    paste("txtReadTimerValue", "100");
    openLine();
    driver.click("chkRTimer");
    EXPECT_EQ(sent(27).size() % 9, 0U);
}

TEST_F(ReadPageTest, ContinuousReadingStopsWhileAFieldIsEmpty) {
    chooseBits("M", "0002", "3", "16");
    paste("txtReadTimerValue", "100");
    paste("txtRDDA", "");
    openLine();
    driver.click("chkRTimer");
    runFor(std::chrono::milliseconds(250));
    EXPECT_TRUE(line.readAvailable().empty());
}

TEST_F(ReadPageTest, EveryByteValueIsShown) {
    openLine();
    chooseBits("R", "0000", "0", "250");
    driver.click("cmdRDSend");
    Bytes answer;
    std::string groups;
    for (int value = 0; value < 256; ++value) {
        answer.push_back(static_cast<std::uint8_t>(value));
        groups += QString::asprintf("%02X ", value).toStdString();
    }
    line.write(answer);
    ASSERT_TRUE(showsSoon("txtRStatus", "Data Receive OK !!"));
    EXPECT_EQ(text("txtReceiveRData"), groups);
}

TEST_F(ReadPageTest, LongestAnswerIsShownWhole) {
    openLine();
    chooseWords("W", "0000", "1");
    driver.type("cbRLength", "256");
    driver.click("cmdRDSend");
    line.write(Bytes(518, 0x5A));
    ASSERT_TRUE(showsSoon("txtRStatus", "Data Receive OK !!"));
    EXPECT_EQ(text("txtReceiveRData").size(), 518U * 3);
}

TEST_F(ReadPageTest, AnswerInTwoBurstsIsDroppedSilently) {
    openLine();
    chooseBits("R", "0000", "0", "8");
    driver.click("cmdRDSend");
    line.write(Bytes(7, 0x11));
    ASSERT_TRUE(runUntil([this] { return driver.link().AnswerReceived; }));
    line.write(Bytes(7, 0x22));
    runFor(std::chrono::milliseconds(250));
    EXPECT_EQ(text("txtReceiveRData"), "");
    EXPECT_EQ(text("txtRStatus"), "");
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(ReadPageTest, AnswerArrivesBehindAMessageBox) {
    openLine();
    chooseBits("R", "0000", "0", "8");
    driver.click("cmdRDSend");
    driver.window().form().showMessage("Something else", "Error");
    line.write(Bytes(14, 0x11));
    EXPECT_TRUE(showsSoon("txtRStatus", "Data Receive OK !!"));
    EXPECT_NE(driver.box(), nullptr);
}

TEST_F(ReadPageTest, SilenceIsToldAfterThirteenTicks) {
    chooseBits("R", "0000", "0", "8");
    paste("txtReadTimerValue", "100");
    openLine();
    driver.click("cmdRDSend");
    EXPECT_TRUE(showsSoon("txtRStatus", "No Answer From PLC"));
    EXPECT_EQ(text("txtWatchDog"), "0");
    EXPECT_FALSE(driver.link().WaitingAnswer);
}

} // namespace
} // namespace varda::test
