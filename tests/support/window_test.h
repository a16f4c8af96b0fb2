#pragma once

#include "support/event_loop.h"
#include "support/pseudo_terminal.h"
#include "support/window_driver.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <string>

namespace varda::test {

/// A window, and a line of which the test holds the far end.
class WindowTest : public testing::Test {
protected:
    void openLine() { driver.openPort(line.path()); }

    void paste(const char* field, const std::string& text) { driver.paste(field, text); }

    std::string text(const char* control) { return driver.text(control); }

    bool showsSoon(const char* control, const std::string& expected) {
        return runUntil([&] { return text(control) == expected; });
    }

    /// The bytes that reach the far end, the event loop running meanwhile.
    Bytes sent(std::size_t count) {
        Bytes bytes;
        runUntil([&] {
            const Bytes more = line.readAvailable();
            bytes.insert(bytes.end(), more.begin(), more.end());
            return bytes.size() >= count;
        });
        return bytes;
    }

    void chooseFile(const std::string& path) { driver.chooseFile(path); }

    /// Answers a dialog that saves with a file that is there, about which it would ask in a loop of its own.
    void chooseFileToReplace(const std::string& path) {
        auto* const dialog = driver.window().findChild<QFileDialog*>();
        ASSERT_NE(dialog, nullptr);
        dialog->setOption(QFileDialog::DontConfirmOverwrite);
        chooseFile(path);
    }

    /// Answers the question on the screen.
    void answerQuestion(bool yes) {
        ASSERT_NE(driver.box(), nullptr);
        QTest::mouseClick(driver.box()->button(yes ? QMessageBox::Yes : QMessageBox::No), Qt::LeftButton);
    }

    WindowDriver driver;
    PseudoTerminal line;
};

} // namespace varda::test
