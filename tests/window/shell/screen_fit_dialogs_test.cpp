#include "window/shell/screen_fit_fixture.h"

#include <QDialog>
#include <QTableWidget>

namespace varda::test {
namespace {

class ScreenFitOfDialogs : public ScreenFitTest {
protected:
    void expectFits(QWidget& dialog) {
        QCoreApplication::processEvents();
        SCOPED_TRACE(nameOf(&dialog));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_FALSE(shownIn(dialog).isEmpty());
        expectAllInside(dialog);
        expectNoOverlaps(dialog);
        for (const Screen& screen : screens) {
            const QSize room = roomOn(screen);
            const QSize least = dialog.minimumSizeHint().expandedTo(dialog.minimumSize());
            EXPECT_LE(least.width(), room.width()) << screen.percent;
            EXPECT_LE(least.height(), room.height()) << screen.percent;
        }
        dialog.resize(dialog.minimumSizeHint().expandedTo(dialog.minimumSize()));
        QCoreApplication::processEvents();
        expectAllInside(dialog);
        expectNoOverlaps(dialog);
    }

    void expectFits(const char* dialog) { expectFits(*driver.find<QWidget>(dialog)); }
};

TEST_F(ScreenFitOfDialogs, TheAboutBoxFits) {
    driver.click("cmdAbout");
    expectFits("frmAbout");
}

TEST_F(ScreenFitOfDialogs, TheHomePageFits) {
    driver.click("cmdAbout");
    emit driver.find<QLabel>("homePageLink")->linkActivated({});
    expectFits("frmWebBrowser");
}

TEST_F(ScreenFitOfDialogs, TheWordDialogFitsAlsoWithItsReason) {
    showMost(1);
    auto* const grid = driver.find<QTableWidget>("gridWriteData");
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualItemRect(grid->item(0, 0)).center());
    expectFits("frmWriteWord");
    auto* const word = driver.find<QLineEdit>("txtWordWrite");
    word->setText(QStringLiteral("99999"));
    QTest::keyClick(word, Qt::Key_Return);
    expectFits("frmWriteWord");
}

TEST_F(ScreenFitOfDialogs, ThePortDoctorFits) {
    driver.click("portDoctor");
    expectFits("portDoctorDialog");
}

TEST_F(ScreenFitOfDialogs, ABoxWithAdviceFits) {
    driver.window().form().showAdvised("Run-time error '6':\n\nOverflow", "VR-Series PLC Test & Simulator",
                                       "SR 000: mixed requests carry no two-letter kind. Choose R, W or M, "
                                       "or read it on the first page.");
    ASSERT_NE(driver.box(), nullptr);
    expectFits(*driver.box());
}

TEST_F(ScreenFitOfDialogs, TheLongestPortErrorFits) {
    paste("cbPort", "/dev/" + std::string(200, 'x'));
    driver.click("cmdCommTest");
    ASSERT_NE(driver.box(), nullptr);
    const QSize room = roomOn(screens.back());
    EXPECT_LE(driver.box()->width(), room.width());
}

} // namespace
} // namespace varda::test
