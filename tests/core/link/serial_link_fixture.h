#pragma once

#include "core/link/serial_link.h"
#include "support/fake_form.h"
#include "support/fake_port.h"
#include "support/link_state.h"
#include "support/manual_clock.h"
#include "window/shell/link_presenter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varda::test {

/// A link on an open port in memory, with time driven by hand.
class SerialLinkTest : public testing::Test {
protected:
    SerialLinkTest() {
        port.setEventHandler([this](CommEvent event, const std::string&) { link.commPLC_OnComm(event); });
        link.observe(presenter);
        link.observeCounters(presenter);
        port.open();
        port.forgetCalls();
    }

    /// Leaves the link as it is after a request was sent.
    void awaitAnswer(int mode, int expected) {
        state.CommMode = Mode{static_cast<std::int16_t>(mode)};
        state.RxExpected = static_cast<std::int16_t>(expected);
        state.RxCount = 0;
        state.WaitTicks = 0;
        state.AnswerReceived = false;
        state.WaitingAnswer = true;
    }

    void tick(int times = 1) {
        for (int i = 0; i < times; ++i) {
            link.tmrComm_Timer();
        }
    }

    /// Bytes that differ from their neighbours: first, first + 1 and so on, the eighth bit included.
    static Bytes burst(std::size_t count, unsigned first = 0xF8) {
        Bytes bytes(count);
        for (std::size_t i = 0; i < count; ++i) {
            bytes[i] = static_cast<std::uint8_t>((first + i) & 0xFFU);
        }
        return bytes;
    }

    static std::string groups(const Bytes& bytes) {
        const std::string digits = "0123456789ABCDEF";
        std::string text;
        for (const auto byte : bytes) {
            text += {digits[byte / 16U], digits[byte % 16U], ' '};
        }
        return text;
    }

    ManualClock clock;
    FakePort port;
    FakeForm form;
    SettableLink link{port, clock};
    window::LinkPresenter presenter{form};
    LinkState& state = link.ownState();
};

/// A link whose monitor and simulator write down what they are handed.
class RolesTest : public SerialLinkTest, public LinkObserver {
protected:
    RolesTest() {
        link.observe(*this);
        link.setRoles({.answerTo = [this](std::span<const std::uint8_t> request) {
            requests.emplace_back(request.begin(), request.end());
            return requestIsKnown ? std::optional(PreparedAnswer{}) : std::nullopt;
        }});
    }

    void told(const Exchange& exchange) override {
        if (exchange.outcome == Outcome::Heard) {
            listed.push_back(exchange.answer);
        }
    }

    /// What the monitor lists is not counted, and an answered request is not counted any more.
    static std::string countShownFor3Bytes(int mode) {
        return Mode(mode) == Mode::Monitoring || Mode(mode) == Mode::Simulation ? "0" : "3";
    }

    std::vector<Bytes> listed;
    std::vector<Bytes> requests;
    bool requestIsKnown = true;
};

} // namespace varda::test
