#include "support/window_test.h"

#include <QDir>
#include <QFile>
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

TEST_F(HelpTest, F1IsTheHelpButton) {
    addProgram("hh");
    QTest::keyClick(driver.find("cbRegister"), Qt::Key_F1);
    EXPECT_TRUE(started().starts_with(program("hh")));
}

} // namespace
} // namespace varda::test
