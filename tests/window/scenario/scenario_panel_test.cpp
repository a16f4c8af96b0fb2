#include "support/ordinary_user.h"
#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QCheckBox>
#include <QFile>
#include <QListWidget>

#include <filesystem>
#include <fstream>

namespace varda::test {
namespace {

constexpr const char* bitRead = "FF FF 21 03 20 00 04 BC 4A ";
constexpr const char* wordRead = "FF FF 23 03 00 02 02 45 22 ";

class ScenarioPanelTest : public WindowTest {
protected:
    QListWidget* schedule() { return driver.find<QListWidget>("lstSchedule"); }
    int selected() { return schedule()->currentRow(); }

    void addLines(std::initializer_list<const char*> lines) {
        for (const char* const frame : lines) {
            schedule()->addItem(QString::fromLatin1(frame));
        }
        driver.find("cmdRunScenario")->setEnabled(schedule()->count() > 0);
    }

    /// How many of the controls that a run switches off are on by themselves.
    int masterControlsOn() {
        int on = driver.isEnabled("tabMode") ? 1 : 0;
        for (const char* const control :
             {"cmdAddScenario", "cmdDelScenario", "cmdLoadScenario", "cmdSaveScenario", "chkRTimer",
              "chkWTimer", "chkMRTimer", "chkMWTimer", "cmdRDSend", "cmdWDSend", "cmdMRDSend",
              "cmdMWDSend"}) {
            QWidget* const found = driver.find(control);
            const bool isInPage = driver.find("tabMode")->isAncestorOf(found);
            on += (isInPage ? found->isEnabledTo(driver.find("tabMode")) : found->isEnabled()) ? 1 : 0;
        }
        return on;
    }

    std::string write(const char* name, const std::string& content) {
        std::ofstream(folder.file(name)) << content;
        return folder.file(name);
    }

    void load(const std::string& path) {
        driver.click("cmdLoadScenario");
        chooseFile(path);
    }

    TemporaryFolder folder;
};

TEST_F(ScenarioPanelTest, AddTakesTheRequestOfTheShownPage) {
    driver.click("cmdAddScenario");
    ASSERT_EQ(schedule()->count(), 1);
    EXPECT_EQ(schedule()->item(0)->text().toStdString(), text("txtSendRData"));
    EXPECT_EQ(text("txtNumberOfScenario"), "1");
    EXPECT_TRUE(driver.isEnabled("cmdRunScenario"));
    driver.click("optMode_1");
    driver.click("cmdAddScenario");
    EXPECT_EQ(schedule()->item(1)->text().toStdString(), text("txtSendWData"));
    driver.click("optMode_2");
    driver.click("cmdAddScenario");
    EXPECT_EQ(schedule()->count(), 2); // nothing has been built on that page yet
}

TEST_F(ScenarioPanelTest, NumberOfLinesStartsWithZero) { EXPECT_EQ(text("txtNumberOfScenario"), "0"); }

TEST_F(ScenarioPanelTest, AddOfAnEmptyRequestStillSetsDelTheCountAndRun) {
    driver.click("optMode_2"); // nothing has been built on that page yet
    driver.find("cmdDelScenario")->setEnabled(false);
    paste("txtNumberOfScenario", "9");
    driver.click("cmdAddScenario");
    EXPECT_TRUE(driver.isEnabled("cmdDelScenario"));
    EXPECT_EQ(text("txtNumberOfScenario"), "0");
    EXPECT_FALSE(driver.isEnabled("cmdRunScenario"));
    schedule()->addItem(QString::fromLatin1(bitRead));
    driver.click("cmdAddScenario");
    EXPECT_EQ(text("txtNumberOfScenario"), "1");
    EXPECT_TRUE(driver.isEnabled("cmdRunScenario"));
}

TEST_F(ScenarioPanelTest, RepeatedDeletesEmptyTheList) {
    addLines({bitRead, wordRead});
    schedule()->setCurrentRow(0);
    driver.click("cmdDelScenario");
    EXPECT_EQ(selected(), 0);
    driver.click("cmdDelScenario");
    EXPECT_EQ(schedule()->count(), 0);
    EXPECT_FALSE(driver.isEnabled("cmdDelScenario"));
    EXPECT_FALSE(driver.isEnabled("cmdRunScenario"));
    EXPECT_EQ(text("txtNumberOfScenario"), "0");
}

TEST_F(ScenarioPanelTest, RunNeedsAnOpenPort) {
    addLines({bitRead});
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.boxText(), "Please Port Open !!");
    EXPECT_EQ(driver.boxTitle(), "Warning");
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
}

TEST_F(ScenarioPanelTest, RunWaitsForTheReadAndTheWritePageAlone) {
    addLines({bitRead});
    openLine();
    driver.find<QCheckBox>("chkMRTimer")->setChecked(true);
    driver.find<QCheckBox>("chkWTimer")->setChecked(true);
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.boxText(), "Currently, Program is communicating with PLC. Please turn off Check Box !!");
    driver.closeBox();
    driver.find<QCheckBox>("chkWTimer")->setChecked(false);
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0xC0});
    EXPECT_FALSE(driver.find<QCheckBox>("chkMRTimer")->isChecked());
}

TEST_F(ScenarioPanelTest, LinesGoRoundWithTheSelectionOneAhead) {
    addLines({"01 FF 22 01", "02 FF 22 02", "03 FF 22 03"});
    paste("txtScnPeriod", "20");
    openLine();
    driver.click("cmdRunScenario");
    EXPECT_EQ(masterControlsOn(), 0);
    EXPECT_TRUE(driver.isEnabled("cmdStopScenario"));
    EXPECT_EQ(selected(), 0);
    const Bytes bytes = sent(20);
    driver.click("cmdStopScenario");
    ASSERT_GE(bytes.size(), 20U);
    for (std::size_t frame = 0; frame < 5; ++frame) {
        EXPECT_EQ(bytes[4 * frame], frame % 3 + 1);
    }
    const int shown = std::stoi(text("txtScnSend").substr(0, 2));
    EXPECT_EQ(selected(), shown % 3);
}

TEST_F(ScenarioPanelTest, StopSwitchesEverythingBack) {
    addLines({bitRead});
    openLine();
    driver.click("optRead_1");
    driver.click("cmdRunScenario");
    driver.click("cmdStopScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0x23});
    EXPECT_TRUE(driver.isEnabled("tabMode"));
    EXPECT_EQ(masterControlsOn(), 13);
    EXPECT_TRUE(driver.isEnabled("cmdRunScenario"));
    EXPECT_FALSE(driver.isEnabled("cmdStopScenario"));
}

TEST_F(ScenarioPanelTest, AnswerIsShownInThePanel) {
    addLines({"FF FF 24 03 00 02 02 45 22"});
    paste("txtScnPeriod", "400");
    openLine();
    driver.click("cmdRunScenario");
    sent(9);
    line.write({1, 2, 3, 4, 5, 6, 7});
    EXPECT_TRUE(showsSoon("txtScnReceive", "01 02 03 04 05 06 07 "));
    EXPECT_EQ(driver.link().RxExpected, 7);
}

TEST_F(ScenarioPanelTest, MixedLineWaitsForWhatTheLineBeforeItExpected) {
    addLines({bitRead, "FF FF 25 02 00 42 00 00 00"});
    paste("txtScnPeriod", "20");
    openLine();
    driver.click("cmdRunScenario");
    sent(18);
    EXPECT_EQ(driver.link().RxExpected, 10);
}

TEST_F(ScenarioPanelTest, SilenceStopsTheRunAndIsToldOnTheWritePage) {
    addLines({bitRead});
    paste("txtReadTimerValue", "100");
    openLine();
    driver.click("cmdRunScenario");
    EXPECT_TRUE(showsSoon("txtWStatus", "No Answer From PLC"));
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
    EXPECT_FALSE(driver.isEnabled("cmdStopScenario"));
}

TEST_F(ScenarioPanelTest, RunStartsFromNoSilenceAndNothingAwaited) {
    addLines({bitRead});
    paste("txtScnPeriod", "0"); // sends nothing
    openLine();
    driver.link().WaitTicks = 13; // of a request that nobody answered
    driver.link().WaitingAnswer = true;
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.link().WaitTicks, 0);
    EXPECT_FALSE(driver.link().WaitingAnswer);
}

TEST_F(ScenarioPanelTest, PeriodThatIsNoNumberIsReportedWithEverythingSwitchedBack) {
    addLines({bitRead});
    paste("txtScnPeriod", "soon");
    openLine();
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
    EXPECT_TRUE(driver.isEnabled("tabMode"));
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
}

TEST_F(ScenarioPanelTest, NegativePeriodIsReported) {
    addLines({bitRead});
    paste("txtScnPeriod", "-1");
    openLine();
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.boxText(), "Run-time error '380':\n\nInvalid property value");
    EXPECT_TRUE(driver.isEnabled("tabMode"));
}

TEST_F(ScenarioPanelTest, PeriodOfZeroSendsNothingUntilStop) {
    addLines({bitRead});
    paste("txtScnPeriod", "0");
    openLine();
    driver.click("cmdRunScenario");
    runFor(std::chrono::milliseconds(100));
    EXPECT_TRUE(line.readAvailable().empty());
    EXPECT_EQ(driver.link().CommMode, Mode{0xC0});
    driver.click("cmdStopScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
}

TEST_F(ScenarioPanelTest, StopAlwaysStopsAlsoWithABadPeriod) {
    addLines({bitRead});
    openLine();
    driver.click("cmdRunScenario");
    paste("txtScnPeriod", "abc");
    driver.click("cmdStopScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
    EXPECT_TRUE(driver.isEnabled("tabMode"));
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
}

TEST_F(ScenarioPanelTest, LineThatIsNoFrameStopsTheRunWithOneReport) {
    for (const char* const wrong : {"hello world", "01 02", "zz zz zz zz zz zz zz"}) {
        schedule()->clear();
        addLines({wrong});
        paste("txtScnPeriod", "10");
        if (text("cmdPortOpen") == "Open Port") {
            openLine();
        }
        driver.click("cmdRunScenario");
        ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; })) << wrong;
        EXPECT_TRUE(driver.boxText().starts_with("Run-time error")) << wrong;
        EXPECT_TRUE(driver.isEnabled("tabMode")) << wrong;
        driver.closeBox();
        runFor(std::chrono::milliseconds(30));
        EXPECT_EQ(driver.box(), nullptr) << wrong;
    }
}

TEST_F(ScenarioPanelTest, EditingStaysOffBehindARunOnTheSimulationPage) {
    addLines({bitRead});
    openLine();
    driver.click("optMode_4");
    driver.click("cmdRunScenario");
    driver.click("cmdStopScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0xFF});
    EXPECT_FALSE(driver.isEnabled("cmdAddScenario"));
    EXPECT_FALSE(driver.isEnabled("cmdLoadScenario"));
}

TEST_F(ScenarioPanelTest, RunEndsMonitoringFirst) {
    addLines({bitRead});
    openLine();
    driver.click("optMode_5");
    driver.click("cmdMonStart");
    driver.click("cmdRunScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0xC0});
    EXPECT_TRUE(driver.find("chkMonLog")->isEnabledTo(driver.find("tabMode")));
    driver.click("cmdStopScenario");
    EXPECT_EQ(driver.link().CommMode, Mode{0x80});
}

TEST_F(ScenarioPanelTest, ModeClickLetsTheSendingGoOn) {
    addLines({"01 FF 22 01"});
    paste("txtScnPeriod", "20");
    openLine();
    driver.click("cmdRunScenario");
    sent(4);
    driver.click("optMode_1");
    EXPECT_EQ(driver.link().CommMode, Mode{0x22});
    EXPECT_GE(sent(8).size(), 8U);
}

TEST_F(ScenarioPanelTest, FiveThousandLinesAreSavedAndLoaded) {
    std::string content = "[Information]\r\nTotal=5000\r\n[Scenario]\r\n";
    for (int index = 0; index < 5000; ++index) {
        content += "Scenario" + std::to_string(index) + "=" + bitRead + "\r\n";
    }
    load(write("long.scn", content));
    EXPECT_EQ(schedule()->count(), 5000);
    driver.click("cmdSaveScenario");
    chooseFile(folder.file("again.scn"));
    EXPECT_EQ(selected(), 4999);
}

TEST_F(ScenarioPanelTest, CancelledDialogsDoNothing) {
    addLines({bitRead});
    for (const char* const button : {"cmdLoadScenario", "cmdSaveScenario"}) {
        driver.click(button);
        auto* const dialog = driver.window().findChild<QFileDialog*>();
        ASSERT_NE(dialog, nullptr);
        EXPECT_FALSE(
            dialog->testOption(QFileDialog::DontConfirmOverwrite)); // an existing file is asked about
        EXPECT_EQ(dialog->nameFilters(), QStringList{QStringLiteral("*.scn")});
        EXPECT_EQ(dialog->directory().path().toStdString(), driver.programFolder() + "/Data");
        dialog->reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_EQ(schedule()->count(), 1);
}

TEST_F(ScenarioPanelTest, HangUpStopsTheRun) {
    addLines({bitRead});
    openLine();
    driver.click("cmdRunScenario");
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_TRUE(driver.isEnabled("tabMode"));
    EXPECT_EQ(driver.link().CommMode, Mode{0x21});
    EXPECT_EQ(text("cmdPortOpen"), "Open Port");
}

TEST_F(ScenarioPanelTest, ScenarioIsSavedAndLoadedAgain) {
    addLines({bitRead, wordRead});
    driver.click("cmdSaveScenario");
    chooseFile(folder.file("round"));
    EXPECT_EQ(text("txtSimStatus"), "Saved Scenario Data completely !!!");
    EXPECT_EQ(selected(), 1);
    schedule()->clear();
    load(folder.file("round.scn"));
    ASSERT_EQ(schedule()->count(), 2);
    EXPECT_EQ(text("txtNumberOfScenario"), "2");
    EXPECT_TRUE(driver.isEnabled("cmdRunScenario"));
}

TEST_F(ScenarioPanelTest, IncompleteFileLeavesTheCountFieldAsItWas) {
    addLines({bitRead});
    driver.click("cmdAddScenario");
    load(write("short.scn", "[Information]\nTotal=3\n[Scenario]\nScenario0=01\nScenario1=02\n"));
    EXPECT_EQ(schedule()->count(), 2);
    EXPECT_EQ(text("txtNumberOfScenario"), "2"); // of the list before
}

TEST_F(ScenarioPanelTest, DamagedFilesAreToldWithAnEmptyList) {
    for (const std::string& content :
         {std::string(), std::string("[Information]\nTotal=0\n"), std::string("[Information]\nTotal=x\n"),
          std::string(5000, '\xFF'), std::string(100, '\0')}) {
        addLines({bitRead});
        load(write("damaged.scn", content));
        EXPECT_EQ(schedule()->count(), 0);
        EXPECT_EQ(driver.boxText(), "Scenario Data is incorrect or corrupted. Please Check Data.");
        EXPECT_EQ(driver.boxTitle(), "Confirm");
        driver.closeBox();
    }
}

TEST_F(ScenarioPanelTest, FileThatCannotBeReadIsToldWithTheReason) {
    const std::string path = write("locked.scn", "[Information]\nTotal=1\n[Scenario]\nScenario0=01\n");
    QFile::setPermissions(QString::fromStdString(path), QFile::WriteOwner);
    driver.click("cmdLoadScenario");
    const OrdinaryUser user;
    chooseFile(path);
    EXPECT_EQ(driver.boxText(), '"' + path + "\" could not be read: permission denied.");
    EXPECT_EQ(driver.boxTitle(), "Error");
}

TEST_F(ScenarioPanelTest, StatusIsEmptiedWhenALoadOrASaveBegins) {
    addLines({bitRead});
    paste("txtSimStatus", "Saved completely !!!");
    driver.click("cmdSaveScenario");
    EXPECT_EQ(text("txtSimStatus"), "Saved completely !!!"); // nothing was chosen yet
    chooseFileToReplace(write("picture.scn", std::string(100, '\0')));
    EXPECT_EQ(driver.boxTitle(), "Error");
    EXPECT_EQ(text("txtSimStatus"), "");
    driver.closeBox();
    paste("txtSimStatus", "Saved completely !!!");
    load(write("empty.scn", ""));
    EXPECT_EQ(text("txtSimStatus"), "");
}

TEST_F(ScenarioPanelTest, FileInUtf16IsLoadedAndSavedInTheSameForm) {
    const auto inUtf16 = [](const std::string& text) {
        std::string bytes = "\xFF\xFE";
        for (const char character : text) {
            bytes += {character, '\0'};
        }
        return bytes;
    };
    const std::string path =
        write("wide.scn", inUtf16("[Information]\r\nTotal=1\r\n[Scenario]\r\nScenario0=01 02\r\n"));
    load(path);
    ASSERT_EQ(schedule()->count(), 1);
    EXPECT_EQ(schedule()->item(0)->text(), QStringLiteral("01 02"));
    addLines({"03 04"});
    driver.click("cmdSaveScenario");
    chooseFileToReplace(path);
    EXPECT_EQ(bytesOf(path), inUtf16("[Information]\r\nTotal=2\r\n[Scenario]\r\nScenario0=01 02\r\n"
                                     "Scenario1=03 04\r\n"));
}

TEST_F(ScenarioPanelTest, FileInAFolderThatMayNotBeWrittenIsWrittenInPlaceAfterAQuestion) {
    addLines({bitRead});
    const std::string path = write("shared.scn", "old");
    std::filesystem::permissions(path, std::filesystem::perms(0666));
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));
    const OrdinaryUser user;
    for (const bool yes : {false, true}) {
        driver.click("cmdSaveScenario");
        chooseFileToReplace(path);
        EXPECT_EQ(driver.boxText(),
                  '"' + path +
                      "\" cannot be replaced in one step: its folder takes no new file. Do you "
                      "want to write into the file itself? If that is interrupted, the file is "
                      "damaged.");
        EXPECT_EQ(driver.boxTitle(), "Confirm");
        EXPECT_EQ(bytesOf(path), "old");
        answerQuestion(yes);
        EXPECT_EQ(text("txtSimStatus"), yes ? "Saved Scenario Data completely !!!" : "");
        EXPECT_EQ(bytesOf(path).starts_with("old\r\n[Information]\r\nTotal=1"), yes) << bytesOf(path);
    }
}

} // namespace
} // namespace varda::test
