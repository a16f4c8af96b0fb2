#include "support/few_handles_posix.h"
#include "support/ordinary_user.h"
#include "support/sanitized.h"
#include "support/window_test.h"

#include <QDir>
#include <QFileDialog>

namespace varda::test {
namespace {

/// The dialogs of a window whose own folder is there for reading only, as in an installed program.
class FileDialogsTest : public WindowTest {
protected:
    FileDialogsTest() {
        QFile::setPermissions(folder(), readable | QFile::WriteOwner);
        for (const char* const below : {"/Data", "/Log"}) {
            QFile::setPermissions(folder() + QLatin1String(below), readable);
        }
        QFile::setPermissions(home_.path(), readable | QFile::WriteOwner);
        qputenv("HOME", home_.path().toLocal8Bit());
    }
    void TearDown() override { qputenv("HOME", formerHome_); }

    QString folder() { return QString::fromStdString(driver.programFolder()); }
    std::string home() { return QDir(home_.path()).canonicalPath().toStdString(); }

    std::string startOf(const char* button) {
        const OrdinaryUser user;
        driver.click(button);
        return QDir(driver.window().findChild<QFileDialog*>()->directory()).canonicalPath().toStdString();
    }

    void makeDocuments() { QDir(home_.path()).mkdir(QStringLiteral("Documents")); }

    static constexpr QFile::Permissions readable = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup |
                                                   QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;

private:
    QTemporaryDir home_;
    QByteArray formerHome_ = qgetenv("HOME");
};

TEST_F(FileDialogsTest, SavingStartsInTheDocumentsWhereDataMayNotBeWritten) {
    makeDocuments();
    EXPECT_EQ(startOf("cmdSaveScenario"), home() + "/Documents");
}

TEST_F(FileDialogsTest, TheLogStartsInTheDocumentsWhereItsFolderMayNotBeWritten) {
    makeDocuments();
    driver.click("optMode_5");
    driver.click("chkMonLog");
    EXPECT_EQ(startOf("cmdMonLogFile"), home() + "/Documents");
}

TEST_F(FileDialogsTest, SavingStartsAtHomeWhereThereAreNoDocuments) {
    EXPECT_EQ(startOf("cmdSaveScenario"), home());
}

TEST_F(FileDialogsTest, OpeningAlwaysStartsInData) {
    makeDocuments();
    EXPECT_EQ(startOf("cmdLoadScenario"), QDir(folder()).canonicalPath().toStdString() + "/Data");
}

TEST_F(FileDialogsTest, SavingStartsInDataWhereItMayBeWritten) {
    QFile::setPermissions(folder() + QStringLiteral("/Data"),
                          readable | QFile::WriteOwner | QFile::WriteOther);
    EXPECT_EQ(startOf("cmdSaveScenario"), QDir(folder()).canonicalPath().toStdString() + "/Data");
}

class FileDialogsOutOfHandles : public WindowTest {};

TEST_F(FileDialogsOutOfHandles, AreRefusedWithTheRemedyAndTheProgramGoesOn) {
    if (isSanitized) {
        GTEST_SKIP() << "the sanitizer needs a file handle itself";
    }
    for (const char* const button : {"cmdSaveScenario", "cmdLoadScenario"}) {
        for (const std::size_t left : {0U, 3U, 10U}) {
            const FewHandles few(left);
            driver.click(button);
            EXPECT_EQ(driver.window().findChild<QFileDialog*>(), nullptr) << button << left;
            EXPECT_TRUE(driver.boxText().starts_with("Run-time error '67':")) << driver.boxText();
            EXPECT_NE(driver.boxText().find("start it again"), std::string::npos) << driver.boxText();
            driver.closeBox();
        }
    }
    driver.click("cmdSaveScenario");
    EXPECT_NE(driver.window().findChild<QFileDialog*>(), nullptr);
}

class FileDialogsHistory : public WindowTest {};

TEST_F(FileDialogsHistory, IsNotStored) {
    const QTemporaryDir home;
    const QByteArray formerHome = qgetenv("HOME");
    qputenv("HOME", home.path().toLocal8Bit());
    qunsetenv("XDG_CONFIG_HOME");
    driver.click("cmdSaveScenario");
    chooseFile(driver.programFolder() + "/Data/saved.scn");
    qputenv("HOME", formerHome);
    EXPECT_EQ(text("txtSimStatus"), "Saved Scenario Data completely !!!");
    EXPECT_TRUE(
        QDir(home.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());
}

} // namespace
} // namespace varda::test
