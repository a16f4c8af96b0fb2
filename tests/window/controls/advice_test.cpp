#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>

#include <array>
#include <fstream>

namespace varda::test {
namespace {

/// What stands below the text of a report: the field or the point, and what helps.
class AdviceTest : public WindowTest {
protected:
    std::string advice() {
        return driver.box() != nullptr ? driver.box()->informativeText().toStdString() : "no box";
    }

    /// Closes the box after a look at its text, which stays what it is.
    std::string takeAdvice(const char* number) {
        EXPECT_TRUE(driver.boxText().starts_with(std::string("Run-time error '") + number + "':\n\n"))
            << driver.boxText();
        std::string shown = advice();
        driver.closeBox();
        return shown;
    }

    void addWordPoint(const char* kind, const char* number, const char* count) {
        driver.click("optMRead_1");
        driver.choose("cbMRegister", kind);
        driver.choose("cbMRegAddress", number);
        driver.choose("cbMRLength", count);
        driver.click("cmdMRAdd");
    }
};

TEST_F(AdviceTest, NamesTheFieldThatIsNoNumber) {
    driver.choose("cbRegister", "M");
    paste("cbRegAddress", "abc");
    EXPECT_EQ(takeAdvice("13"), "Register number \"abc\" is no number. Type digits only.");
    driver.choose("cbRegAddress", "0001");
    paste("cbRegBit", "x");
    EXPECT_EQ(takeAdvice("13"), "Bit number \"x\" is no number. Type digits only.");
    paste("cbRegAddress", "99999");
    EXPECT_EQ(takeAdvice("6"), "Register number \"99999\" is out of range: -32768 to 32767.");
    driver.click("optRead_1");
    driver.choose("cbRegister", "SR");
    paste("cbRegAddress", "32000");
    EXPECT_EQ(takeAdvice("6"), "Register number \"32000\" is out of range. Choose one from the list.");
}

TEST_F(AdviceTest, NamesThePointOfATwoLetterKind) {
    driver.click("optMode_2");
    addWordPoint("SR", "000", "1");
    driver.find("cmdMRDSend")->setEnabled(true);
    driver.click("cmdMRDSend");
    EXPECT_EQ(driver.boxText(), "Run-time error '13':\n\nType mismatch");
    EXPECT_EQ(
        takeAdvice("13"),
        "SR 000: mixed requests carry no two-letter kind. Remove the point; the single pages carry it.");
}

TEST_F(AdviceTest, NamesThePointThatMakesARequestTooLong) {
    driver.click("optMode_2");
    addWordPoint("W", "0000", "120");
    addWordPoint("W", "0200", "120");
    driver.find("cmdMRDSend")->setEnabled(true);
    driver.click("cmdMRDSend");
    EXPECT_EQ(takeAdvice("6"),
              "W 0200: with this point a number or the request is too large. Remove points, or "
              "lower their counts.");
}

TEST_F(AdviceTest, NamesAWordWithoutAValue) {
    driver.click("optMode_3");
    driver.click("optMWrite_1");
    driver.choose("cbMWRegister", "W");
    driver.choose("cbMWRegAddress", "0007");
    driver.click("cmdMWAdd"); // HEX takes the text as it is
    driver.find("cmdMWDSend")->setEnabled(true);
    driver.click("cmdMWDSend");
    EXPECT_EQ(takeAdvice("13"), "W 0007: the point has no value. Remove it, and add it with one.");
    driver.click("chkHexDec");
    driver.click("cmdMWAdd");
    EXPECT_EQ(takeAdvice("13"), "Value is empty. Fill it in.");
}

TEST_F(AdviceTest, NamesTheLineAndThePeriodOfAScenario) {
    driver.find<QListWidget>("lstSchedule")->addItem(QStringLiteral("FF zz 03 "));
    driver.find("cmdRunScenario")->setEnabled(true);
    paste("txtScnPeriod", "20");
    openLine();
    driver.click("cmdRunScenario");
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_EQ(takeAdvice("13"),
              "\"FF zz 03 \" is no frame: groups of two hexadecimal digits. Remove this line of "
              "the scenario.");
    paste("txtScnPeriod", "70000");
    driver.click("cmdRunScenario");
    EXPECT_EQ(takeAdvice("380"), "Send Period \"70000\" is out of range: 0 to 65535 milliseconds.");
    paste("txtScnPeriod", "soon");
    driver.click("cmdRunScenario");
    EXPECT_EQ(takeAdvice("13"), "Send Period \"soon\" is no number. Type digits only.");
}

TEST_F(AdviceTest, NamesTheFieldsOfTheSimulation) {
    driver.click("optMode_4");
    driver.choose("cbSimMode", "Word Write");
    driver.choose("cbSimReg", "W");
    driver.choose("cbSimAddress", "0000");
    driver.find<QCheckBox>("chkSimHexDec")->setChecked(false);
    paste("txtSimData", "much");
    driver.click("cmdSimAddListBox");
    EXPECT_EQ(takeAdvice("13"), "Value \"much\" is no number. Type digits only.");
    driver.find<QCheckBox>("chkSimHexDec")->setChecked(true);
    driver.click("cmdSimAddListBox");
    EXPECT_EQ(takeAdvice("13"),
              "Value \"much\" is no hexadecimal number. Type 0 to 9 and A to F, or take out HEX.");
    driver.choose("cbSimMode", "Word Read");
    driver.choose("cbSimReg", "SR");
    driver.choose("cbSimLength", "1");
    paste("cbSimAddress", "32000");
    EXPECT_EQ(takeAdvice("6"), "Register number \"32000\" is out of range. Choose one from the list.");
}

TEST_F(AdviceTest, NamesTheSettingThatThePortDoesNotTake) {
    openLine();
    driver.click("cmdPortOpen");
    const std::vector<std::array<std::string, 3>> cases = {
        {"cbBaudRate", "fast",
         "Baud rate \"fast\" is no number of 1 to 2147483647. Choose one from the list."},
        {"cbDataBit", "9", "Data bits \"9\" is no number of 5 to 8. Choose one from the list."},
        {"cbStopBit", "1.5", "Stop bits \"1.5\" is no number of 1 to 2. Choose one from the list."},
        {"cbParityBit", "MARK", "Parity \"MARK\" is none of NONE, EVEN and ODD. Choose it from the list."},
        {"cbBaudRate", "96,00", "A setting of the port holds a comma. Choose it from its list."}};
    for (const auto& [list, bad, expected] : cases) {
        const std::string before = text(list.c_str());
        paste(list.c_str(), bad);
        driver.click("cmdPortOpen");
        EXPECT_EQ(driver.boxText(), "380 Invalid property value");
        EXPECT_EQ(driver.boxTitle(), "Error");
        EXPECT_EQ(advice(), expected);
        driver.closeBox();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        paste(list.c_str(), before);
    }
}

TEST_F(AdviceTest, NamesWhatIsWrongInAFile) {
    const TemporaryFolder folder;
    std::ofstream(folder.file("bad.ini")) << "[Information]\nTotal=many\n";
    driver.click("optMode_4");
    driver.click("cmdLoadSimPacket");
    chooseFile(folder.file("bad.ini"));
    EXPECT_EQ(takeAdvice("13"),
              "Total of the file is \"many\", no number of pairs. Mend the file, or choose another.");
}

/// Files that are saved and loaded: what the system says of them, and what helps.
class FileAdviceTest : public AdviceTest {
protected:
    /// Asks for a file by a button, and answers with a path. @return what stands below the text of the box
    std::string adviceOn(const char* button, const std::string& path) {
        driver.click(button);
        auto* const dialog = driver.window().findChild<QFileDialog*>();
        if (dialog == nullptr) {
            return "no dialog";
        }
        emit dialog->fileSelected(QString::fromStdString(path)); // some would be refused by the dialog itself
        dialog->close();
        EXPECT_EQ(driver.boxTitle(), "Error");
        EXPECT_TRUE(driver.boxText().starts_with('"' + path + '"')) << driver.boxText();
        std::string shown = advice();
        driver.closeBox();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return shown;
    }

    const TemporaryFolder folder;
};

TEST_F(FileAdviceTest, SaysWhatHelpsWhereAFileCannotBeSaved) {
    driver.find<QListWidget>("lstSchedule")->addItem(QStringLiteral("01 02 "));
    EXPECT_EQ(adviceOn("cmdSaveScenario", folder.path()),
              "A folder, a device or a pipe holds no such file. Choose another name.");
    EXPECT_EQ(adviceOn("cmdSaveScenario", folder.file("missing/a.scn")), "Save to a folder that is there.");
    std::ofstream(folder.file("picture.scn")) << std::string(100, '\0');
    EXPECT_EQ(adviceOn("cmdSaveScenario", folder.file("picture.scn")),
              "Choose another name: it is none of this program's files.");
}

TEST_F(FileAdviceTest, SaysWhatHelpsWhereAFileCannotBeLoaded) {
    EXPECT_EQ(adviceOn("cmdLoadScenario", folder.path()),
              "A folder, a device or a pipe holds no such file. Choose another name.");
    driver.click("optMode_4");
    EXPECT_EQ(adviceOn("cmdLoadSimPacket", folder.path()),
              "A folder, a device or a pipe holds no such file. Choose another name.");
}

TEST_F(AdviceTest, SaysWhatHelpsWhereALogCannotBeWritten) {
    openLine();
    driver.click("optMode_5");
    driver.click("chkMonLog");
    paste("txtMonLogFile", "/no/such/folder/a.log");
    driver.click("cmdMonStart");
    EXPECT_EQ(takeAdvice("76"), "Choose a log file in a folder that is there and that you may write to.");
}

TEST_F(AdviceTest, QuotesWhatWasTypedAsItIs) {
    driver.choose("cbRegister", "M");
    paste("cbRegAddress", "<b>1</b>");
    const auto* const label = driver.box()->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"));
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
}

TEST_F(AdviceTest, BoxIsAsWideAsItsTitle) {
    driver.choose("cbRegister", "M");
    paste("cbRegAddress", "abc");
    QFont font = QApplication::font("QMdiSubWindowTitleBar");
    font.setBold(true);
    const int title = QFontMetrics(font).horizontalAdvance(driver.box()->windowTitle());
    EXPECT_GE(driver.box()->width(),
              title + 8 * QFontMetrics(font).height()); // four buttons of a desktop's frame
}

} // namespace
} // namespace varda::test
