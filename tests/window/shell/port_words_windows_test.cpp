#include "support/window_test.h"
#include "window/shell/command_line.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPlainTextEdit>

namespace varda::test {
namespace {

/// What a user of this system is told of ports, in words that are true here.
class PortWordsOnWindows : public WindowTest {
protected:
    std::string toolTip() { return driver.find("cbPort")->toolTip().toStdString(); }

    void expectRefused(const std::string& port, const std::string& text) {
        paste("cbPort", port);
        driver.click("cmdCommTest");
        EXPECT_EQ(driver.boxText(), text);
        EXPECT_EQ(driver.boxTitle(), "Error") << port;
        driver.closeBox();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(driver.isEnabled("cmdPortOpen")) << port;
    }

    std::string report() { return driver.find<QPlainTextEdit>("portReport")->toPlainText().toStdString(); }

    /// The whole of what the doctor says.
    std::string examined(const std::string& port) {
        paste("cbPort", port);
        driver.click("portDoctor");
        runUntil([this] { return driver.isEnabled("lookAgain"); });
        return report();
    }
};

bool isForeign(const QString& text) {
    const auto words = {"/dev", "dialout", "xdg", "tty", "usermod", "Linux", "chmod"};
    return std::ranges::any_of(words,
                               [&text](const char* word) { return text.contains(QLatin1String(word)); });
}

TEST_F(PortWordsOnWindows, NoControlSaysAWordOfAnotherSystem) {
    for (const char* const port : {"", "COM1", "COM12", "VIRTUAL", "virtual"}) {
        paste("cbPort", port);
        for (const QWidget* const control : driver.window().findChildren<QWidget*>()) {
            for (const QString& text :
                 {control->toolTip(), control->accessibleDescription(), control->accessibleName(),
                  control->whatsThis(), control->statusTip()}) {
                EXPECT_FALSE(isForeign(text))
                    << control->objectName().toStdString() << ": " << text.toStdString();
            }
            if (const auto* const label = qobject_cast<const QLabel*>(control)) {
                EXPECT_FALSE(isForeign(label->text())) << label->text().toStdString();
            }
        }
    }
}

TEST_F(PortWordsOnWindows, NeitherDoesTheCommandLine) {
    EXPECT_FALSE(isForeign(QString::fromStdString(answerAtOnce({"--help"})->text)));
}

TEST_F(PortWordsOnWindows, TheFieldTellsThatAPortStandsForItself) {
    EXPECT_EQ(toolTip(), "Stands for COM1.\nPress Test, then Open Port.");
    paste("cbPort", "COM12");
    EXPECT_TRUE(toolTip().starts_with("Stands for COM12.")) << toolTip();
    paste("cbPort", "");
    EXPECT_TRUE(toolTip().starts_with("COM1 .. COM20, any other port such as COM21, or VIRTUAL."))
        << toolTip();
}

TEST_F(PortWordsOnWindows, WhatIsNoPortIsRefusedInTheWordsOfEverySystem) {
    expectRefused("/", "8002 / is a directory, not a serial port.");
    expectRefused(R"(C:\windows)", R"(8002 C:\windows is a directory, not a serial port.)");
    expectRefused(R"(C:\windows\win.ini)",
                  R"(8002 C:\windows\win.ini is a regular file, not a serial port.)");
    expectRefused("CON", "8002 CON is a console, not a serial port.");
    expectRefused("NUL", "8002 NUL is another kind of device, not a serial port.");
    expectRefused("COM77", "8002 No such device: COM77. Check its name, and that it is plugged in.");
    expectRefused("com77", "8002 No such device: com77. Check its name, and that it is plugged in.");
}

TEST_F(PortWordsOnWindows, APortOpensByItsNameInLettersOfEitherSizeAndWithTheSystemsFolder) {
    std::string small = line.path();
    std::ranges::transform(small, small.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    });
    for (const std::string& name : {line.path(), small, R"(\\.\)" + line.path()}) {
        driver.openPort(name);
        EXPECT_EQ(text("cmdPortOpen"), "Close Port") << name << driver.boxText();
        driver.click("cmdPortOpen");
    }
}

TEST_F(PortWordsOnWindows, TheDoctorKnowsNoPortOfThatNameAndOpensNone) {
    EXPECT_TRUE(examined("COM77").starts_with("COM77\n  There is no such port.\n")) << report();
    EXPECT_FALSE(isForeign(QString::fromStdString(report())));
}

TEST_F(PortWordsOnWindows, TheDoctorTakesTheEmbeddedControllerForNoPort) {
    EXPECT_EQ(examined("VIRTUAL").find("VIRTUAL"), std::string::npos) << report();
}

} // namespace
} // namespace varda::test
