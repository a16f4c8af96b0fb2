#include "core/base/runtime_error.h"
#include "support/window_test.h"
#include "window/system/external_program.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QTableWidget>
#include <QTemporaryDir>

namespace varda::test {
namespace {

/// Puts programs of the test's own in the place of the desktop's: each writes down what it is called with.
class HelpTest : public WindowTest {
protected:
    HelpTest() { qputenv("PATH", programs_.path().toLocal8Bit()); }
    void TearDown() override { qputenv("PATH", path_); }

    void addProgram(const char* name, int exitCode = 0) {
        QFile script(programs_.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\nprintf '%s\\n' \"$0\" \"$@\" > '" + calls().toLocal8Bit() + ".new'\n" +
                     "/bin/mv '" + calls().toLocal8Bit() + ".new' '" + calls().toLocal8Bit() + "'\nexit " +
                     QByteArray::number(exitCode) + '\n');
        script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }

    /// A script whose interpreter is not there.
    void addBrokenProgram(const char* name) {
        QFile script(programs_.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/no/such/interpreter\n");
        script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }

    void addHelpFile() {
        QFile file(QString::fromStdString(driver.programFolder()) + QStringLiteral("/VARDA.CHM"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }

    /// The program that was started and its arguments, one a line.
    std::string started() {
        if (!runUntil([this] { return QFile::exists(calls()); })) {
            return "nothing";
        }
        QFile file(calls());
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "nothing";
    }

    /// The same once it has been called again.
    std::string startedNext() {
        std::string call = started();
        QFile::remove(calls());
        return call;
    }

    /// A viewer that runs until letViewersEnd(), and counts its starts.
    void addViewerThatStays(const char* name) {
        QFile script(programs_.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        const QByteArray folder = programs_.path().toLocal8Bit();
        script.write("#!/bin/sh\nprintf x >> '" + folder + "/starts'\nwhile ! test -e '" + folder +
                     "/end' && test -d '" + folder + "'; do /bin/sleep 0.1; done\n");
        script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }
    /// A viewer that runs until it is asked to end, and then writes that down.
    void addViewerThatIsClosed(const char* name) {
        QFile script(programs_.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        const QByteArray folder = programs_.path().toLocal8Bit();
        script.write("#!/bin/sh\ntrap 'printf x >> " + folder + "/closed; exit 1' TERM\nprintf x >> '" +
                     folder + "/starts'\nwhile ! test -e '" + folder + "/end' && test -d '" + folder +
                     "'; do /bin/sleep 0.1; done\n");
        script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }
    qint64 closed() const { return QFileInfo(programs_.filePath(QStringLiteral("closed"))).size(); }
    qint64 starts() const { return QFileInfo(programs_.filePath(QStringLiteral("starts"))).size(); }
    void letViewersEnd() {
        QFile end(programs_.filePath(QStringLiteral("end")));
        EXPECT_TRUE(end.open(QIODevice::WriteOnly));
    }

    void expectReport(const std::string& reason, const std::string& advice) {
        ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
        EXPECT_TRUE(driver.boxText().starts_with("Run-time error '53':\n\nFile not found: "));
        EXPECT_TRUE(driver.boxText().ends_with(reason)) << driver.boxText();
        EXPECT_TRUE(driver.box()->informativeText().toStdString().starts_with(advice))
            << driver.box()->informativeText().toStdString();
    }

    std::string program(const char* name) {
        return programs_.filePath(QString::fromLatin1(name)).toStdString();
    }

private:
    QString calls() { return programs_.filePath(QStringLiteral("calls")); }

    QByteArray path_ = qgetenv("PATH");
    QTemporaryDir programs_;
};

TEST_F(HelpTest, StartsTheHelpViewerWithTwoBackslashesBeforeTheFile) {
    addProgram("hh");
    driver.click("cmdHelp");
    EXPECT_EQ(started(), program("hh") + '\n' + driver.programFolder() + "\\\\VARDA.CHM\n");
}

TEST_F(HelpTest, ViewerComesBeforeTheDesktopsOpener) {
    addProgram("hh");
    addProgram("xdg-open");
    addHelpFile();
    driver.click("cmdHelp");
    EXPECT_TRUE(started().starts_with(program("hh")));
}

TEST_F(HelpTest, DesktopsOpenerGetsTheSameFileWhereThereIsNoViewer) {
    addProgram("xdg-open");
    addHelpFile();
    driver.click("cmdHelp");
    EXPECT_EQ(started(), program("xdg-open") + '\n' + driver.programFolder() + "/VARDA.CHM\n");
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(HelpTest, DesktopsOpenerIsTriedWhereAProgramOfTheViewersNameFailsAtOnce) {
    addProgram("hh", 1);
    addProgram("xdg-open");
    addHelpFile();
    driver.click("cmdHelp");
    EXPECT_TRUE(runUntil([this] { return started().starts_with(program("xdg-open")); }));
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(HelpTest, DesktopsOpenerIsTriedWhereAProgramOfTheViewersNameCannotBeStarted) {
    addBrokenProgram("hh");
    addProgram("xdg-open");
    addHelpFile();
    driver.click("cmdHelp");
    EXPECT_EQ(started(), program("xdg-open") + '\n' + driver.programFolder() + "/VARDA.CHM\n");
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(HelpTest, PlatformsErrorIsReportedWhereAViewerFailsAndThereIsNoOpener) {
    addProgram("hh", 1);
    addHelpFile();
    driver.click("cmdHelp");
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_TRUE(driver.boxText().starts_with("Run-time error '53':\n\nFile not found")) << driver.boxText();
}

TEST_F(HelpTest, PlatformsErrorIsReportedWhereNothingCanBeStarted) {
    addHelpFile();
    driver.click("cmdHelp");
    EXPECT_TRUE(driver.boxText().starts_with("Run-time error '53':\n\nFile not found")) << driver.boxText();
    EXPECT_EQ(driver.boxTitle(), "VR-Series PLC Test & Simulator");
}

TEST_F(HelpTest, PlatformsErrorIsReportedWhereTheFileIsMissing) {
    addProgram("xdg-open");
    driver.click("cmdHelp");
    EXPECT_TRUE(driver.boxText().starts_with("Run-time error '53':\n\nFile not found")) << driver.boxText();
    EXPECT_TRUE(driver.boxText().find("VARDA.CHM") != std::string::npos) << driver.boxText();
}

TEST_F(HelpTest, PlatformsErrorIsReportedWhereNoProgramShowsTheFile) {
    constexpr int noProgramForIt = 3;
    addProgram("xdg-open", noProgramForIt);
    addHelpFile();
    driver.click("cmdHelp");
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_TRUE(driver.boxText().starts_with("Run-time error '53':\n\nFile not found")) << driver.boxText();
}

TEST_F(HelpTest, PlatformsErrorIsReportedWhereAProgramThatIsThereCannotBeStarted) {
    for (const char* const program : {"xdg-open", "hh"}) {
        addBrokenProgram(program);
        addHelpFile();
        driver.click("cmdHelp");
        ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; })) << program;
        EXPECT_TRUE(driver.boxText().starts_with("Run-time error '53':\n\nFile not found")) << program;
        driver.closeBox();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(HelpTest, ViewerThatEndsBadlyIsNoMissingFile) {
    constexpr int actionFailed = 4;
    addProgram("xdg-open", actionFailed);
    addHelpFile();
    driver.click("cmdHelp");
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_TRUE(driver.boxText().starts_with("Run-time error '5':\n\nInvalid procedure call or argument"))
        << driver.boxText();
    EXPECT_FALSE(driver.box()->informativeText().isEmpty());
}

TEST_F(HelpTest, F1OpensThePageOfTheShownPage) {
    addProgram("hh");
    const std::vector<std::pair<const char*, std::string>> pages = {
        {"optMode_0", "read"},        {"optMode_1", "write"},      {"optMode_2", "mixed-read"},
        {"optMode_3", "mixed-write"}, {"optMode_4", "simulation"}, {"optMode_5", "monitoring"}};
    for (const auto& [option, page] : pages) {
        driver.click(option);
        QTest::keyClick(driver.find(option), Qt::Key_F1);
        EXPECT_EQ(startedNext(),
                  program("hh") + '\n' + driver.programFolder() + "\\\\VARDA.CHM::/" + page + ".html\n");
    }
}

TEST_F(HelpTest, F1InThePanelOfTheScenarioOpensItsPage) {
    addProgram("hh");
    driver.find("txtScnPeriod")->setFocus();
    QTest::keyClick(driver.find("txtScnPeriod"), Qt::Key_F1);
    EXPECT_TRUE(started().ends_with("VARDA.CHM::/scenario.html\n"));
}

TEST_F(HelpTest, ViewerThatKnowsNoNamesGetsTheNumberOfThePage) {
    addProgram("xchm");
    addHelpFile();
    QTest::keyClick(driver.find("cbRegister"), Qt::Key_F1);
    EXPECT_EQ(started(), program("xchm") + "\n-c\n2\n" + driver.programFolder() + "/VARDA.CHM\n");
}

TEST_F(HelpTest, DesktopsOpenerGetsTheFileWhereNoViewerTakesAPage) {
    addProgram("xdg-open");
    addHelpFile();
    QTest::keyClick(driver.find("cbRegister"), Qt::Key_F1);
    EXPECT_EQ(started(), program("xdg-open") + '\n' + driver.programFolder() + "/VARDA.CHM\n");
}

TEST_F(HelpTest, F1WorksInDialogs) {
    addProgram("hh");
    driver.find("cmdRDSend")->setEnabled(true);
    driver.click("cmdRDSend");
    ASSERT_NE(driver.box(), nullptr);
    QTest::keyClick(driver.box(), Qt::Key_F1);
    EXPECT_TRUE(startedNext().ends_with("VARDA.CHM::/troubleshooting.html\n"));
    driver.closeBox();
    driver.click("cmdLoadScenario");
    auto* const files = driver.window().findChild<QFileDialog*>();
    ASSERT_NE(files, nullptr);
    QTest::keyClick(files, Qt::Key_F1);
    EXPECT_TRUE(startedNext().ends_with("VARDA.CHM::/files.html\n"));
}

TEST_F(HelpTest, F1OpensThePageOfTheDialog) {
    addProgram("hh");
    driver.click("portDoctor");
    QApplication::setActiveWindow(driver.find("portDoctorDialog")); // as a window manager does
    QTest::keyClick(driver.find("portDoctorDialog"), Qt::Key_F1);
    EXPECT_EQ(startedNext(), program("hh") + '\n' + driver.programFolder() + "\\\\VARDA.CHM::/ports.html\n");
    driver.click("cmdAbout");
    QTest::keyClick(driver.find("frmAbout"), Qt::Key_F1);
    EXPECT_TRUE(startedNext().ends_with("VARDA.CHM::/index.html\n"));
}

TEST_F(HelpTest, F1InTheWordDialogOpensThePageOfItsGrid) {
    addProgram("hh");
    driver.click("optMode_1");
    driver.click("optWrite_1");
    driver.choose("cbWRegister", "W");
    driver.choose("cbWRegAddress", "0000");
    driver.choose("cbWLength", "1");
    auto* const grid = driver.find<QTableWidget>("gridWriteData");
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualItemRect(grid->item(0, 0)).center());
    QTest::keyClick(driver.find("frmWriteWord"), Qt::Key_F1);
    EXPECT_TRUE(startedNext().ends_with("VARDA.CHM::/write.html\n"));
}

TEST_F(HelpTest, F1WorksOnAControlOfADialogOfADialog) {
    addProgram("hh");
    driver.click("cmdAbout");
    QTest::keyClick(driver.find("homePageLink"), Qt::Key_Return);
    QTest::keyClick(driver.find("closeBrowser"), Qt::Key_F1);
    EXPECT_TRUE(startedNext().ends_with("VARDA.CHM::/index.html\n"));
}

/// A desktop that brings windows to the front, or refuses to, openly or in silence.
class ViewerThatRuns : public HelpTest {
protected:
    ViewerThatRuns() {
        raiseBy({[this](qint64 /*process*/) {
                     ++asked;
                     return mayBeAsked;
                 },
                 [this](qint64 /*process*/) { return comesToFront; }});
    }
    void TearDown() override {
        raiseBy(std::move(former_));
        HelpTest::TearDown();
    }

    /// Opens the page twice. @return how often the viewer was started
    qint64 startsOfTwo(std::chrono::milliseconds between = {}) {
        addViewerThatIsClosed("hh");
        QTest::keyClick(driver.find("cbRegister"), Qt::Key_F1);
        EXPECT_TRUE(runUntil([this] { return starts() == 1; }));
        runFor(between);
        QTest::keyClick(driver.find("cbRegister"), Qt::Key_F1);
        if (runUntil([this] { return starts() > 1; }, std::chrono::milliseconds(1500))) {
            EXPECT_TRUE(runUntil([this] { return closed() == 1; })) << "there is one viewer";
        }
        letViewersEnd();
        return starts();
    }

    bool mayBeAsked = true;
    bool comesToFront = true;
    int asked = 0;

private:
    Raising former_ = raiseBy({});
};

TEST_F(ViewerThatRuns, IsStartedAnewWhereNobodyCanBringItToTheFront) {
    mayBeAsked = false;
    EXPECT_EQ(startsOfTwo(std::chrono::milliseconds(2100)), 2);
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(ViewerThatRuns, IsLeftAloneAsLongAsItMayHaveNoWindowYet) {
    mayBeAsked = false;
    EXPECT_EQ(startsOfTwo(), 1);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(closed(), 0);
}

TEST_F(ViewerThatRuns, IsStartedAnewWhereItIsNotSeenToComeToTheFront) {
    comesToFront = false;
    EXPECT_EQ(startsOfTwo(), 2);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(driver.box(), nullptr);
}

TEST_F(ViewerThatRuns, IsNotStartedAgainWhereItComesToTheFront) {
    EXPECT_EQ(startsOfTwo(), 1);
    EXPECT_EQ(asked, 1);
}

TEST_F(ViewerThatRuns, AnotherPageIsAnotherCall) {
    addViewerThatStays("hh");
    QTest::keyClick(driver.find("cbRegister"), Qt::Key_F1);
    ASSERT_TRUE(runUntil([this] { return starts() == 1; }));
    QTest::keyClick(driver.find("cbRegister"), Qt::Key_F1);
    driver.click("cmdHelp"); // the start page is another one
    ASSERT_TRUE(runUntil([this] { return starts() == 2; }));
    driver.click("cmdHelp");
    driver.click("optMode_1");
    QTest::keyClick(driver.find("optMode_1"), Qt::Key_F1);
    ASSERT_TRUE(runUntil([this] { return starts() == 3; }));
    EXPECT_EQ(driver.box(), nullptr);
    letViewersEnd();
}

TEST_F(HelpTest, ViewerOfAnotherPageMakesRoom) {
    addViewerThatIsClosed("hh");
    QTest::keyClick(driver.find("cbRegister"), Qt::Key_F1);
    ASSERT_TRUE(runUntil([this] { return starts() == 1; }));
    driver.click("optMode_1");
    QTest::keyClick(driver.find("optMode_1"), Qt::Key_F1);
    EXPECT_TRUE(runUntil([this] { return starts() == 2 && closed() == 1; }));
    driver.click("cmdHelp");
    EXPECT_TRUE(runUntil([this] { return starts() == 3 && closed() == 2; }));
    runFor(std::chrono::milliseconds(100)); // that it ended is told by now
    EXPECT_EQ(driver.box(), nullptr); // it was asked to: no failure, and no reason to try the next program
    letViewersEnd();
}

TEST_F(HelpTest, MissingManualIsReportedWithWhatHelps) {
    addProgram("xdg-open");
    driver.click("cmdHelp");
    expectReport("it was not installed with the program.", "Install the program again");
}

TEST_F(HelpTest, MissingOpenerIsReportedWithWhatHelps) {
    addHelpFile();
    driver.click("cmdHelp");
    expectReport("xdg-open: it is not installed.", "Install xdg-utils, or open " + driver.programFolder());
}

TEST_F(HelpTest, MissingViewerIsReportedWithWhatHelps) {
    constexpr int noProgramForIt = 3;
    addProgram("xdg-open", noProgramForIt);
    addHelpFile();
    driver.click("cmdHelp");
    expectReport("no program opens it.", "Install a viewer for CHM files");
}

TEST_F(HelpTest, FolderWithABlankIsOneArgument) {
    addProgram("hh");
    startProgram(QStringLiteral("hh /a folder\\\\VARDA.CHM"), &driver.window(), [](const RuntimeError&) {});
    EXPECT_EQ(started(), program("hh") + "\n/a folder\\\\VARDA.CHM\n");
}

} // namespace
} // namespace varda::test
