#include "window/shell/start_up.h"

#include "support/temporary_folder.h"
#include "support/window_test.h"
#include "window/shell/command_line.h"

#include <QListView>
#include <QListWidget>
#include <QRadioButton>
#include <QTabWidget>

namespace varda::test {
namespace {

class StartUpTest : public WindowTest {
protected:
    void start(const CommandLine& wishes) { carryOut(wishes, driver.window()); }

    static std::string example(const char* name) { return std::string(VARDA_DATA_FOLDER "/") + name; }

    int shownMode() { return driver.find<QTabWidget>("tabMode")->currentIndex(); }
    int pairs() { return driver.find<QListView>("lstSimReceive")->model()->rowCount(); }
    int scenarioLines() { return driver.find<QListWidget>("lstSchedule")->count(); }
};

TEST_F(StartUpTest, WithoutWishesLeavesTheWindowAsItStarts) {
    start({});
    EXPECT_EQ(text("cbPort"), "COM1");
    EXPECT_EQ(text("cbBaudRate"), "9600");
    EXPECT_EQ(text("cmdPortOpen"), "Open Port");
    EXPECT_FALSE(driver.isEnabled("cmdPortOpen"));
    EXPECT_EQ(shownMode(), 0);
    EXPECT_EQ(pairs(), 0);
    EXPECT_EQ(scenarioLines(), 0);
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(StartUpTest, FillsThePortSettingsAndOpensNothingByItself) {
    CommandLine wishes;
    wishes.port = line.path();
    wishes.baudRate = "57600";
    wishes.dataBits = "7";
    wishes.stopBits = "2";
    wishes.parity = "EVEN";
    start(wishes);
    EXPECT_EQ(text("cbPort"), line.path());
    EXPECT_EQ(text("cbBaudRate"), "57600");
    EXPECT_EQ(text("cbDataBit"), "7");
    EXPECT_EQ(text("cbStopBit"), "2");
    EXPECT_EQ(text("cbParityBit"), "EVEN");
    EXPECT_FALSE(driver.isEnabled("cmdPortOpen"));
}

TEST_F(StartUpTest, OpensThePortAndSendsOnTheChosenPage) {
    CommandLine wishes;
    wishes.port = "VIRTUAL";
    wishes.open = true;
    wishes.mode = 2;
    start(wishes);
    EXPECT_EQ(text("cmdPortOpen"), "Close Port");
    EXPECT_EQ(shownMode(), 2);
    EXPECT_TRUE(driver.isEnabled("cmdMRDSend"));
}

TEST_F(StartUpTest, TellsWhyAPortDoesNotOpenAndGoesOn) {
    CommandLine wishes;
    wishes.port = "/dev/no-such-port";
    wishes.open = true;
    wishes.mode = 5;
    start(wishes);
    EXPECT_EQ(driver.boxText(),
              "8002 No such device: /dev/no-such-port. Check its name, and that it is plugged in.");
    EXPECT_EQ(text("cmdPortOpen"), "Open Port");
    EXPECT_EQ(shownMode(), 5);
}

TEST_F(StartUpTest, LoadsAScenario) {
    CommandLine wishes;
    wishes.scenario = example("example.scn");
    start(wishes);
    EXPECT_EQ(scenarioLines(), 3);
    EXPECT_EQ(shownMode(), 0);
}

TEST_F(StartUpTest, LoadsPreparedPairsAndShowsThem) {
    CommandLine wishes;
    wishes.packets = example("example-reads.ini");
    start(wishes);
    EXPECT_EQ(pairs(), 5);
    EXPECT_EQ(shownMode(), 4);
}

TEST_F(StartUpTest, LoadsFilesByWhatTheyHoldWhateverTheyAreCalled) {
    const TemporaryFolder folder;
    writeBytes(folder.file(notAscii), bytesOf(example("example.scn")));
    CommandLine wishes;
    wishes.files = {example("example-writes.ini"), folder.file(notAscii)};
    start(wishes);
    EXPECT_EQ(pairs(), 8);
    EXPECT_EQ(scenarioLines(), 3);
    EXPECT_EQ(shownMode(), 4);
}

TEST_F(StartUpTest, ShowsTheModeThatIsWishedWhateverIsLoaded) {
    CommandLine wishes;
    wishes.files = {example("example-reads.ini")};
    wishes.mode = 1;
    start(wishes);
    EXPECT_EQ(pairs(), 5);
    EXPECT_EQ(shownMode(), 1);
}

TEST_F(StartUpTest, AnswersNobodyWhereTheSimulationIsNotWished) {
    CommandLine wishes;
    wishes.port = "VIRTUAL";
    wishes.open = true;
    wishes.packets = example("example-reads.ini");
    start(wishes);
    EXPECT_EQ(pairs(), 5);
    EXPECT_EQ(shownMode(), 0);
    EXPECT_EQ(text("slowLine"), "Prepared pairs were loaded. Simulation shows them, and answers.");
}

TEST_F(StartUpTest, TellsOfAFileThatHoldsNothingOfThisProgram) {
    const TemporaryFolder folder;
    writeBytes(folder.file("notes.txt"), "Buy milk\n");
    CommandLine wishes;
    wishes.files = {folder.file("notes.txt")};
    start(wishes);
    EXPECT_EQ(driver.boxText(),
              '"' + folder.file("notes.txt") + "\" holds neither prepared pairs nor a scenario.");
    EXPECT_EQ(driver.boxTitle(), "Confirm");
}

} // namespace
} // namespace varda::test
