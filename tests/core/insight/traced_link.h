#pragma once

#include "core/insight/trace_recorder.h"
#include "core/insight/verdict_words.h"
#include "core/link/serial_link.h"
#include "core/pairs/packet_table.h"
#include "core/runs/responder.h"
#include "support/fake_port.h"
#include "support/manual_clock.h"

#include "core/protocol/frame_text.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/random_draws.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace varda::test {

using namespace std::chrono_literals;

/// A link on an open port in memory whose line is traced, with time driven by hand.
class TracedLinkTest : public testing::Test {
protected:
    // stations 5 and 0: two words from W 0000, answered with 1234h and ABCDh
    static constexpr const char* wordRead = "05 00 23 03 00 02 02 0B 22 ";
    static constexpr const char* wordAnswer = "00 05 A3 04 34 12 CD AB 47 42 ";

    TracedLinkTest() {
        port.setEventHandler([this](CommEvent event, const std::string&) { link.commPLC_OnComm(event); });
        link.observe(recorder);
        link.setRoles({.answerTo = [this](std::span<const std::uint8_t> request) {
            return responder.answerTo(request);
        }});
        recorder.setPairs(table);
        recorder.open(std::chrono::system_clock::time_point(1'800'000'000s));
        port.open();
    }

    /// Sends as a master page does. @param request a frame text
    void send(const char* request, int expected) {
        ASSERT_TRUE(link.startRequest());
        link.SendRequest(bytesOfText(request), expected);
    }
    /// Bytes come in, with their event, after so many milliseconds.
    void receive(const char* bytes, int after = 0) {
        clock.advance(after);
        wire.receiveAt(clock.now(), bytesOfText(bytes));
        wire.raiseReceived();
    }
    /// A burst comes in on a line that is listened to, or a request to the simulation, and is dealt with.
    void hear(const char* bytes) {
        receive(bytes);
        clock.advance(150);
    }
    void tick(int times) {
        for (int count = 0; count < times; ++count) {
            link.tmrComm_Timer();
        }
    }

    std::size_t lines() const { return trace.size(); }
    const TraceLine& line(std::size_t index) const { return *trace.find(trace.begin() + index); }
    std::string verdict(std::size_t index) const { return verdictInWords(trace, trace.begin() + index); }
    bool isWrong(std::size_t index) const { return trace.isWrong(trace.begin() + index); }

    ManualClock clock;
    FakeWire wire;
    PacketTable table;
    Responder responder{table};
    Trace trace;
    TraceRecorder recorder{trace, clock};
    MSComm port{
        traced([this](const std::string& name) { return std::make_unique<FakeWire::NearEnd>(wire, name); },
               recorder, clock)};
    SerialLink link{port, clock};
};

} // namespace varda::test
