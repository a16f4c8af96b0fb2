#pragma once

#include "support/far_end.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"
#include "window/shell/frmVarda.h"

#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

class QComboBox;
class QMessageBox;

namespace varda::test {

using namespace window;

/// The main window with everything around it in the test's hands: waits and both period timers run on a clock
/// that is advanced by hand, lines end in memory, and files stand in a folder of the window's own.
class DrivenWindow {
public:
    /// @param controller whose memory the bench shows, and that the port VIRTUAL leads to; where there is
    /// none the window has one of its own, and every port ends in memory
    explicit DrivenWindow(Controller* controller = nullptr);

    FrmVarda& window() { return window_; }
    FarEnd& farEnd() { return farEnd_; }
    const TemporaryFolder& folder() const { return folder_; }

    /// Lets time pass.
    void advance(int milliseconds);
    /// Goes to what is due next, and runs that alone, as one event of the window.
    void step();

    /// The control of that name. @throws std::runtime_error where there is none of that class
    template <typename Control = QWidget>
    Control* find(const std::string& name) {
        QWidget*& known = controls_[name];
        if (known == nullptr) {
            known = window_.findChild<QWidget*>(QString::fromStdString(name));
        }
        auto* const control = qobject_cast<Control*>(known);
        if (control == nullptr) {
            throw std::runtime_error("no such control: " + name);
        }
        return control;
    }

    // The hands of a user: what is disabled or out of sight stays as it is.

    /// Presses a button, box or option.
    void click(const std::string& button);
    /// Clicks the tab of that index.
    void clickTab(int index);
    /// Chooses an entry of a drop-down list, as its pop-up does.
    void choose(const std::string& list, int index);
    /// Types over the whole text, key by key.
    void type(const std::string& field, const std::string& text);
    /// Replaces the whole text at once, as pasting does.
    void paste(const std::string& field, const std::string& text);
    /// Clicks a line of a list.
    void clickLine(const std::string& list, int row);
    void doubleClickLine(const std::string& list, int row);
    /// Answers the file dialog on the screen with a file of the folder, and gives up where it refuses that.
    void chooseFile(const std::string& name);

    /// The message box on the screen, or nullptr.
    QMessageBox* box();
    /// Presses a button of the box by its caption without "&".
    void answerBox(const std::string& caption);

    /// Text, caption or list text.
    std::string text(const std::string& name);
    /// The entries of a list or drop-down list.
    int entryCount(const std::string& name);
    std::string entry(const std::string& name, int row);
    /// The selected line of a list, -1 where none is.
    int selectedLine(const std::string& name);

private:
    std::unique_ptr<Line> makeLine(const std::string& name, Controller* controller);

    TemporaryFolder folder_;
    ManualClock clock_;
    FarEnd farEnd_{clock_};
    FrmVarda window_;
    std::unordered_map<std::string, QWidget*> controls_; ///< found once; the window's own live as long as it
};

} // namespace varda::test
