#include "window/simulator/simulation_page_fixture.h"

namespace varda::test {
namespace {

TEST_F(SimulationPageTest, StartsWithBitReadFromStation255) {
    EXPECT_EQ(driver.link().CommMode, Mode{0xFF});
    EXPECT_EQ(text("cbSimMode"), "Bit Read");
    EXPECT_EQ(text("cbSimModeS"), "Bit Read ANS");
    EXPECT_EQ(text("cbSimDA"), "255");
    EXPECT_EQ(driver.find<QComboBox>("cbSimDA")->count(), 256);
    EXPECT_EQ(driver.find<QComboBox>("cbSimMode")->itemText(2).toStdString(), "Bit Write");
    EXPECT_EQ(driver.find<QComboBox>("cbSimReg")->count(), 6);
    EXPECT_EQ(driver.find<QComboBox>("cbSimLength")->count(), 255);
    for (const char* const button : {"cmdSimInputOK", "cmdSimDelete", "cmdSimClear", "cmdSaveSimPacket",
                                     "cmdSimStart", "cmdSimAddListBox"}) {
        EXPECT_FALSE(driver.isEnabled(button)) << button;
    }
}

TEST_F(SimulationPageTest, EachKindShowsItsOwnFields) {
    EXPECT_TRUE(isShown("cbSimBit") && isShown("cbSimLength") && driver.isEnabled("txtSimSendData"));
    driver.choose("cbSimMode", "Word Read");
    EXPECT_FALSE(isShown("cbSimBit"));
    EXPECT_EQ(driver.find<QComboBox>("cbSimReg")->count(), 10);
    EXPECT_EQ(text("cbSimModeS"), "Word Read ANS");
    driver.choose("cbSimMode", "Bit Write");
    EXPECT_TRUE(isShown("optSimOnOff_0") && isShown("cbSimBit"));
    EXPECT_FALSE(isShown("cbSimLength") || isShown("txtSimData") || driver.isEnabled("txtSimSendData"));
    EXPECT_EQ(text("txtSimSend"), "FFFFA20100" + AppendSimPacketCheck("BIT_WRITE_ANS", "FFFFA20100"));
    driver.choose("cbSimMode", "Word Write");
    EXPECT_TRUE(isShown("txtSimData") && isShown("chkSimHexDec"));
    EXPECT_FALSE(isShown("optSimOnOff_0"));
    EXPECT_TRUE(driver.isEnabled("cmdSimAddListBox"));
}

TEST_F(SimulationPageTest, LengthOfABitReadPreFillsItsAnswer) {
    chooseRegister("M", "0002");
    driver.choose("cbSimBit", "3");
    driver.choose("cbSimLength", "3");
    EXPECT_EQ(text("txtSimSendData"), "FFFFFF");
    EXPECT_EQ(text("txtSimReceive").substr(0, 14), "FFFF2103230C03");
}

TEST_F(SimulationPageTest, LengthOfAWordReadPreFillsItsAnswer) {
    driver.choose("cbSimMode", "Word Read");
    chooseRegister("W", "0001");
    driver.choose("cbSimLength", "3");
    EXPECT_EQ(text("txtSimSendData"), "FFFFFFFFFFFF");
    EXPECT_EQ(text("txtSimReceive").substr(0, 14), "FFFF2303010203");
}

TEST_F(SimulationPageTest, StartButtonNeedsAPairAndAnOpenPort) {
    openLine();
    EXPECT_FALSE(driver.isEnabled("cmdSimStart"));
    addBitRead("0002", "2");
    EXPECT_TRUE(driver.isEnabled("cmdSimStart"));
    driver.click("cmdSimStart");
    EXPECT_EQ(driver.box(), nullptr);
    driver.click("optMode_0");
    driver.click("optMode_4");
    EXPECT_TRUE(driver.isEnabled("cmdSimStart"));
    driver.click("cmdPortOpen");
    EXPECT_FALSE(driver.isEnabled("cmdSimStart"));
}

TEST_F(SimulationPageTest, ChangedFieldRebuildsTheReadRequest) {
    addBitRead("0002", "2");
    driver.choose("cbSimAddress", "0004");
    driver.choose("cbSimBit", "3");
    EXPECT_EQ(text("txtSimReceive").substr(0, 14), "FFFF2103430C02");
}

TEST_F(SimulationPageTest, BitDataOtherThanOnAndOffIsRefused) {
    chooseRegister("M", "0002");
    driver.choose("cbSimBit", "3");
    driver.choose("cbSimLength", "1");
    paste("txtSimSendData", "0F");
    driver.click("cmdSimSendDataInputOK");
    EXPECT_EQ(driver.boxText(), "In BIT_READ Mode,Only possible to enter 00 or FF");
    EXPECT_EQ(driver.boxTitle(), "Error");
    EXPECT_FALSE(driver.isEnabled("cmdSimInputOK"));
}

TEST_F(SimulationPageTest, WordDataOfAnotherLengthIsRefusedWithTwoMessages) {
    driver.choose("cbSimMode", "Word Read");
    chooseRegister("W", "0001");
    driver.choose("cbSimLength", "2");
    paste("txtSimSendData", "123456789");
    driver.click("cmdSimSendDataInputOK");
    EXPECT_EQ(driver.boxText(), "Data Length is different !!");
    driver.closeBox();
    EXPECT_EQ(driver.boxText(), "In WORD_READ Mode,Only possible to enter 0000 to FFFF");
}

TEST_F(SimulationPageTest, AnswerDataTakesOnlyTheKeysOfItsKind) {
    driver.type("txtSimSendData", "f0a1G");
    EXPECT_EQ(text("txtSimSendData"), "F0");
    driver.choose("cbSimMode", "Word Read");
    driver.type("txtSimSendData", "12abxY");
    EXPECT_EQ(text("txtSimSendData"), "12AB");
}

TEST_F(SimulationPageTest, CollectedBitsStepOnAndMakeTheRequestOfTheFirst) {
    driver.choose("cbSimMode", "Bit Write");
    chooseRegister("M", "0012");
    driver.choose("cbSimBit", "14");
    driver.click("cmdSimAddListBox");
    EXPECT_EQ(driver.boxText(), "Please check Data (ON/OFF) !!");
    EXPECT_EQ(driver.boxTitle(), "Confirm");
    driver.closeBox();
    driver.click("optSimOnOff_0");
    driver.click("cmdSimAddListBox");
    driver.click("optSimOnOff_1");
    driver.click("cmdSimAddListBox");
    driver.click("cmdSimAddListBox");
    ASSERT_EQ(points()->count(), 3);
    EXPECT_EQ(points()->item(0)->text().toStdString(), "WT_BIT \t\tM0012.14\tON");
    EXPECT_EQ(text("cbSimAddress"), "0013");
    EXPECT_EQ(text("cbSimBit"), "1");
    EXPECT_EQ(text("txtSimReceive").substr(0, 18), "FFFF2203CE0CFF0000");
}

TEST_F(SimulationPageTest, CollectedWordsGoHighDigitsFirst) {
    driver.choose("cbSimMode", "Word Write");
    chooseRegister("W", "0001");
    driver.click("chkSimHexDec");
    driver.type("txtSimData", "1A2B");
    driver.click("cmdSimAddListBox");
    EXPECT_EQ(points()->item(0)->text().toStdString(), "WT_WORD\tW0001\t1A2B");
    EXPECT_EQ(text("cbSimAddress"), "0002");
    EXPECT_EQ(text("txtSimReceive").substr(0, 16), "FFFF240101021A2B");
}

TEST_F(SimulationPageTest, StepBehindTheLastNumberGoesToTheNextKindWithFiveZeros) {
    driver.choose("cbSimMode", "Bit Write");
    chooseRegister("F", "0015");
    driver.choose("cbSimBit", "15");
    driver.click("optSimOnOff_0");
    driver.click("cmdSimAddListBox");
    EXPECT_EQ(text("cbSimReg"), "TC");
    EXPECT_EQ(text("cbSimAddress"), "00000");
    EXPECT_EQ(text("cbSimBit"), "0");
}

TEST_F(SimulationPageTest, RemovedPointStepsThePageBack) {
    driver.choose("cbSimMode", "Bit Write");
    chooseRegister("M", "0012");
    driver.choose("cbSimBit", "3");
    driver.click("optSimOnOff_0");
    driver.click("cmdSimAddListBox");
    driver.click("cmdSimAddListBox");
    EXPECT_FALSE(driver.isEnabled("cmdSimDelListBox"));
    points()->setCurrentRow(1);
    EXPECT_TRUE(driver.isEnabled("cmdSimDelListBox"));
    driver.click("cmdSimDelListBox");
    EXPECT_EQ(points()->count(), 1);
    EXPECT_EQ(text("cbSimBit"), "4");
    EXPECT_EQ(text("txtSimReceive").substr(0, 14), "FFFF2201C30CFF");
}

TEST_F(SimulationPageTest, CollectedPointsAreOfferedBeforeTheKindChanges) {
    driver.choose("cbSimMode", "Bit Write");
    chooseRegister("M", "0012");
    driver.choose("cbSimBit", "3");
    driver.click("optSimOnOff_0");
    driver.click("cmdSimAddListBox");
    driver.choose("cbSimMode", "Bit Read");
    EXPECT_EQ(driver.boxText(), "Do you want to regist Data you written in List Box ?");
    EXPECT_EQ(driver.boxTitle(), "Confirm");
    answerQuestion(true);
    EXPECT_EQ(requests()->rowCount(), 1);
    EXPECT_EQ(points()->count(), 0);
    EXPECT_EQ(text("txtSimReceive"), "");
}

TEST_F(SimulationPageTest, CollectedPointsAreDroppedOnNo) {
    driver.choose("cbSimMode", "Bit Write");
    chooseRegister("M", "0012");
    driver.choose("cbSimBit", "3");
    driver.click("optSimOnOff_0");
    driver.click("cmdSimAddListBox");
    driver.choose("cbSimMode", "Word Read");
    answerQuestion(false);
    EXPECT_EQ(requests()->rowCount(), 0);
    EXPECT_EQ(points()->count(), 0);
}

TEST_F(SimulationPageTest, MixedKindsAreNotSupported) {
    driver.choose("cbSimMode", "Mixed Read");
    EXPECT_EQ(driver.boxText(), "Not support in this version yet.");
    EXPECT_EQ(driver.boxTitle(), "Confirm");
}

TEST_F(SimulationPageTest, YesToAMixedKindSendsTheMixedPagesFrame) {
    driver.find<QListWidget>("lstMRReadReg")->addItem(QStringLiteral("WORD\tW0001\t1"));
    openLine();
    driver.choose("cbSimMode", "Bit Write");
    chooseRegister("M", "0012");
    driver.choose("cbSimBit", "3");
    driver.click("optSimOnOff_0");
    driver.click("cmdSimAddListBox");
    driver.choose("cbSimMode", "Mixed Read");
    answerQuestion(true);
    const Bytes frame = sent(9);
    ASSERT_EQ(frame.size(), 9U);
    EXPECT_EQ(Bytes(frame.begin() + 2, frame.begin() + 6), (Bytes{0x25, 0x02, 0x01, 0x42}));
    EXPECT_EQ(text("txtSendMRData").substr(6, 12), "25 02 01 42 ");
    EXPECT_EQ(requests()->rowCount(), 0);
}

TEST_F(SimulationPageTest, LengthOutsideTheOfferLeavesNothingToRegister) {
    chooseRegister("M", "0002");
    driver.choose("cbSimBit", "3");
    for (const char* const wrong : {"300", "-5", "0", "abc", "99999", "32767"}) {
        paste("cbSimLength", "2");
        EXPECT_EQ(text("txtSimSendData"), "FFFF");
        paste("cbSimLength", wrong);
        EXPECT_EQ(text("txtSimReceive"), "") << wrong;
        EXPECT_EQ(text("txtSimSendData"), "") << wrong;
        EXPECT_EQ(driver.box(), nullptr) << wrong;
    }
}

TEST_F(SimulationPageTest, EnterInTheLengthKeepsTypedAnswerData) {
    driver.choose("cbSimMode", "Word Read");
    chooseRegister("W", "0001");
    driver.choose("cbSimLength", "2");
    paste("txtSimSendData", "12345678");
    QTest::keyClick(driver.find("cbSimLength"), Qt::Key_Return);
    EXPECT_EQ(text("txtSimSendData"), "12345678");
}

TEST_F(SimulationPageTest, AnotherRegisterKindEmptiesTheReadRequest) {
    chooseRegister("M", "0002");
    driver.choose("cbSimBit", "3");
    driver.choose("cbSimLength", "2");
    driver.choose("cbSimReg", "R");
    EXPECT_EQ(text("txtSimReceive"), "");
}

TEST_F(SimulationPageTest, PointThatIsNoNumberIsReportedAndNotAdded) {
    driver.choose("cbSimMode", "Word Write");
    chooseRegister("W", "0001");
    driver.click("chkSimHexDec");
    paste("txtSimData", "WXYZ");
    driver.click("cmdSimAddListBox");
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
    driver.closeBox();
    EXPECT_EQ(points()->count(), 0);
    EXPECT_EQ(text("cbSimAddress"), "0001");
    paste("txtSimData", "12AB");
    driver.click("cmdSimAddListBox");
    EXPECT_EQ(points()->count(), 1);
}

TEST_F(SimulationPageTest, PastedAnswerDataAreRegisteredInUpperCase) {
    driver.choose("cbSimMode", "Word Read");
    chooseRegister("W", "0001");
    driver.choose("cbSimLength", "1");
    paste("txtSimSendData", "abcd");
    driver.click("cmdSimSendDataInputOK");
    EXPECT_EQ(text("txtSimSend").substr(0, 12), "FFFFA301ABCD");
}

} // namespace
} // namespace varda::test
