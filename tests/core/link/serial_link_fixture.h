#pragma once

#include "core/link/serial_link.h"
#include "support/fake_form.h"
#include "support/fake_port.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varda::test {

/// A link on an open port in memory, with time driven by hand.
class SerialLinkTest : public testing::Test {
protected:
    SerialLinkTest() {
        port.setEventHandler([this](CommEvent event, const std::string&) { link.commPLC_OnComm(event); });
        port.open();
        port.forgetCalls();
    }

    /// Leaves the link as it is after a request was sent.
    void awaitAnswer(int mode, int expected) {
        state.CommMode = static_cast<std::int16_t>(mode);
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
    SerialLink link{port, clock, form};
    LinkState& state = link.state();
};

/// A link whose monitor and simulator write down what they are handed.
class RolesTest : public SerialLinkTest {
protected:
    RolesTest() {
        link.setRoles({[this](const Bytes& bytes) { listed.push_back(bytes); },
                       [this] {
                           const auto count = static_cast<std::size_t>(state.RxCount);
                           requests.emplace_back(state.RxBuffer.data(), state.RxBuffer.data() + count);
                           return requestIsKnown;
                       }});
    }

    /// What the monitor lists is not kept in RxBuffer and not counted.
    static std::string countShownFor3Bytes(int mode) { return mode == comm_mode::monitoring ? "0" : "3"; }

    std::vector<Bytes> listed;
    std::vector<Bytes> requests;
    bool requestIsKnown = true;
};

} // namespace varda::test
