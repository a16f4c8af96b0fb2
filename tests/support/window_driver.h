#pragma once

#include "window/monitor/monitor_page.h"
#include "window/shell/program.h"

#include <QString>
#include <QTemporaryDir>
#include <QWidget>

#include <stdexcept>
#include <string>

class QComboBox;
class QMessageBox;

namespace varda::test {

using namespace window;

/// A main window on the screen, and the hands of a user on it: everything but `paste` and what uses it goes
/// through real clicks and keys on controls that are found by their names.
class WindowDriver {
public:
    WindowDriver();

    FrmVarda& window() { return program_.window(); }
    Controller& controller() { return program_.controller(); }
    const LinkState& link() { return window().link().state(); }

    /// The control of that name. @throws std::runtime_error where there is none of that class
    template <typename Control = QWidget>
    Control* find(const char* name) {
        auto* const control = window().findChild<Control*>(QString::fromLatin1(name));
        if (control == nullptr) {
            throw std::runtime_error(std::string("no such control: ") + name);
        }
        return control;
    }

    /// What a control shows: its text, caption or list text.
    std::string text(const char* name) { return window().form().text(name); }
    bool isEnabled(const char* name) { return find(name)->isEnabled(); }

    /// Clicks a button, box or option, or the tab of a mode.
    void click(const char* name);
    /// Opens a list and chooses the entry of that text with the keyboard. @throws std::runtime_error where it
    /// is not offered
    void choose(const char* list, const std::string& entry);
    /// Puts the focus on a field, selects all and types over it, key by key.
    void type(const char* field, const std::string& text);

    /// Sets a field's text at once, as pasting does; typing goes key by key.
    void paste(const char* field, const std::string& text) { window().form().setText(field, text); }

    /// The message box on the screen, or nullptr.
    QMessageBox* box();
    /// Text of the message box on the screen; empty where there is none.
    std::string boxText();
    std::string boxTitle();
    /// Closes the box with its default button.
    void closeBox();

    /// Answers the file dialog on the screen with a path. @throws std::runtime_error where there is none
    void chooseFile(const std::string& path);

    /// Hands the monitor a burst as the link does, without the line in between.
    void listBurst(const Bytes& burst) {
        Exchange heard;
        heard.outcome = Outcome::Heard;
        heard.answer = burst;
        window().findChild<MonitorPage*>()->told(heard);
    }

    /// Tests and opens a port by its name, as a user does.
    void openPort(const std::string& name);

    /// The program's own folder of this window, with its folders "Data" and "Log".
    std::string programFolder() const { return programFolder_.path().toStdString(); }

private:
    QTemporaryDir programFolder_;
    Program program_{{programFolder_.path(), 20261121, [] { return QTime(9, 5, 7); }}};
};

} // namespace varda::test
