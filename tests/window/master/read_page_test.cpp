#include "window/master/read_page_fixture.h"

namespace varda::test {
namespace {

TEST_F(ReadPageTest, StartsWithBitReadingAndEmptyLists) {
    EXPECT_TRUE(driver.find<QAbstractButton>("optRead_0")->isChecked());
    EXPECT_EQ(text("txtRDDA"), "255");
    EXPECT_EQ(text("txtRDSA"), "255");
    EXPECT_EQ(text("cbRegister"), "");
    EXPECT_EQ(text("cbRLength"), "");
    EXPECT_EQ(text("txtReadTimerValue"), "500");
    EXPECT_EQ(driver.find<QComboBox>("cbRegister")->count(), 7);
    EXPECT_EQ(driver.find<QComboBox>("cbRLength")->count(), 256);
    EXPECT_EQ(driver.find<QComboBox>("cbRegBit")->count(), 16);
    EXPECT_TRUE(driver.find("cbRegBit")->isVisible());
    EXPECT_TRUE(driver.find("lblBitPoint")->isVisible());
}

TEST_F(ReadPageTest, WordOptionHidesTheBitAndOffersAllKinds) {
    driver.click("optRead_1");
    EXPECT_FALSE(driver.find("cbRegBit")->isVisible());
    EXPECT_FALSE(driver.find("lblBitPoint")->isVisible());
    EXPECT_EQ(driver.find<QComboBox>("cbRegister")->count(), 11);
    EXPECT_EQ(driver.find<QComboBox>("cbRLength")->count(), 128);
    EXPECT_EQ(driver.link().CommMode, Mode{0x23});
    driver.click("optRead_0");
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
}

TEST_F(ReadPageTest, AnotherOptionForgetsTheChosenRegister) {
    chooseBits("M", "0002", "3", "16");
    driver.click("optRead_1");
    EXPECT_EQ(text("cbRegister"), "");
    EXPECT_EQ(text("cbRegAddress"), "");
    EXPECT_EQ(text("cbRLength"), "");
    EXPECT_EQ(driver.find<QComboBox>("cbRegAddress")->count(), 0);
}

TEST_F(ReadPageTest, WordOptionAndBackKeepsTheSixteenBits) {
    driver.click("optRead_1");
    driver.click("optRead_0");
    EXPECT_EQ(driver.find<QComboBox>("cbRegBit")->count(), 16);
    EXPECT_EQ(text("cbRegBit"), "");
}

TEST_F(ReadPageTest, RequestTextHasNineGroupsAndATrailingSpace) {
    driver.type("txtRDDA", "16");
    chooseBits("M", "0002", "3", "16");
    const std::string shown = text("txtSendRData");
    EXPECT_EQ(shown.size(), 27U);
    EXPECT_EQ(shown.substr(0, 21), "10 FF 21 03 23 0C 10 ");
    EXPECT_EQ(shown.back(), ' ');
}

TEST_F(ReadPageTest, CountAbove256LeavesThePreviousCount) {
    chooseBits("R", "0000", "0", "16");
    setListSilently("cbRLength", "30");
    QTest::keyClick(driver.find("cbRLength"), Qt::Key_End);
    paste("cbRLength", "300");
    EXPECT_EQ(imageByte(6), 16);
    EXPECT_EQ(text("cbRLength"), "300");
}

TEST_F(ReadPageTest, CountTypedKeyByKeyPassesThroughItsBeginnings) {
    driver.type("cbRLength", "300");
    EXPECT_EQ(imageByte(6), 30);
    EXPECT_EQ(text("cbRLength"), "300");
}

TEST_F(ReadPageTest, CountThatIsNoNumberIsEmptied) {
    chooseBits("R", "0000", "0", "16");
    for (const char* const wrong : {"abc", "70000", "1.5"}) {
        paste("cbRLength", wrong);
        EXPECT_EQ(text("cbRLength"), "") << wrong;
        EXPECT_EQ(imageByte(6), 16) << wrong;
    }
}

TEST_F(ReadPageTest, NegativeCountLeavesThePreviousCount) {
    chooseBits("R", "0000", "0", "16");
    paste("cbRLength", "-1");
    EXPECT_EQ(imageByte(6), 16);
}

TEST_F(ReadPageTest, StationBelow16ShowsAsOneCharacter) {
    driver.type("txtRDDA", "5");
    EXPECT_EQ(text("txtSendRData").substr(0, 5), "5 FF ");
    EXPECT_EQ(imageByte(0), 0x05);
}

TEST_F(ReadPageTest, StationThatIsNoneOfAByteIsZero) {
    for (const char* const wrong : {"256", "", "-1", "abc", "70000"}) {
        paste("txtRDSA", "17");
        paste("txtRDSA", wrong);
        EXPECT_EQ(imageText(1), "00") << wrong;
        EXPECT_EQ(imageByte(1), 0) << wrong;
        EXPECT_EQ(driver.box(), nullptr) << wrong;
    }
}

TEST_F(ReadPageTest, StationTakesHexadecimalInput) {
    paste("txtRDDA", "&HFE");
    EXPECT_EQ(imageByte(0), 0xFE);
    paste("txtRDDA", " 7 ");
    EXPECT_EQ(imageByte(0), 7);
}

TEST_F(ReadPageTest, PeriodBelow100Becomes100) {
    paste("txtReadTimerValue", "50");
    EXPECT_EQ(text("txtReadTimerValue"), "100");
}

TEST_F(ReadPageTest, PeriodThatIsNoNumberBecomes500) {
    for (const char* const wrong : {"abc", "", "40000"}) {
        paste("txtReadTimerValue", "700");
        paste("txtReadTimerValue", wrong);
        EXPECT_EQ(text("txtReadTimerValue"), "500") << wrong;
    }
}

TEST_F(ReadPageTest, EmptyKindEmptiesTheListsAndSendingAsksForData) {
    chooseBits("M", "0002", "3", "16");
    driver.choose("cbRegister", "");
    EXPECT_EQ(driver.find<QComboBox>("cbRegAddress")->count(), 0);
    EXPECT_EQ(driver.find<QComboBox>("cbRegBit")->count(), 0);
    openLine();
    driver.click("cmdRDSend");
    EXPECT_EQ(driver.boxText(), "Data are missing. Please fill Data !!");
    EXPECT_EQ(driver.boxTitle(), "Error");
    EXPECT_FALSE(driver.link().WaitingAnswer);
}

TEST_F(ReadPageTest, WordSendNeedsNoBit) {
    openLine();
    chooseWords("SR", "511", "2");
    driver.click("cmdRDSend");
    const Bytes request = sent(9);
    EXPECT_EQ(Bytes(request.begin() + 2, request.begin() + 7), (Bytes{0x23, 0x03, 0xFF, 0x0D, 0x02}));
}

TEST_F(ReadPageTest, BitWithoutANumberIsEmptiedAndLeavesTheImage) {
    driver.choose("cbRegister", "M");
    paste("cbRegBit", "3");
    EXPECT_EQ(text("cbRegBit"), "");
    EXPECT_EQ(imageByte(4), 0);
    EXPECT_EQ(imageByte(5), 0);
}

TEST_F(ReadPageTest, NumberInBitModeWritesNothingIntoTheImage) {
    chooseBits("M", "0002", "3", "16");
    driver.choose("cbRegAddress", "0009");
    EXPECT_EQ(imageByte(4), 0x23);
    EXPECT_EQ(text("txtSendRData").substr(6, 15), "21 03 23 0C 10 ");
}

TEST_F(ReadPageTest, NumberThatIsNoneIsReportedAndLeavesTheImage) {
    chooseWords("W", "0010", "2");
    paste("cbRegAddress", "abc");
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
    EXPECT_EQ(driver.boxTitle(), "VR-Series PLC Test & Simulator");
    EXPECT_EQ(imageByte(4), 0x0A);
}

TEST_F(ReadPageTest, NumberBeingRetypedIsNotReported) {
    chooseWords("W", "0010", "2");
    driver.type("cbRegAddress", "");
    EXPECT_EQ(driver.box(), nullptr);
    driver.type("cbRegAddress", "11");
    EXPECT_EQ(imageByte(4), 0x0B);
}

TEST_F(ReadPageTest, LongestNumberListOpens) {
    driver.click("optRead_1");
    driver.choose("cbRegister", "W");
    EXPECT_EQ(driver.find<QComboBox>("cbRegAddress")->count(), 2048);
    driver.choose("cbRegAddress", "2047");
    EXPECT_EQ(imageByte(4), 0xFF);
    EXPECT_EQ(imageByte(5), 0x09);
}

TEST_F(ReadPageTest, TypingIntoAListIsNeverCompleted) {
    driver.type("cbRegAddress", "0");
    driver.choose("cbRegister", "R");
    driver.type("cbRegAddress", "00");
    EXPECT_EQ(text("cbRegAddress"), "00");
    QTest::keyClick(driver.find("cbRegAddress"), Qt::Key_Return);
    EXPECT_EQ(text("cbRegAddress"), "00");
    EXPECT_EQ(driver.find<QComboBox>("cbRegAddress")->count(), 128);
}

TEST_F(ReadPageTest, KeyInTheKindListRunsTheCountsHandler) {
    setListSilently("cbRLength", "abc");
    driver.type("cbRegister", "R");
    EXPECT_EQ(text("cbRLength"), "");
}

TEST_F(ReadPageTest, KeyRunsTheFieldsHandlerBeforeItReachesTheField) {
    setSilently("txtRDDA", "9");
    QTest::keyClick(driver.find("txtRDDA"), Qt::Key_Escape);
    EXPECT_EQ(imageByte(0), 9);
}

TEST_F(ReadPageTest, ClickRunsTheFieldsHandler) {
    setSilently("txtRDSA", "8");
    QTest::mouseClick(driver.find("txtRDSA"), Qt::LeftButton);
    EXPECT_EQ(imageByte(1), 8);
}

TEST_F(ReadPageTest, ChoosingTheSameEntryRunsTheListsHandler) {
    chooseBits("R", "0000", "0", "16");
    paste("cbRLength", "300");
    setListSilently("cbRLength", "7");
    driver.choose("cbRLength", "7");
    EXPECT_EQ(imageByte(6), 7);
}

TEST_F(ReadPageTest, LeavingAStationRunsItsHandler) {
    driver.find("txtRDDA")->setFocus();
    setSilently("txtRDDA", "44");
    driver.find("txtRDSA")->setFocus();
    EXPECT_EQ(imageByte(0), 44);
}

TEST_F(ReadPageTest, FocusedFieldIsYellowWithBlackText) {
    for (const char* const field :
         {"cbRegister", "cbRegAddress", "cbRegBit", "cbRLength", "txtRDDA", "txtRDSA"}) {
        QWidget* const control = driver.find(field);
        control->setFocus();
        EXPECT_EQ(control->palette().color(QPalette::Base), QColor(255, 255, 0)) << field;
        EXPECT_EQ(control->palette().color(QPalette::Text), QColor(0, 0, 0)) << field;
        driver.find("cmdRDSend")->setFocus();
        driver.find("chkRTimer")->setFocus();
        EXPECT_EQ(control->palette().color(QPalette::Base), driver.window().palette().color(QPalette::Base))
            << field;
    }
}

TEST_F(ReadPageTest, OpenListStaysYellow) {
    auto* const kinds = driver.find<QComboBox>("cbRegister");
    kinds->setFocus();
    kinds->showPopup();
    EXPECT_EQ(kinds->palette().color(QPalette::Base), QColor(255, 255, 0));
    kinds->hidePopup();
}

TEST_F(ReadPageTest, EnterInTheKindListKeepsTheNumber) {
    driver.choose("cbRegister", "M");
    driver.choose("cbRegAddress", "0002");
    driver.type("cbRegister", "R");
    driver.type("cbRegAddress", "0005");
    QTest::keyClick(driver.find("cbRegister"), Qt::Key_Return);
    EXPECT_EQ(text("cbRegAddress"), "0005");
}

} // namespace
} // namespace varda::test
