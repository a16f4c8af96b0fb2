#include "support/temporary_folder.h"
#include "support/window_test.h"
#include "window/controls/elided_label.h"

#include <QCheckBox>
#include <QLabel>
#include <QTabWidget>

#include <filesystem>
#include <memory>

namespace varda::test {
namespace {

class PortCornerTest : public WindowTest {
protected:
    std::string shown() { return driver.find<QLabel>("openPort")->text().toStdString(); }
    std::string toolTip(const char* control) { return driver.find(control)->toolTip().toStdString(); }

    void expectShown(const std::string& expected) {
        EXPECT_EQ(shown(), expected);
        EXPECT_EQ(toolTip("cmdPortOpen"), expected);
        EXPECT_EQ(driver.find("cmdPortOpen")->accessibleDescription().toStdString(), expected);
    }
};

TEST_F(PortCornerTest, TellsWhatOpenPortWouldOpenAndWhatIsOpen) {
    expectShown("No port is tested yet");
    paste("cbPort", "VIRTUAL");
    driver.click("cmdCommTest");
    paste("cbPort", "COM7");
    expectShown("Open Port opens VIRTUAL, 9600 8-N-1");
    driver.click("cmdPortOpen");
    expectShown("Open: VIRTUAL, 9600 8-N-1");
    EXPECT_EQ(text("cbPort"), "COM7");
    driver.click("cmdPortOpen");
    expectShown("Open Port opens VIRTUAL, 9600 8-N-1");
}

TEST_F(PortCornerTest, FollowsTheSettings) {
    paste("cbPort", "VIRTUAL");
    driver.click("cmdCommTest");
    driver.choose("cbBaudRate", "38400");
    driver.choose("cbDataBit", "7");
    driver.choose("cbStopBit", "2");
    driver.choose("cbParityBit", "EVEN");
    expectShown("Open Port opens VIRTUAL, 38400 7-E-2");
}

TEST_F(PortCornerTest, FieldTellsThatItsTextWaitsForTest) {
    EXPECT_EQ(toolTip("cbPort"), "Stands for /dev/ttyS0.\nPress Test, then Open Port.");
    paste("cbPort", "VIRTUAL");
    driver.click("cmdCommTest");
    EXPECT_EQ(toolTip("cbPort"),
              "The embedded controller: no cable needed.\nIt is tested: Open Port opens it.");
    paste("cbPort", "COM7");
    EXPECT_EQ(toolTip("cbPort"),
              "Stands for /dev/ttyS6.\nThis text waits for Test: until then Open Port opens VIRTUAL.");
    EXPECT_EQ(driver.find("cbPort")->accessibleDescription(), driver.find("cbPort")->toolTip());
}

TEST_F(PortCornerTest, FieldHintsAtCapitals) {
    paste("cbPort", "virtual");
    EXPECT_TRUE(toolTip("cbPort").starts_with("Stands for /dev/virtual. Did you mean VIRTUAL, in capitals?"));
    paste("cbPort", "com1");
    EXPECT_TRUE(toolTip("cbPort").starts_with("Stands for /dev/com1. Did you mean COM1, in capitals?"));
    driver.click("cmdCommTest");
    EXPECT_TRUE(driver.boxText().ends_with(" Did you mean COM1, in capitals?")) << driver.boxText();
}

TEST_F(PortCornerTest, ConsolesAreRefusedAtTest) {
    for (const char* const console : {"/dev/tty", "/dev/tty0", "/dev/tty1", "/dev/console"}) {
        if (!std::filesystem::is_character_file(console)) {
            continue; // a container may lack them
        }
        paste("cbPort", console);
        driver.click("cmdCommTest");
        if (!driver.boxText().starts_with("8002 No permission")) {
            EXPECT_EQ(driver.boxText(), "8002 " + std::string(console) + " is a console, not a serial port.");
        }
        driver.closeBox();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(driver.isEnabled("cmdPortOpen"));
    }
}

/// Adapters of one kind, whose names that stay differ in the serial number alone.
class LongNameTest : public PortCornerTest {
protected:
    std::string linkOf(const char* serialNumber) {
        std::string link =
            folder.file("usb-FTDI_FT232R_USB_UART_" + std::string(serialNumber) + "-if00-port0");
        std::filesystem::create_symlink(line.path(), link);
        return link;
    }
    void test(const std::string& link) {
        paste("cbPort", link);
        driver.click("cmdCommTest");
    }

    ElidedLabel* label() { return driver.find<ElidedLabel>("openPort"); }
    std::string painted() { return label()->paintedText().toStdString(); }

    const TemporaryFolder folder;
};

TEST_F(LongNameTest, LosesItsStartWherePaintedAndNothingElsewhere) {
    const int width = label()->width();
    paste("cbBaudRate", "115200");
    const std::string link = linkOf("A50285BI");
    test(link);
    expectShown("Open Port opens " + link + ", 115200 8-N-1");
    EXPECT_TRUE(painted().starts_with("Open Port opens \u2026")) << painted();
    EXPECT_TRUE(painted().ends_with("A50285BI-if00-port0, 115200 8-N-1")) << painted();
    driver.click("cmdPortOpen");
    expectShown("Open: " + link + ", 115200 8-N-1");
    EXPECT_TRUE(painted().starts_with("Open: \u2026")) << painted();
    EXPECT_TRUE(painted().ends_with("A50285BI-if00-port0, 115200 8-N-1")) << painted();
    EXPECT_EQ(label()->width(), width);
    EXPECT_LE(label()->fontMetrics().horizontalAdvance(label()->paintedText()), width);
}

TEST_F(LongNameTest, TellsTwoAdaptersOfAKindApart) {
    test(linkOf("A50285BI"));
    const QImage first = label()->grab().toImage();
    test(linkOf("B50285BI"));
    EXPECT_NE(label()->grab().toImage(), first);
}

TEST_F(PortCornerTest, AShortNameIsPaintedWhole) {
    paste("cbPort", "VIRTUAL");
    driver.click("cmdCommTest");
    EXPECT_EQ(driver.find<ElidedLabel>("openPort")->paintedText().toStdString(),
              "Open Port opens VIRTUAL, 9600 8-N-1");
}

/// A line that has a link, as whoever makes pseudo-terminals for a while gives them one.
class AttachingTest : public PortCornerTest {
protected:
    AttachingTest() { plugIn(); }

    void plugIn() {
        terminal = std::make_unique<PseudoTerminal>();
        std::filesystem::remove(link);
        std::filesystem::create_symlink(terminal->path(), link);
    }

    void unplug() {
        std::filesystem::remove(link);
        terminal->closeFarEnd();
        ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    }

    QCheckBox* tick() { return driver.find<QCheckBox>("attachAgain"); }
    QCheckBox* offer() { return qobject_cast<QCheckBox*>(driver.box()->checkBox()); }

    bool isOpen() { return text("cmdPortOpen") == "Close Port"; }
    bool opensSoon() {
        return runUntil([this] { return isOpen(); });
    }

    std::string goneText() const {
        return "8020 " + link + " went away: it was unplugged, or its far end was closed.";
    }

    const TemporaryFolder folder;
    const std::string link = folder.file("adapter");
    std::unique_ptr<PseudoTerminal> terminal;
};

TEST_F(AttachingTest, IsOffByDefaultAndOfferedByTheBox) {
    EXPECT_FALSE(tick()->isChecked());
    driver.openPort(link);
    unplug();
    EXPECT_EQ(driver.boxText(), goneText());
    EXPECT_EQ(driver.boxTitle(), "Error");
    ASSERT_NE(offer(), nullptr);
    EXPECT_EQ(offer()->text().toStdString(), "Attach again when it comes back");
    EXPECT_FALSE(offer()->isChecked());
    driver.closeBox();
    plugIn();
    runFor(std::chrono::milliseconds(1200)); // twice the time in which it would be found
    EXPECT_FALSE(isOpen());
    expectShown("Open Port opens " + link + ", 9600 8-N-1");
}

TEST_F(AttachingTest, OpensTheDeviceThatIsBackWhereTheBoxWasTicked) {
    driver.openPort(link);
    unplug();
    QTest::mouseClick(offer(), Qt::LeftButton, {}, QPoint(10, offer()->height() / 2));
    EXPECT_TRUE(offer()->isChecked());
    EXPECT_TRUE(tick()->isChecked()) << "remembered for this run";
    driver.closeBox();
    expectShown("Waiting for " + link + " to come back");
    plugIn();
    EXPECT_TRUE(opensSoon());
    expectShown("Open: " + link + ", 9600 8-N-1");
}

TEST_F(AttachingTest, GoesOnReadingByItselfWhereItIsWished) {
    driver.click("attachAgain");
    driver.choose("cbRegister", "R");
    driver.choose("cbRegAddress", "0000");
    driver.choose("cbRegBit", "0");
    driver.choose("cbRLength", "8");
    paste("txtReadTimerValue", "100");
    driver.openPort(link);
    driver.click("chkRTimer");
    for (int round = 0; round < 2; ++round) {
        unplug();
        EXPECT_EQ(driver.boxText(), goneText());
        EXPECT_TRUE(offer()->isChecked());
        driver.closeBox();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        plugIn();
        ASSERT_TRUE(opensSoon());
        std::size_t count = 0;
        EXPECT_TRUE(runUntil([&] {
            count += terminal->readAvailable().size();
            return count >= 18; // two requests
        })) << round;
    }
}

TEST_F(AttachingTest, EndsWithTheTick) {
    driver.click("attachAgain");
    driver.openPort(link);
    unplug();
    driver.closeBox();
    driver.click("attachAgain");
    expectShown("Open Port opens " + link + ", 9600 8-N-1");
    plugIn();
    runFor(std::chrono::milliseconds(1200));
    EXPECT_FALSE(isOpen());
}

TEST_F(AttachingTest, EndsWhereTheUserTestsAnotherPort) {
    driver.click("attachAgain");
    driver.openPort(link);
    unplug();
    driver.closeBox();
    paste("cbPort", "VIRTUAL");
    driver.click("cmdCommTest");
    expectShown("Open Port opens VIRTUAL, 9600 8-N-1");
    plugIn();
    runFor(std::chrono::milliseconds(1200));
    EXPECT_FALSE(isOpen());
}

TEST_F(AttachingTest, IsNotOfferedForAPseudoTerminalByItsNode) {
    driver.click("attachAgain");
    openLine();
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_EQ(offer(), nullptr);
    expectShown("Open Port opens " + line.path() + ", 9600 8-N-1");
}

TEST_F(AttachingTest, LeavesEnterToTheButtonOfTheBox) {
    driver.openPort(link);
    unplug();
    EXPECT_TRUE(driver.box()->button(QMessageBox::Ok)->hasFocus() ||
                driver.box()->defaultButton() == driver.box()->button(QMessageBox::Ok));
    driver.closeBox();
    EXPECT_EQ(driver.box(), nullptr);
    EXPECT_FALSE(tick()->isChecked());
}

} // namespace
} // namespace varda::test
