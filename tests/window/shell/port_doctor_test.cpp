#include "support/window_test.h"

#include <QClipboard>
#include <QDialog>
#include <QGuiApplication>
#include <QPlainTextEdit>

namespace varda::test {
namespace {

class PortDoctorDialogTest : public WindowTest {
protected:
    QDialog* dialog() { return driver.window().findChild<QDialog*>(QStringLiteral("portDoctorDialog")); }

    QString report() { return driver.find<QPlainTextEdit>("portReport")->toPlainText(); }

    bool isReported(const QString& part) {
        return runUntil([&] { return report().contains(part); });
    }
};

TEST_F(PortDoctorDialogTest, IsClosedUntilItsButtonIsPressed) {
    EXPECT_EQ(dialog(), nullptr);
    driver.click("portDoctor");
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(dialog()->isVisible());
    EXPECT_FALSE(dialog()->isModal());
}

TEST_F(PortDoctorDialogTest, LooksAtThePortOfTheFieldFirst) {
    openLine();
    driver.click("portDoctor");
    ASSERT_TRUE(isReported(QStringLiteral("This program has it open.")));
    EXPECT_TRUE(report().startsWith(QString::fromStdString(line.path()) + QLatin1Char('\n')))
        << report().toStdString();
}

TEST_F(PortDoctorDialogTest, GathersBesideTheWindow) {
    driver.click("portDoctor");
    EXPECT_EQ(report().toStdString(), "Looking at the ports ..");
    EXPECT_FALSE(driver.isEnabled("lookAgain"));
    driver.click("optMode_1");
    EXPECT_EQ(driver.link().CommMode, Mode{0x22});
    EXPECT_TRUE(runUntil([this] { return driver.isEnabled("lookAgain"); }));
}

TEST_F(PortDoctorDialogTest, LooksAgainAtWhatHasChanged) {
    paste("cbPort", "/dev/tty");
    driver.click("portDoctor");
    ASSERT_TRUE(isReported(QStringLiteral("It is a console, not a serial port.")));
    paste("cbPort", "/dev/ttyUSB_none");
    driver.click("lookAgain");
    EXPECT_TRUE(isReported(QStringLiteral("There is no such device.")));
}

TEST_F(PortDoctorDialogTest, CopiesAllOfIt) {
    paste("cbPort", "/dev/tty");
    driver.click("portDoctor");
    ASSERT_TRUE(isReported(QStringLiteral("It is a console, not a serial port.")));
    driver.click("copyReport");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), report());
}

TEST_F(PortDoctorDialogTest, ClosesAndComesBack) {
    driver.click("portDoctor");
    driver.click("closeDoctor");
    EXPECT_FALSE(dialog()->isVisible());
    driver.click("portDoctor");
    EXPECT_TRUE(dialog()->isVisible());
    EXPECT_EQ(driver.window().findChildren<QDialog*>().size(), 1);
    QTest::keyClick(dialog(), Qt::Key_Escape);
    EXPECT_FALSE(dialog()->isVisible());
}

TEST_F(PortDoctorDialogTest, MayCloseWhileItIsGathering) {
    driver.click("portDoctor");
    delete dialog();
    runFor(std::chrono::milliseconds(100));
    driver.click("portDoctor");
    EXPECT_TRUE(runUntil([this] { return driver.isEnabled("lookAgain"); }));
}

} // namespace
} // namespace varda::test
