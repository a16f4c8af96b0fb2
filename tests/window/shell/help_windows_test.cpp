#include "core/base/runtime_error.h"
#include "support/window_test.h"
#include "window/system/external_program.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace varda::test {
namespace {

/// Puts programs of the test's own in the place of the system's: each writes down what it is called with.
class HelpOnWindows : public WindowTest {
protected:
    HelpOnWindows() { qputenv("PATH", programs_.path().toLocal8Bit()); }
    void TearDown() override { qputenv("PATH", path_); }

    void addProgram(const char* name) {
        ASSERT_TRUE(
            QFile::copy(QStringLiteral(VARDA_CALLED_PROGRAM), inPrograms(name) + QStringLiteral(".exe")));
    }
    void letProgramsFail() { QFile(inPrograms("failure")).open(QIODevice::WriteOnly); }

    void addHelpFile() {
        QFile file(QString::fromStdString(driver.programFolder()) + QStringLiteral("/VARDA.CHM"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }

    /// The command line behind the name of the program that was started.
    std::string called(const char* name) {
        const QString program = QDir::toNativeSeparators(inPrograms(name) + QStringLiteral(".exe"));
        QString call;
        runUntil([&] {
            QFile calls(inPrograms("calls"));
            call = calls.open(QIODevice::ReadOnly) ? QString::fromUtf8(calls.readAll()) : QString();
            return call.contains(program, Qt::CaseInsensitive);
        });
        const qsizetype place = call.indexOf(program, 0, Qt::CaseInsensitive);
        return place < 0 ? "not called: " + call.toStdString()
                         : call.mid(place + program.size() + 1).trimmed().toStdString();
    }

    std::string folder() {
        return QDir::toNativeSeparators(QString::fromStdString(driver.programFolder())).toStdString();
    }

private:
    QString inPrograms(const char* name) { return programs_.filePath(QString::fromLatin1(name)); }

    QByteArray path_ = qgetenv("PATH");
    QTemporaryDir programs_;
};

TEST_F(HelpOnWindows, StartsTheHelpViewerWithTwoBackslashesBeforeTheFile) {
    addProgram("hh");
    driver.click("cmdHelp");
    EXPECT_EQ(called("hh"), folder() + R"(\\VARDA.CHM)");
}

TEST_F(HelpOnWindows, CommandTextStandsWithoutQuotesAlsoWhereTheFolderHasABlank) {
    addProgram("hh");
    startProgram(QStringLiteral(R"(hh C:\Program Files\Varda\\VARDA.CHM)"), &driver.window(),
                 [](const RuntimeError&) {});
    EXPECT_EQ(called("hh"), R"(C:\Program Files\Varda\\VARDA.CHM)");
}

TEST_F(HelpOnWindows, F1OpensTheShownPage) {
    addProgram("hh");
    driver.click("optMode_1");
    QTest::keyClick(driver.find("cbWRegister"), Qt::Key_F1);
    EXPECT_EQ(called("hh"), folder() + R"(\\VARDA.CHM::/write.html)");
}

TEST_F(HelpOnWindows, WhatWindowsOpensFilesWithIsTriedWhereTheViewerFailsAtOnce) {
    addProgram("hh");
    addProgram("rundll32");
    letProgramsFail();
    addHelpFile();
    driver.click("cmdHelp");
    EXPECT_EQ(called("rundll32"), "url.dll,FileProtocolHandler " + folder() + R"(\VARDA.CHM)");
}

TEST_F(HelpOnWindows, ReportsNameNothingThatIsNotThere) {
    addHelpFile();
    driver.click("cmdHelp");
    EXPECT_TRUE(driver.boxText().starts_with("Run-time error '53':\n\nFile not found")) << driver.boxText();
    for (const char* const foreign : {"xdg", "xchm", "/"}) {
        EXPECT_EQ(driver.boxText().find(foreign), std::string::npos) << driver.boxText();
    }
}

} // namespace
} // namespace varda::test
