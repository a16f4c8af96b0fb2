#include "help/manual.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace varda::test {
namespace {

// Both empty where the tools were not there when the build was configured.
QString lister() { return QStringLiteral(VARDA_CHM_LISTER); }
QString helpFile() { return QStringLiteral(VARDA_HELP_FILE); }

/// The table of contents of the sources.
std::vector<ManualEntry> contents() {
    return readEntries(QStringLiteral(VARDA_SOURCE_FOLDER "/docs/help/varda.hhc"));
}

/// VARDA.CHM as its readers see it.
class HelpFileTest : public testing::Test {
protected:
    void SetUp() override {
        if (lister().isEmpty() || helpFile().isEmpty()) {
            GTEST_SKIP() << "No chmcmd or no chmls (Debian package fp-utils): no help file to look into";
        }
        ASSERT_TRUE(QFile::exists(helpFile())) << "not built: " << helpFile().toStdString();
        ASSERT_TRUE(QFile::copy(helpFile(), ownFile));
    }

    /// Runs chmls on a copy of the help file: it locks what it reads, also against the test beside this one.
    bool run(const QString& command, const QString& target) {
        QProcess process;
        process.start(lister(), {command, ownFile, target});
        return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
               process.exitCode() == 0;
    }

    QTemporaryDir folder;

private:
    QString ownFile = folder.filePath(QStringLiteral("copy.chm"));
};

TEST_F(HelpFileTest, TableOfContentsIsThatOfTheSources) {
    const QString extracted = folder.filePath(QStringLiteral("contents.hhc"));
    ASSERT_TRUE(run(QStringLiteral("extracttoc"), extracted));
    const auto expected = contents();
    const auto found = readEntries(extracted);
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(found, expected);
}

TEST_F(HelpFileTest, EveryPageIsInItWithItsPictures) {
    ASSERT_TRUE(run(QStringLiteral("extractall"), folder.path()));
    const auto pages = contents();
    ASSERT_FALSE(pages.empty());
    int pictures = 0;
    for (const ManualEntry& entry : pages) {
        const ManualPage page = readPage(folder.filePath(entry.page));
        EXPECT_EQ(page.error, QString()) << entry.page.toStdString();
        EXPECT_EQ(page.title, entry.name);
        for (const QString& picture : page.pictures) {
            EXPECT_TRUE(QFile::exists(folder.filePath(picture)))
                << entry.page.toStdString() << " shows " << picture.toStdString();
            ++pictures;
        }
    }
    EXPECT_GT(pictures, 0);
}

} // namespace
} // namespace varda::test
