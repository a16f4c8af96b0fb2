#pragma once

#include "window/controls/form.h"
#include "window/shell/control_groups.h"

#include <array>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

class QWidget;

namespace varda::window {

class Events;
class MessageBoxes;

/// The main window as the link and the pages see it: its controls by name, its handlers, its message boxes.
class WindowForm : public Form {
public:
    WindowForm(Events& events, MessageBoxes& boxes) : events_(events), boxes_(boxes) {}

    /// Takes in every named control below `window`; called once, when all pages stand.
    void collectControls(QWidget& window);

    std::string text(std::string_view control) const override;
    void setText(std::string_view control, std::string_view text) override;
    void setPlaceholder(std::string_view control, std::string_view text) override;
    bool isTicked(std::string_view control) const override;
    void setEnabled(std::string_view control, bool enabled) override;
    void enableGroup(ControlGroup group, bool enabled) override;
    void SetScenarioButtons(bool enabled) override;
    void press(std::string_view button) override;
    void showMessage(const std::string& text, const std::string& title) override;
    void showMessage(const std::string& text, const std::string& title, const Tick& tick) override;
    void showAdvised(const std::string& text, const std::string& title, const std::string& advice) override;
    void ask(const std::string& text, const std::string& title,
             std::function<void(bool yes)> answered) override;

private:
    QWidget* find(std::string_view control) const;
    std::vector<QWidget*>& groupOf(ControlGroup group) { return groups_.at(static_cast<std::size_t>(group)); }

    Events& events_;
    MessageBoxes& boxes_;
    std::map<std::string, QWidget*, std::less<>> controls_;          ///< by name
    std::array<std::vector<QWidget*>, controlGroups.size()> groups_; ///< of each ControlGroup
};

} // namespace varda::window
