#include "support/window_test.h"
#include "window/shell/desktop_links.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QListView>
#include <QTextBrowser>
#include <QUrl>

namespace varda::test {
namespace {

class AboutTest : public WindowTest {
protected:
    QWidget* openAbout() {
        driver.click("cmdAbout");
        QApplication::setActiveWindow(driver.find("frmAbout"));
        driver.find("cmdAboutOK")->setFocus(); // as a desktop does
        return driver.find("frmAbout");
    }

    QTextBrowser* openHomePage() {
        QWidget* const about = openAbout();
        QTest::keyClick(driver.find("cmdAboutOK"), Qt::Key_Tab);
        EXPECT_EQ(about->focusWidget(), driver.find("homePageLink"));
        QTest::keyClick(about->focusWidget(), Qt::Key_Return);
        return driver.window().findChild<QTextBrowser*>();
    }

    bool isGone(const char* dialog) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return driver.window().findChild<QWidget*>(QString::fromLatin1(dialog)) == nullptr;
    }
};

TEST_F(AboutTest, NamesTheProgramItsVersionQtAndTheLicence) {
    QWidget* const about = openAbout();
    ASSERT_TRUE(about->isVisible());
    QString texts;
    for (const QLabel* const label : about->findChildren<QLabel*>()) {
        texts += label->text() + QLatin1Char('\n');
    }
    EXPECT_TRUE(texts.contains(QStringLiteral("VR-Series PLC Test & Simulator\n")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Version " VARDA_VERSION "\n")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Qt ") + QString::fromLatin1(qVersion())));
    EXPECT_TRUE(texts.contains(QStringLiteral("MIT")));
}

TEST_F(AboutTest, OkClosesIt) {
    openAbout();
    driver.click("cmdAboutOK");
    EXPECT_TRUE(isGone("frmAbout"));
}

TEST_F(AboutTest, EscapeClosesIt) {
    QTest::keyClick(openAbout(), Qt::Key_Escape);
    EXPECT_TRUE(isGone("frmAbout"));
}

TEST_F(AboutTest, EnterIsItsOkButton) {
    QTest::keyClick(openAbout(), Qt::Key_Return);
    EXPECT_TRUE(isGone("frmAbout"));
}

TEST_F(AboutTest, ReceptionGoesOnBehindIt) {
    openLine();
    driver.click("optMode_5");
    driver.click("cmdMonStart");
    openAbout();
    line.write({0x01, 0x02});
    auto* const lines = driver.find<QListView>("lstMonitor");
    EXPECT_TRUE(runUntil([&] { return lines->model()->rowCount() == 1; }));
}

TEST_F(AboutTest, LabelOpensTheHomePageOfTheProgramItself) {
    const QTextBrowser* const page = openHomePage();
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(driver.find("frmWebBrowser")->isVisible());
    EXPECT_EQ(page->source().scheme(), QStringLiteral("qrc"));
    EXPECT_TRUE(page->toPlainText().contains(QStringLiteral("VR-Series PLC Test & Simulator")));
}

TEST_F(AboutTest, LabelThatTabReachesIsMarked) {
    openAbout();
    QTest::keyClick(driver.find("cmdAboutOK"), Qt::Key_Tab);
    EXPECT_EQ(driver.find<QLabel>("homePageLink")->selectedText().toStdString(), "Home page");
    QTest::keyClick(driver.find("homePageLink"), Qt::Key_Backtab);
    EXPECT_FALSE(driver.find<QLabel>("homePageLink")->hasSelectedText());
}

TEST_F(AboutTest, EscapeClosesTheHomePageAndLeavesTheAboutBox) {
    ASSERT_NE(openHomePage(), nullptr);
    QTest::keyClick(driver.find("frmWebBrowser"), Qt::Key_Escape);
    EXPECT_TRUE(isGone("frmWebBrowser"));
    EXPECT_TRUE(driver.find("frmAbout")->isVisible());
}

TEST_F(AboutTest, LinksOfTheHomePageLeaveThroughTheDesktopsBrowser) {
    const DesktopLinks links;
    QTextBrowser* const page = openHomePage();
    ASSERT_NE(page, nullptr);
    const QUrl shown = page->source();
    page->setFocus();
    QTest::keyClick(page, Qt::Key_Tab);
    QTest::keyClick(page, Qt::Key_Return);
    ASSERT_EQ(links.taken.size(), 1);
    EXPECT_EQ(links.taken.first().scheme(), QStringLiteral("https"));
    EXPECT_EQ(page->source(), shown);
}

} // namespace
} // namespace varda::test
