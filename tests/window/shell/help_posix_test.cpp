#include "support/window_test.h"
#include "window/shell/manual.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QShortcut>
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

TEST_F(HelpTest, HeldKeyStartsOneViewer) {
    for (const QShortcut* const shortcut : driver.window().findChildren<QShortcut*>()) {
        EXPECT_TRUE(!shortcut->autoRepeat() || shortcut->parent() != &driver.window())
            << shortcut->key().toString().toStdString();
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

TEST_F(HelpTest, NumbersOfThePagesAreThoseOfTheManual) {
    QFile project(QStringLiteral(VARDA_SOURCE_FOLDER "/docs/help/varda.hhp"));
    ASSERT_TRUE(project.open(QIODevice::ReadOnly));
    const std::string text = project.readAll().toStdString();
    for (const ManualPage& page :
         {manual_page::start, manual_page::read, manual_page::write, manual_page::mixedRead,
          manual_page::mixedWrite, manual_page::simulation, manual_page::monitoring, manual_page::scenario,
          manual_page::files, manual_page::troubleshooting, manual_page::trace}) {
        const std::string number = ' ' + std::to_string(page.number) + '\n';
        const std::size_t end = text.find(number);
        ASSERT_NE(end, std::string::npos) << page.name;
        const std::size_t begin = text.rfind(' ', end - 1) + 1;
        const std::string alias = text.substr(begin, end - begin) + '=' + std::string(page.name) + '\n';
        EXPECT_NE(text.find('\n' + alias), std::string::npos) << alias;
    }
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

TEST_F(HelpTest, ViewerThatRunsYetIsNotStartedAgain) {
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
    ASSERT_NE(driver.box(), nullptr);
    EXPECT_FALSE(driver.box()->informativeText().isEmpty());
}

} // namespace
} // namespace varda::test
