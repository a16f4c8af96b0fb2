#pragma once

#include "window/shell/link_port.h"
#include "window/shell/link_presenter.h"

#include "support/fake_form.h"
#include "support/fake_port.h"
#include "support/manual_clock.h"
#include "support/master_pages.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace varda::test {

using Texts = std::vector<std::string>;

inline const Texts settingControls{"cmdCommTest", "cbPort",    "cbBaudRate",
                                   "cbDataBit",   "cbStopBit", "cbParityBit"};

/// The serial settings as they stand at the start of the program, with the port closed.
class LinkPortTest : public testing::Test {
protected:
    LinkPortTest() {
        form.setText("cbPort", "COM1");
        setLists("9600", "8", "1", "NONE");
        form.setText("cmdPortOpen", "Open Port");
        form.setEnabled("cmdPortOpen", false);
        for (const auto& page : masterPages()) {
            form.setText(page.periodField, "500");
            form.setEnabled(page.sendButton, false);
        }
        tmrComm.setInterval(500);
        link.observe(presenter);
        link.observeCounters(presenter);
        linkPort.setPages({.stopRuns = [] {}, .takeReadStations = [this] { ++stationsTaken; }});
        commPLC.setEventHandler([this](CommEvent event, const std::string& reason) {
            if (event == CommEvent::HungUp) {
                linkPort.hangUp(reason);
            } else {
                link.commPLC_OnComm(event);
            }
        });
    }

    void setLists(const std::string& baudRate, const std::string& dataBits, const std::string& stopBits,
                  const std::string& parity) {
        form.setText("cbBaudRate", baudRate);
        form.setText("cbDataBit", dataBits);
        form.setText("cbStopBit", stopBits);
        form.setText("cbParityBit", parity);
    }

    void setMode(int mode) { link.enterMode(Mode{static_cast<std::int16_t>(mode)}); }

    void testPort(const std::string& name) {
        form.setText("cbPort", name);
        linkPort.cmdCommTest_Click();
    }

    void openAs(int mode) {
        setMode(mode);
        testPort("COM3");
        linkPort.cmdPortOpen_Click();
        ASSERT_TRUE(commPLC.isOpen());
    }

    bool allSettings(bool enabled) const {
        return std::all_of(settingControls.begin(), settingControls.end(),
                           [&](const auto& control) { return form.isEnabled(control) == enabled; });
    }

    /// The master controls that opening and closing may switch, as far as they are enabled.
    Texts enabledMasterControls() const {
        Texts controls;
        for (const auto& page : masterPages()) {
            for (const auto& control : {page.periodField, page.sendButton}) {
                if (form.isEnabled(control)) {
                    controls.push_back(control);
                }
            }
        }
        return controls;
    }

    ManualClock clock;
    FakeForm form;
    FakePort commPLC;
    FakePort commTest;
    SerialLink link{commPLC, clock};
    window::LinkPresenter presenter{form};
    ManualTimer tmrComm{clock, [] {}};
    int stationsTaken = 0;
    window::LinkPort linkPort{commTest, link, tmrComm, form};
};

} // namespace varda::test
