#include "support/ordinary_user.h"
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

} // namespace
} // namespace varda::test
