#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace varda::window {

/// The groups of controls that are switched together; see the table of their name prefixes in the shell.
enum class ControlGroup { Read, Write, MixedRead, MixedWrite, Simulation, Scenario };

/// All that code outside the shell may ask of the main window: its controls by their names, and its message
/// boxes.
///
/// A name that no control bears is a defect of the caller; the window ignores it in a release and asserts in
/// a debug build.
class Form {
public:
    Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    virtual ~Form() = default;

    virtual std::string text(std::string_view control) const = 0;
    virtual void setText(std::string_view control, std::string_view text) = 0;
    /// Stands in grey in a field or a frame while its text is empty.
    virtual void setPlaceholder(std::string_view control, std::string_view text) = 0;
    virtual bool isTicked(std::string_view control) const = 0;
    virtual void setEnabled(std::string_view control, bool enabled) = 0;

    /// Switches every control whose name the group matches.
    virtual void enableGroup(ControlGroup group, bool enabled) = 0;
    void EnableReadControls(bool enabled) { enableGroup(ControlGroup::Read, enabled); }
    void EnableWriteControls(bool enabled) { enableGroup(ControlGroup::Write, enabled); }
    void EnableScenarioControls(bool enabled) { enableGroup(ControlGroup::Scenario, enabled); }

    /// Switches the scenario's editing buttons; its run button follows whether it has lines, its stop button
    /// goes off.
    virtual void SetScenarioButtons(bool enabled) = 0;

    /// Runs the Click handler of a button, whether or not the button is enabled. @throws what the handler
    /// throws
    virtual void press(std::string_view button) = 0;

    /// Shows a message box with an OK button and returns at once. Boxes wait for one another; one that says
    /// the same as a box still shown is not shown again.
    virtual void showMessage(const std::string& text, const std::string& title) = 0;

    /// A box to tick below the text of a message box.
    struct Tick {
        std::string caption;
        bool isTicked = false;
        std::function<void(bool isTicked)> changed;
    };
    virtual void showMessage(const std::string& text, const std::string& title, const Tick& tick) = 0;
    /// The same with a line below the text that names what it is about, and says what helps; none where it is
    /// empty.
    virtual void showAdvised(const std::string& text, const std::string& title,
                             const std::string& advice) = 0;
    /// Shows a Yes/No box and returns at once; `answered` runs with the answer.
    virtual void ask(const std::string& text, const std::string& title,
                     std::function<void(bool yes)> answered) = 0;
};

} // namespace varda::window
