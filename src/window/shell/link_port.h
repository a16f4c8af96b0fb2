#pragma once

#include "core/link/serial_link.h"
#include "window/controls/form.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace varda::inline core {
class PeriodTimer;
class RuntimeError;
} // namespace varda::core

namespace varda::window {

/// Testing, opening and closing the port, with every control that this switches.
class LinkPort {
public:
    /// @param commTest serves the port test alone
    LinkPort(MSComm& commTest, SerialLink& link, PeriodTimer& tmrComm, Form& form)
        : commTest_(commTest), link_(link), tmrComm_(tmrComm), form_(form) {}

    /// What the port asks of the pages.
    struct Pages {
        /// Stops whatever runs by itself on the open port, as its stop button does: a scenario, the monitor.
        std::function<void()> stopRuns = [] {};
        /// Has the read page take its stations into its request anew.
        std::function<void()> takeReadStations = [] {};
        /// What is open, or what would be opened, has changed.
        std::function<void()> showPort = [] {};
        /// Tells what opening a port came upon, as MSComm::notice() does; an empty text, that it was nothing.
        std::function<void(const std::string& notice)> tell = [](const std::string&) {};
        /// The port was closed because its line went away; what the box that tells so may offer.
        std::function<std::optional<Form::Tick>()> offerAfterHangUp = [] { return std::nullopt; };
    };
    void setPages(Pages pages) { pages_ = std::move(pages); }

    /// The settings text of the four lists, for example "9600,n,8,1"; empty lists get their start value
    /// first.
    std::string MakeCommSettings();

    /// Tests the port of the list; the last port that passed is the one that opens.
    void cmdCommTest_Click();

    /// Opens or closes, by the button's caption.
    void cmdPortOpen_Click();

    /// Tests and opens a port as the two buttons do, but says nothing where it is not there, or not to be had
    /// yet. @return false there
    bool attach(const std::string& name);

    /// Whether a scenario or the monitor may start: the port is open and neither the read nor the write page
    /// sends continuously; else shows the message that says so.
    bool isFreeForRun();

    /// The line went away: stops what runs, closes as the button does, says why.
    void hangUp(const std::string& reason);

private:
    /// Opens the port and closes it again, and lets the link use it from now on. @return false where it went
    /// away while it was open
    /// @throws RuntimeError where it does not open
    bool takePort(const std::string& name);
    void openPort();
    void closePort();
    void switchOpened(bool open);
    void showPortError(const RuntimeError& error);
    std::string settingsAdvice() const;
    void tellHangUp(const std::string& reason);
    std::string settingText(std::string_view list, const std::string& startValue);

    MSComm& commTest_;
    SerialLink& link_;
    PeriodTimer& tmrComm_;
    Form& form_;
    Pages pages_;
};

} // namespace varda::window
