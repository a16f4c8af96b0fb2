#include "support/ordinary_user.h"
#include "window/scenario/scenario_panel_fixture.h"

#include <QFile>

#include <filesystem>

namespace varda::test {
namespace {

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
