#include "window/simulator/simulation_page_fixture.h"

namespace varda::test {
namespace {

/// Points that are collected for a write, and what becomes of them when something else is chosen.
class SimulationPointsTest : public SimulationPageTest {
protected:
    /// Collects bit 3 of M 0012 as ON.
    void collectBit() {
        driver.choose("cbSimMode", "Bit Write");
        chooseRegister("M", "0012");
        driver.choose("cbSimBit", "3");
        driver.click("optSimOnOff_0");
        driver.click("cmdSimAddListBox");
    }

    void collectWord() {
        driver.choose("cbSimMode", "Word Write");
        chooseRegister("W", "0001");
        paste("txtSimData", "1234");
        driver.click("chkSimHexDec");
        driver.click("cmdSimAddListBox");
    }
};

TEST_F(SimulationPointsTest, StationsRebuildNothingUntilSomethingIsBuiltNext) {
    collectBit();
    const std::string request = text("txtSimReceive");
    const std::string answer = text("txtSimSend");
    driver.choose("cbSimDA", "1");
    driver.choose("cbSimSA", "2");
    EXPECT_EQ(text("txtSimReceive"), request);
    EXPECT_EQ(text("txtSimSend"), answer);
    driver.click("cmdSimAddListBox");
    EXPECT_EQ(text("txtSimReceive").substr(0, 16), "01022202C30CFFFF");
    driver.click("cmdSimSendDataInputOK");
    EXPECT_EQ(text("txtSimSend").substr(0, 10), "0102A20100");
}

TEST_F(SimulationPointsTest, StationsLeaveAReadRequestToo) {
    chooseRegister("M", "0002");
    driver.choose("cbSimBit", "3");
    driver.choose("cbSimLength", "2");
    driver.choose("cbSimDA", "1");
    EXPECT_EQ(text("txtSimReceive").substr(0, 4), "FFFF");
    driver.choose("cbSimLength", "3");
    EXPECT_EQ(text("txtSimReceive").substr(0, 14), "01FF2103230C03");
}

TEST_F(SimulationPointsTest, StationAfterAnotherRegisterWasChosenFailsNothing) {
    collectBit();
    driver.choose("cbSimReg", "R");
    driver.choose("cbSimDA", "1");
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(SimulationPointsTest, YesAddsThePairAsItStandsWhateverTheNewKindWouldAskFor) {
    for (const char* const kind : {"Bit Read", "Word Read", "Word Write"}) {
        collectBit();
        const std::string request = text("txtSimReceive");
        const std::string answer = text("txtSimSend");
        driver.choose("cbSimMode", kind);
        answerQuestion(true);
        const int added = requests()->rowCount() - 1;
        EXPECT_EQ(this->request(added), request) << kind;
        EXPECT_EQ(this->answer(added), answer) << kind;
    }
    EXPECT_EQ(requests()->rowCount(), 3);
}

TEST_F(SimulationPointsTest, YesOnTheWayToBitWriteAsksForNoOnOrOff) {
    collectWord();
    driver.choose("cbSimMode", "Bit Write");
    answerQuestion(true);
    EXPECT_EQ(requests()->rowCount(), 1);
}

TEST_F(SimulationPointsTest, ModeClickAsksFirstAndSeesThePageAsItWas) {
    driver.choose("cbSimDA", "7");
    collectBit();
    const std::string request = text("txtSimReceive");
    driver.click("optMode_0");
    driver.click("optMode_4");
    EXPECT_EQ(driver.boxText(), "Do you want to regist Data you written in List Box ?");
    EXPECT_EQ(text("cbSimDA"), "7");
    EXPECT_EQ(text("cbSimMode"), "Bit Write");
    EXPECT_EQ(text("txtSimReceive"), request);
    answerQuestion(true);
    ASSERT_EQ(requests()->rowCount(), 1);
    EXPECT_EQ(this->request(0), request);
    EXPECT_EQ(text("cbSimDA"), "255");
    EXPECT_EQ(text("cbSimMode"), "Bit Read");
    EXPECT_EQ(points()->count(), 0);
    EXPECT_FALSE(driver.isEnabled("cmdSaveSimPacket"));
}

TEST_F(SimulationPointsTest, ModeClickAfterAnotherRegisterFailsNothing) {
    collectBit();
    driver.choose("cbSimReg", "R");
    driver.click("optMode_0");
    driver.click("optMode_4");
    answerQuestion(false);
    EXPECT_EQ(driver.box(), nullptr);
    EXPECT_EQ(requests()->rowCount(), 0);
    EXPECT_EQ(text("cbSimDA"), "255");
}

TEST_F(SimulationPointsTest, EnteringAWriteKindEnablesThePointList) {
    driver.choose("cbSimMode", "Mixed Read");
    driver.closeBox();
    paste("cbSimLength", "2");
    EXPECT_FALSE(driver.isEnabled("lstSimMixed"));
    driver.choose("cbSimMode", "Bit Write");
    EXPECT_TRUE(driver.isEnabled("lstSimMixed"));
}

} // namespace
} // namespace varda::test
