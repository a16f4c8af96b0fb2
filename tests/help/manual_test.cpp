#include "help/manual.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace varda::test {
namespace {

QString folder(const char* name) { return QStringLiteral(VARDA_SOURCE_FOLDER) + QString::fromLatin1(name); }

QString project() { return folder("/docs/help/varda.hhp"); }

/// The manual as it stands in the sources.
class ManualTest : public testing::Test {
protected:
    ManualTest() {
        const QDir help(folder("/docs/help"));
        const QStringList names = help.entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Name);
        for (const QString& name : names) {
            pages.insert(name, readPage(help.filePath(name)));
        }
    }

    /// Whether a page, or a place on it, is there. @param from where the reader comes from
    bool resolves(const QString& from, const QString& link) const {
        const QString name = link.section(QLatin1Char('#'), 0, 0);
        const QString anchor = link.section(QLatin1Char('#'), 1);
        const auto page = pages.constFind(name.isEmpty() ? from : name);
        if (page == pages.constEnd()) {
            return anchor.isEmpty() && QFile::exists(folder("/docs/help/") + name);
        }
        return anchor.isEmpty() || page->anchors.contains(anchor);
    }

    QStringList picturesOfPages() const {
        QStringList pictures;
        for (const ManualPage& page : pages) {
            pictures += page.pictures;
        }
        return pictures;
    }

    QMap<QString, ManualPage> pages; ///< by file name
};

QStringList namesOf(const std::vector<ManualEntry>& entries) {
    QStringList names;
    for (const ManualEntry& entry : entries) {
        names.append(entry.page);
    }
    return names;
}

TEST_F(ManualTest, EveryPageIsWellFormedAndHasOneHeading) {
    ASSERT_GT(pages.size(), 10);
    for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
        EXPECT_EQ(page->error, QString()) << page.key().toStdString();
        EXPECT_FALSE(page->title.isEmpty()) << page.key().toStdString();
        EXPECT_EQ(page->headings.size(), 1) << page.key().toStdString();
        EXPECT_TRUE(page->links.contains(QStringLiteral("style.css"))) << page.key().toStdString();
    }
}

TEST_F(ManualTest, EveryLinkLeadsSomewhere) {
    for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
        for (const QString& link : page->links) {
            EXPECT_TRUE(resolves(page.key(), link))
                << page.key().toStdString() << " links to " << link.toStdString();
        }
    }
}

TEST_F(ManualTest, EveryPictureOfAPageIsInTheFolderOfPictures) {
    const QStringList pictures = picturesOfPages();
    ASSERT_FALSE(pictures.isEmpty());
    for (const QString& picture : pictures) {
        EXPECT_TRUE(picture.startsWith(QLatin1String("images/"))) << picture.toStdString();
        EXPECT_TRUE(QFile::exists(folder("/docs/help/") + picture)) << picture.toStdString();
    }
}

TEST_F(ManualTest, EveryPictureOfTheFolderIsShownSomewhere) {
    const QStringList shown = picturesOfPages();
    const QStringList pictures = QDir(folder("/docs/help/images")).entryList(QDir::Files);
    for (const QString& picture : pictures) {
        EXPECT_TRUE(shown.contains(QStringLiteral("images/") + picture)) << picture.toStdString();
    }
}

/// Only those are taken anew with the guided tour.
TEST_F(ManualTest, EveryPictureOfTheReadmeIsOneOfTheManual) {
    static const QRegularExpression shownPicture(QStringLiteral(R"re(!\[[^\]]*\]\(([^)]*)\))re"));
    static const QLatin1String manual("docs/help/");
    const QStringList files = readSection(project(), QStringLiteral("FILES"));
    int pictures = 0;
    for (auto match = shownPicture.globalMatch(readText(folder("/README.md"))); match.hasNext(); ++pictures) {
        const QString picture = match.next().captured(1);
        EXPECT_TRUE(picture.startsWith(manual) && files.contains(picture.mid(manual.size())))
            << picture.toStdString();
    }
    EXPECT_GT(pictures, 0);
}

TEST_F(ManualTest, ContentsNameEveryPageOnceByItsTitle) {
    const auto contents = readEntries(folder("/docs/help/varda.hhc"));
    QStringList named = namesOf(contents);
    named.sort();
    EXPECT_EQ(named, pages.keys());
    for (const ManualEntry& entry : contents) {
        EXPECT_EQ(entry.name, pages.value(entry.page).title) << entry.page.toStdString();
    }
}

TEST_F(ManualTest, EveryEntryOfTheIndexLeadsSomewhere) {
    const auto index = readEntries(folder("/docs/help/varda.hhk"));
    ASSERT_GT(index.size(), 20U);
    for (const ManualEntry& entry : index) {
        EXPECT_TRUE(resolves({}, entry.page))
            << entry.name.toStdString() << " leads to " << entry.page.toStdString();
    }
}

TEST_F(ManualTest, ProjectNamesEveryPageAndPictureAndNothingElse) {
    QStringList needed = pages.keys();
    needed += picturesOfPages();
    needed.append(QStringLiteral("style.css"));
    needed.removeDuplicates();
    needed.sort();
    QStringList files = readSection(project(), QStringLiteral("FILES"));
    files.sort();
    EXPECT_EQ(files, needed);
}

TEST_F(ManualTest, ProjectMakesTheFileThatTheProgramOpens) {
    const QStringList options = readSection(project(), QStringLiteral("OPTIONS"));
    for (const char* const option : {"Compiled file=VARDA.CHM", "Contents file=varda.hhc",
                                     "Index file=varda.hhk", "Default topic=index.html"}) {
        EXPECT_TRUE(options.contains(QString::fromLatin1(option))) << option;
    }
}

} // namespace
} // namespace varda::test
