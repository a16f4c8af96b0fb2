#include "window/shell/link_port.h"

#include "core/base/conversion.h"
#include "core/base/period_timer.h"
#include "core/base/scope_exit.h"
#include "core/link/comm_error.h"
#include "window/shell/page_names.h"

#include <array>

namespace varda::window {
namespace {

constexpr std::string_view openCaption = "Open Port";
constexpr std::string_view closeCaption = "Close Port";

constexpr std::array<std::string_view, 6> usedOnlyWhileClosed = {"cmdCommTest", "cbPort",    "cbBaudRate",
                                                                 "cbDataBit",   "cbStopBit", "cbParityBit"};

std::string_view parityLetter(std::string_view parity) {
    // kept: any other text leaves the settings without a parity letter
    return parity == "NONE" ? "n," : parity == "EVEN" ? "e," : parity == "ODD" ? "o," : "";
}

std::string portErrorText(const RuntimeError& error) {
    return std::to_string(error.number()) + " " + error.what();
}

} // namespace

std::string LinkPort::settingText(std::string_view list, const std::string& startValue) {
    if (form_.text(list).empty()) {
        form_.setText(list, startValue);
    }
    return form_.text(list);
}

std::string LinkPort::MakeCommSettings() {
    std::string settings = settingText("cbBaudRate", "9600") + ",";
    settings += parityLetter(settingText("cbParityBit", "NONE"));
    settings += settingText("cbDataBit", "8") + ",";
    return settings + settingText("cbStopBit", "1");
}

/// Of settings that do not fall into their four fields.
std::string LinkPort::settingsAdvice() const {
    const std::string parity = form_.text("cbParityBit");
    return parityLetter(parity).empty()
               ? "Parity \"" + parity + "\" is none of NONE, EVEN and ODD. Choose it from the list."
               : "A setting of the port holds a comma. Choose it from its list.";
}

void LinkPort::showPortError(const RuntimeError& error) {
    form_.showAdvised(portErrorText(error), "Error", error.advice());
}

void LinkPort::tellHangUp(const std::string& reason) {
    const RuntimeError error(comm_error::readError, reason);
    if (const auto offer = pages_.offerAfterHangUp()) {
        form_.showMessage(portErrorText(error), "Error", *offer);
    } else {
        showPortError(error);
    }
}

bool LinkPort::takePort(const std::string& name) {
    commTest_.setCommPort(name);
    commTest_.open();
    if (!commTest_.isOpen()) {
        return false;
    }
    commTest_.close();
    link_.port().setCommPort(name);
    return true;
}

/// The test is the first to come upon the lock of a program that has ended: opening finds none any more.
void LinkPort::cmdCommTest_Click() {
    const ScopeExit told([this] { pages_.tell(commTest_.notice()); });
    try {
        if (!takePort(form_.text("cbPort"))) {
            form_.showMessage("Error !!", "Comm. Port");
            return;
        }
    } catch (const RuntimeError& error) {
        if (error.number() == comm_error::inUse) {
            form_.showAdvised("Already Using Port !! Please Select Another Port", "Error", error.advice());
        } else {
            showPortError(error);
        }
        return;
    }
    form_.setEnabled("cmdPortOpen", true);
    pages_.showPort();
}

bool LinkPort::attach(const std::string& name) {
    try {
        if (!takePort(name)) {
            return false;
        }
    } catch (const RuntimeError&) {
        return false;
    }
    pages_.tell(commTest_.notice());
    openPort();
    return true;
}

void LinkPort::cmdPortOpen_Click() {
    if (form_.text("cmdPortOpen") == openCaption) {
        openPort();
    } else {
        closePort();
    }
}

void LinkPort::openPort() {
    form_.setText("cmdPortOpen", std::string(closeCaption));
    try {
        const std::string settings = MakeCommSettings();
        advised([&] { link_.port().setSettings(settings); },
                [this](const RuntimeError& /*error*/) { return settingsAdvice(); });
        link_.port().open();
    } catch (const RuntimeError& error) {
        form_.setText("cmdPortOpen", std::string(openCaption));
        showPortError(error);
        pages_.showPort();
        return;
    }
    if (!link_.port().isOpen()) { // went away while it was opened, which hangUp() has told
        return;
    }
    if (!link_.port().notice().empty()) { // what the test told stays else
        pages_.tell(link_.port().notice());
    }
    link_.connectionOpened();
    switchOpened(true);
    if (const PageNames* const page = findPageNames(link_.state().CommMode)) {
        form_.setEnabled(page->periodField, false);
        form_.setEnabled(page->enabledByOpening, true);
        if (page->bitMode == Mode::BitRead) {
            pages_.takeReadStations();
        }
        tmrComm_.setInterval(toInteger(form_.text(page->periodField)));
    }
    tmrComm_.start();
    pages_.showPort();
}

void LinkPort::closePort() {
    form_.setText("cmdPortOpen", std::string(openCaption));
    link_.port().close();
    link_.connectionClosed();
    switchOpened(false);
    if (const PageNames* const page = findPageNames(link_.state().CommMode)) {
        form_.setEnabled(page->periodField, true);
        form_.setEnabled(page->sendButton, false);
    }
    form_.setEnabled("cmdSimStart", false);
    tmrComm_.stop();
    pages_.showPort();
}

void LinkPort::switchOpened(bool open) {
    for (const std::string_view control : usedOnlyWhileClosed) {
        form_.setEnabled(control, !open);
    }
}

void LinkPort::hangUp(const std::string& reason) {
    const ScopeExit closed([this, &reason] {
        closePort();
        tellHangUp(reason);
    });
    link_.commPLC_OnComm(CommEvent::HungUp);
    pages_.stopRuns(); // may fail where a period is no number; the port closes all the same
}

bool LinkPort::isFreeForRun() {
    if (!link_.port().isOpen()) {
        form_.showMessage("Please Port Open !!", "Warning");
        return false;
    }
    // kept: the mixed pages' boxes are not looked at
    if (form_.isTicked("chkRTimer") || form_.isTicked("chkWTimer")) {
        form_.showMessage("Currently, Program is communicating with PLC. Please turn off Check Box !!",
                          "Warning");
        return false;
    }
    return true;
}

} // namespace varda::window
