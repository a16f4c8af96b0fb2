#include "support/ordinary_user.h"
#include "window/simulator/simulation_page_fixture.h"

#include <QFile>

#include <filesystem>

namespace varda::test {
namespace {

TEST_F(SimulationPageTest, PreparedPairIsAddedToBothLists) {
    addBitRead("0002", "2");
    ASSERT_EQ(requests()->rowCount(), 1);
    EXPECT_EQ(request(0), "FFFF2103230C02" + AppendSimPacketCheck("BIT_READ", "FFFF2103230C02"));
    EXPECT_EQ(answer(0), "FFFFA102FFFF" + AppendSimPacketCheck("BIT_READ", "FFFFA102FFFF"));
    EXPECT_TRUE(driver.isEnabled("cmdSaveSimPacket"));
    EXPECT_FALSE(driver.isEnabled("cmdSimStart"));
}

TEST_F(SimulationPageTest, SelectingOneListSelectsTheOther) {
    addBitRead("0002", "2");
    addBitRead("0003", "2");
    clickRow("lstSimReceive", 1);
    EXPECT_EQ(selectedAnswer(), 1);
    clickRow("lstSimSend", 0);
    EXPECT_EQ(selectedRequest(), 0);
    EXPECT_TRUE(driver.isEnabled("cmdSimDelete"));
    EXPECT_TRUE(driver.isEnabled("cmdSimClear"));
}

TEST_F(SimulationPageTest, ListsTellTheWholePacketThatTheyShowTheBeginningOf) {
    addBitRead("0002", "40");
    const QString whole = answers()->index(0, 0).data(Qt::ToolTipRole).toString();
    EXPECT_EQ(whole.count(QLatin1Char('\n')), 1); // 46 bytes, 32 in a row
    EXPECT_EQ(QString(whole).remove(QLatin1Char(' ')).remove(QLatin1Char('\n')).toStdString(), answer(0));
}

TEST_F(SimulationPageTest, RepeatedDeletesEmptyTheTable) {
    addBitRead("0002", "2");
    addBitRead("0003", "2");
    clickRow("lstSimReceive", 0);
    driver.click("cmdSimDelete");
    EXPECT_EQ(requests()->rowCount(), 1);
    EXPECT_EQ(selectedRequest(), 0);
    driver.click("cmdSimDelete");
    EXPECT_EQ(requests()->rowCount(), 0);
    EXPECT_EQ(answers()->rowCount(), 0);
    EXPECT_FALSE(driver.isEnabled("cmdSaveSimPacket"));
    EXPECT_FALSE(driver.isEnabled("cmdSimStart"));
}

TEST_F(SimulationPageTest, ClearingAsksFirst) {
    addBitRead("0002", "2");
    clickRow("lstSimReceive", 0);
    driver.click("cmdSimClear");
    EXPECT_EQ(driver.boxText(), "Do you want to clear?");
    answerQuestion(false);
    EXPECT_EQ(requests()->rowCount(), 1);
    driver.click("cmdSimClear");
    answerQuestion(true);
    EXPECT_EQ(requests()->rowCount(), 0);
    EXPECT_EQ(text("txtSimReceive"), "");
    EXPECT_EQ(text("txtSimSendData"), "");
}

TEST_F(SimulationPageTest, DoubleClickReloadsABitRead) {
    addBitRead("0002", "2");
    driver.choose("cbSimMode", "Word Write");
    doubleClickRow(0);
    EXPECT_EQ(text("cbSimMode"), "Bit Read");
    EXPECT_EQ(text("cbSimReg"), "M");
    EXPECT_EQ(text("cbSimBit"), "3");
    EXPECT_EQ(text("cbSimLength"), "2");
    EXPECT_EQ(text("txtSimSendData"), "FFFF");
    EXPECT_EQ(text("txtSimReceive"), request(0));
    EXPECT_EQ(text("txtSimSend"), answer(0));
}

TEST_F(SimulationPageTest, DoubleClickReloadsABitWriteWithItsPoints) {
    load(write("pairs.ini", "[Information]\r\nTotal=1\r\n[Receive]\r\n0=0102220223"
                            "0CFF000000\r\n[Send]\r\n0=0102A201000000\r\n"));
    doubleClickRow(0);
    EXPECT_EQ(text("cbSimMode"), "Bit Write");
    EXPECT_EQ(text("cbSimDA"), "1");
    EXPECT_EQ(text("cbSimSA"), "2");
    ASSERT_EQ(points()->count(), 2);
    EXPECT_TRUE(points()->item(0)->text().endsWith(QStringLiteral("ON")));
    EXPECT_TRUE(points()->item(1)->text().endsWith(QStringLiteral("OFF")));
    EXPECT_EQ(text("cbSimBit"), "5");
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(SimulationPageTest, DoubleClickOnAMixedRequestIsNotSupported) {
    load(write("pairs.ini",
               "[Information]\nTotal=1\n[Receive]\n0=FFFF25020142AAAA\n[Send]\n0=FFFFA502AAAA\n"));
    doubleClickRow(0);
    EXPECT_EQ(driver.boxText(), "Not Support in this version !!");
    EXPECT_EQ(driver.boxTitle(), "Confirm");
}

TEST_F(SimulationPageTest, TableIsSavedAndLoadedAgain) {
    addBitRead("0002", "2");
    addBitRead("0003", "1");
    const std::string first = request(0);
    driver.click("cmdSaveSimPacket");
    chooseFile(folder.file("pairs"));
    EXPECT_EQ(text("txtSimStatus"), "Saved completely !!!");
    EXPECT_EQ(selectedRequest(), 1);
    EXPECT_EQ(selectedAnswer(), 1);
    clickRow("lstSimReceive", 0);
    driver.click("cmdSimClear");
    answerQuestion(true);
    load(folder.file("pairs.ini"));
    ASSERT_EQ(requests()->rowCount(), 2);
    EXPECT_EQ(request(0), first);
    EXPECT_TRUE(driver.isEnabled("cmdSimStart"));
}

TEST_F(SimulationPageTest, FileWithoutATotalLeavesTheTable) {
    addBitRead("0002", "2");
    load(write("other.ini", "[Something]\nelse=1\n"));
    EXPECT_EQ(requests()->rowCount(), 1);
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(SimulationPageTest, FileThatIsNoTextIsToldAndLeavesTheTable) {
    addBitRead("0002", "2");
    for (const std::string& noText : {std::string(100, '\0'), std::string("PK\3\4")}) {
        load(write("picture.ini", noText));
        EXPECT_EQ(requests()->rowCount(), 1);
        EXPECT_EQ(driver.boxText(), "Data is incorrect or corrupted. Please Check Data.");
        EXPECT_EQ(driver.boxTitle(), "Confirm");
        driver.closeBox();
    }
}

TEST_F(SimulationPageTest, FileThatCannotBeReadIsToldWithTheReason) {
    const std::string path = write("locked.ini", "[Information]\nTotal=0\n");
    QFile::setPermissions(QString::fromStdString(path), QFile::WriteOwner);
    driver.click("cmdLoadSimPacket");
    const OrdinaryUser user;
    chooseFile(path);
    EXPECT_EQ(driver.boxText(), '"' + path + "\" could not be read: permission denied.");
    EXPECT_EQ(driver.boxTitle(), "Error");
}

TEST_F(SimulationPageTest, StatusIsEmptiedWhenALoadOrASaveBegins) {
    addBitRead("0002", "2");
    paste("txtSimStatus", "Saved completely !!!");
    load(write("empty.ini", "[Information]\nTotal=0\n"));
    EXPECT_EQ(text("txtSimStatus"), "");
    driver.closeBox();
    addBitRead("0002", "2");
    paste("txtSimStatus", "Saved completely !!!");
    driver.click("cmdSaveSimPacket");
    EXPECT_EQ(text("txtSimStatus"), "Saved completely !!!"); // nothing was chosen yet
    chooseFileToReplace(write("picture.ini", std::string(100, '\0')));
    EXPECT_EQ(driver.boxTitle(), "Error");
    EXPECT_EQ(text("txtSimStatus"), "");
}

TEST_F(SimulationPageTest, TotalOfZeroEmptiesTheTableAndSaysSo) {
    addBitRead("0002", "2");
    load(write("empty.ini", "[Information]\nTotal=0\n"));
    EXPECT_EQ(requests()->rowCount(), 0);
    EXPECT_EQ(driver.boxText(), "Data is incorrect or corrupted. Please Check Data.");
    EXPECT_EQ(driver.boxTitle(), "Confirm");
}

TEST_F(SimulationPageTest, TotalThatIsNoNumberIsReportedWithTheTableEmpty) {
    addBitRead("0002", "2");
    load(write("bad.ini", "[Information]\nTotal=many\n"));
    EXPECT_EQ(requests()->rowCount(), 0);
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
}

TEST_F(SimulationPageTest, TableWithAMissingAnswerKeepsWhatWasWrittenAndIsReported) {
    load(write("half.ini", "[Information]\nTotal=2\n[Receive]\n0=AA\n1=BB\n[Send]\n0=CC\n"));
    EXPECT_EQ(requests()->rowCount(), 2);
    EXPECT_EQ(answers()->rowCount(), 1);
    addBitRead("0002", "2");
    EXPECT_EQ(requests()->rowCount(), 3);
    const std::string path = folder.file("again.ini");
    driver.click("cmdSaveSimPacket");
    chooseFile(path);
    EXPECT_EQ(driver.boxText(), "Run-time error '9':\n\nSubscript out of range");
    std::stringstream saved;
    saved << std::ifstream(path).rdbuf();
    EXPECT_NE(saved.str().find("Total=3"), std::string::npos);
}

TEST_F(SimulationPageTest, SaveIntoAFolderThatIsNoneGivesOneBox) {
    addBitRead("0002", "2");
    driver.click("cmdSaveSimPacket");
    chooseFile(folder.file("none/pairs.ini"));
    ASSERT_NE(driver.box(), nullptr);
    EXPECT_EQ(driver.boxTitle(), "Error");
    EXPECT_EQ(text("txtSimStatus"), "");
}

TEST_F(SimulationPageTest, CancelledDialogDoesNothing) {
    addBitRead("0002", "2");
    driver.click("cmdLoadSimPacket");
    auto* const dialog = driver.window().findChild<QFileDialog*>();
    ASSERT_NE(dialog, nullptr);
    dialog->reject();
    EXPECT_EQ(requests()->rowCount(), 1);
}

TEST_F(SimulationPageTest, FocusAloneSelectsNoPair) {
    addBitRead("0002", "2");
    driver.find("lstSimReceive")->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(selectedRequest(), -1);
    EXPECT_EQ(selectedAnswer(), -1);
    EXPECT_FALSE(driver.isEnabled("cmdSimDelete"));
    QTest::keyClick(driver.find("lstSimReceive"), Qt::Key_Space);
    QTest::keyClick(driver.find("lstSimReceive"), Qt::Key_Down);
}

TEST_F(SimulationPageTest, ReloadingAsksNothingThoughPointsAreCollected) {
    addBitRead("0002", "2");
    driver.choose("cbSimMode", "Bit Write");
    chooseRegister("M", "0012");
    driver.choose("cbSimBit", "3");
    driver.click("optSimOnOff_0");
    driver.click("cmdSimAddListBox");
    doubleClickRow(0);
    EXPECT_EQ(driver.box(), nullptr);
    EXPECT_EQ(text("cbSimMode"), "Bit Read");
    EXPECT_EQ(points()->count(), 0);
    EXPECT_EQ(requests()->rowCount(), 1);
}

TEST_F(SimulationPageTest, ReloadedTimerBitsContinueTheirRun) {
    load(write("tc.ini",
               "[Information]\nTotal=1\n[Receive]\n0=FFFF2201EF2CFF0000\n[Send]\n0=FFFFA201000000\n"));
    doubleClickRow(0);
    EXPECT_EQ(text("cbSimReg"), "TC");
    EXPECT_EQ(points()->item(0)->text().toStdString(), "WT_BIT \t\tTC254.15\tON");
    EXPECT_EQ(text("cbSimAddress"), "0255");
}

TEST_F(SimulationPageTest, SaveOfATableWithAMissingAnswerSelectsItsRequest) {
    load(write("half.ini", "[Information]\nTotal=2\n[Receive]\n0=AA\n1=BB\n[Send]\n0=CC\n"));
    addBitRead("0002", "2");
    clickRow("lstSimReceive", 0);
    driver.click("cmdSimDelete");
    clickRow("lstSimReceive", 0);
    driver.click("cmdSimDelete");
    ASSERT_EQ(requests()->rowCount(), 1);
    ASSERT_EQ(answers()->rowCount(), 0);
    driver.click("cmdSaveSimPacket");
    chooseFile(folder.file("again.ini"));
    EXPECT_EQ(driver.boxText(), "Run-time error '9':\n\nSubscript out of range");
    EXPECT_EQ(selectedRequest(), 0);
}

TEST_F(SimulationPageTest, FileInAFolderThatMayNotBeWrittenIsWrittenInPlaceAfterAQuestion) {
    addBitRead("0002", "2");
    const std::string path = write("shared.ini", "old");
    std::filesystem::permissions(path, std::filesystem::perms(0666));
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));
    const OrdinaryUser user;
    for (const bool yes : {false, true}) {
        driver.click("cmdSaveSimPacket");
        chooseFileToReplace(path);
        EXPECT_NE(driver.boxText().find('"' + path + "\" cannot be replaced in one step"), std::string::npos);
        EXPECT_EQ(driver.boxTitle(), "Confirm");
        answerQuestion(yes);
        EXPECT_EQ(text("txtSimStatus"), yes ? "Saved completely !!!" : "");
        EXPECT_EQ(bytesOf(path).starts_with("old\r\n[Information]\r\nTotal=1"), yes) << bytesOf(path);
    }
    EXPECT_EQ(selectedRequest(), 0);
}

} // namespace
} // namespace varda::test
