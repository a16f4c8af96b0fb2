#include "simulator/packet_builders.h"
#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <fstream>
#include <sstream>

namespace varda::test {
namespace {

class SimulationPageTest : public WindowTest {
protected:
    SimulationPageTest() { driver.click("optMode_4"); }

    QAbstractItemModel* requests() { return driver.find<QListView>("lstSimReceive")->model(); }
    QAbstractItemModel* answers() { return driver.find<QListView>("lstSimSend")->model(); }
    std::string request(int row) { return requests()->index(row, 0).data().toString().toStdString(); }
    std::string answer(int row) { return answers()->index(row, 0).data().toString().toStdString(); }
    int selectedRow(const char* list) {
        const QModelIndexList rows = driver.find<QListView>(list)->selectionModel()->selectedRows();
        return rows.isEmpty() ? -1 : rows.first().row();
    }
    int selectedRequest() { return selectedRow("lstSimReceive"); }
    int selectedAnswer() { return selectedRow("lstSimSend"); }
    QListWidget* points() { return driver.find<QListWidget>("lstSimMixed"); }
    bool isShown(const char* control) { return driver.find(control)->isVisible(); }

    void chooseRegister(const char* kind, const char* number) {
        driver.choose("cbSimReg", kind);
        driver.choose("cbSimAddress", number);
    }

    /// Prepares a pair for a bit read and adds it to the table.
    void addBitRead(const char* number, const char* length) {
        driver.choose("cbSimMode", "Bit Read");
        chooseRegister("M", number);
        driver.choose("cbSimBit", "3");
        driver.choose("cbSimLength", length);
        driver.click("cmdSimSendDataInputOK");
        driver.click("cmdSimInputOK");
    }

    void clickRow(const char* list, int row) {
        auto* const view = driver.find<QListView>(list);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                          view->visualRect(view->model()->index(row, 0)).center());
    }

    void doubleClickRow(int row) {
        auto* const view = driver.find<QListView>("lstSimReceive");
        const QPoint center = view->visualRect(view->model()->index(row, 0)).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, center);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, center);
    }

    std::string write(const char* name, const std::string& content) {
        std::string path = folder.file(name);
        std::ofstream(path) << content;
        return path;
    }

    void load(const std::string& path) {
        driver.click("cmdLoadSimPacket");
        chooseFile(path);
    }

    TemporaryFolder folder;
};

TEST_F(SimulationPageTest, StartsWithBitReadFromStation255) {
    EXPECT_EQ(driver.link().CommMode, 0xFF);
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

TEST_F(SimulationPageTest, PreparedPairIsAddedToBothLists) {
    addBitRead("0002", "2");
    ASSERT_EQ(requests()->rowCount(), 1);
    EXPECT_EQ(request(0), "FFFF2103230C02" + AppendSimPacketCheck("BIT_READ", "FFFF2103230C02"));
    EXPECT_EQ(answer(0), "FFFFA102FFFF" + AppendSimPacketCheck("BIT_READ", "FFFFA102FFFF"));
    EXPECT_TRUE(driver.isEnabled("cmdSaveSimPacket"));
    EXPECT_FALSE(driver.isEnabled("cmdSimStart"));
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
    EXPECT_EQ(requests()->rowCount(), 0);
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
    chooseFile("/proc/none/pairs.ini");
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

TEST_F(SimulationPageTest, AnotherKindEmptiesTheReadRequestAndStationsRebuildTheWrite) {
    chooseRegister("M", "0002");
    driver.choose("cbSimBit", "3");
    driver.choose("cbSimLength", "2");
    driver.choose("cbSimReg", "R");
    EXPECT_EQ(text("txtSimReceive"), "");
    driver.choose("cbSimMode", "Bit Write");
    chooseRegister("M", "0012");
    driver.choose("cbSimBit", "3");
    driver.click("optSimOnOff_0");
    driver.click("cmdSimAddListBox");
    driver.choose("cbSimDA", "1");
    EXPECT_EQ(text("txtSimReceive").substr(0, 14), "01FF2201C30CFF");
    EXPECT_EQ(text("txtSimSend").substr(0, 10), "01FFA20100");
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

class ResponderOnALineTest : public SimulationPageTest {
protected:
    ResponderOnALineTest() {
        openLine();
        addBitRead("0002", "2");
        addBitRead("0003", "1");
    }

    Bytes requestBytes(int row) { return bytesOfFrameText(request(row)); }
    std::string sentText(std::size_t count) {
        std::string digits;
        for (const std::uint8_t byte : sent(count)) {
            digits += QString::asprintf("%02X", byte).toStdString();
        }
        return digits;
    }
};

TEST_F(ResponderOnALineTest, RequestInOnePieceIsAnswered) {
    line.write(requestBytes(1));
    EXPECT_EQ(sentText(7), answer(1));
    EXPECT_EQ(text("txtSimRP"), request(1));
    EXPECT_EQ(text("txtSimSP"), answer(1));
    EXPECT_EQ(selectedRequest(), 1);
    EXPECT_EQ(selectedAnswer(), 1);
    EXPECT_FALSE(driver.link().InReceive);
    EXPECT_EQ(text("txtCurrentData"), "0");
}

TEST_F(ResponderOnALineTest, RequestInTwoClosePiecesIsAnswered) {
    const Bytes whole = requestBytes(0);
    line.write(Bytes(whole.begin(), whole.begin() + 4));
    runFor(std::chrono::milliseconds(80));
    line.write(Bytes(whole.begin() + 4, whole.end()));
    EXPECT_EQ(sentText(8), answer(0));
}

TEST_F(ResponderOnALineTest, RequestSplitByALongPauseIsDiscardedPieceByPiece) {
    const Bytes whole = requestBytes(0);
    line.write(Bytes(whole.begin(), whole.begin() + 4));
    runFor(std::chrono::milliseconds(400));
    line.write(Bytes(whole.begin() + 4, whole.end()));
    runFor(std::chrono::milliseconds(400));
    EXPECT_TRUE(line.readAvailable().empty());
    EXPECT_EQ(selectedRequest(), -1);
    EXPECT_EQ(selectedAnswer(), -1);
}

TEST_F(ResponderOnALineTest, UnknownRequestLeavesInReceiveSetUntilAKnownOne) {
    Bytes longer = requestBytes(0);
    longer.push_back(0);
    line.write(longer);
    runFor(std::chrono::milliseconds(400));
    EXPECT_TRUE(line.readAvailable().empty());
    EXPECT_TRUE(driver.link().InReceive);
    EXPECT_EQ(text("txtSimRP"), request(0) + "00");
    line.write(requestBytes(0));
    EXPECT_EQ(sentText(8), answer(0));
    EXPECT_FALSE(driver.link().InReceive);
}

TEST_F(ResponderOnALineTest, LowestOfEqualRequestsAnswersAlsoAfterEdits) {
    load(write("equal.ini",
               "[Information]\nTotal=3\n[Receive]\n0=AA\n1=BB\n2=BB\n[Send]\n0=01\n1=02\n2=03\n"));
    line.write({0xBB});
    EXPECT_EQ(sentText(1), "02");
    clickRow("lstSimReceive", 0);
    driver.click("cmdSimDelete");
    line.write({0xBB});
    EXPECT_EQ(sentText(1), "02");
    clickRow("lstSimReceive", 0);
    driver.click("cmdSimDelete");
    line.write({0xBB});
    EXPECT_EQ(sentText(1), "03");
}

TEST_F(ResponderOnALineTest, LowerCaseRequestOfAFileNeverMatches) {
    load(write("lower.ini", "[Information]\nTotal=1\n[Receive]\n0=aa\n[Send]\n0=01\n"));
    line.write({0xAA});
    runFor(std::chrono::milliseconds(400));
    EXPECT_TRUE(line.readAvailable().empty());
    EXPECT_EQ(text("txtSimRP"), "AA");
}

TEST_F(ResponderOnALineTest, EmptyTableDiscardsEveryRequest) {
    const Bytes known = requestBytes(0);
    clickRow("lstSimReceive", 0);
    driver.click("cmdSimClear");
    answerQuestion(true);
    line.write(known);
    runFor(std::chrono::milliseconds(400));
    EXPECT_TRUE(line.readAvailable().empty());
}

} // namespace
} // namespace varda::test
