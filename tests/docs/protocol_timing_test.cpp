#include "core/link/serial_link_fixture.h"
#include "core/virtual/controller.h"
#include "core/virtual/virtual_line.h"
#include "docs/protocol_document.h"

#include <functional>
#include <stdexcept>

namespace varda::test {
namespace {

/// The timing table, held against a link whose time is driven by hand.
class ProtocolDocumentTiming : public RolesTest {
protected:
    /// The figure of the one row that has `words` in it.
    static std::string figure(std::string_view words) {
        const ProtocolDocument document = readProtocolDocument();
        Texts figures;
        for (const Texts& row : document.rows("wait | figure", 5)) {
            if (row.at(0).find(words) != std::string::npos) {
                figures.push_back(row.at(1));
            }
        }
        return figures.size() == 1 ? figures.front() : throw std::runtime_error("no one row has these words");
    }

    std::string timeUntil(const std::function<bool()>& happened) {
        int milliseconds = 0;
        for (; milliseconds < 1000 && !happened(); ++milliseconds) {
            clock.advance(1);
        }
        return std::to_string(milliseconds) + " ms";
    }
};

TEST_F(ProtocolDocumentTiming, AnAnswerIsTakenAfterItsWait) {
    awaitAnswer(0x21, 9);
    port.receive(burst(9));
    EXPECT_EQ(figure("an answer, from its first byte"),
              timeUntil([this] { return form.text("txtRStatus") == "Data Receive OK !!"; }));
}

TEST_F(ProtocolDocumentTiming, AHeardBurstIsListedAfterItsWait) {
    state.CommMode = Mode::Monitoring;
    port.receive(burst(9));
    EXPECT_EQ(figure("while monitoring"), timeUntil([this] { return !listed.empty(); }));
}

TEST_F(ProtocolDocumentTiming, ARequestToTheSimulationIsTakenAfterTheSilence) {
    state.CommMode = Mode::Simulation;
    port.receive(burst(9));
    EXPECT_EQ(figure("a request to the simulation"), timeUntil([this] { return !requests.empty(); }));
}

TEST_F(ProtocolDocumentTiming, TheMasterGivesUpAtItsTick) {
    awaitAnswer(0x21, 9);
    int ticks = 0;
    while (ticks < 100 && form.text("txtRStatus") != "No Answer From PLC") {
        tick();
        ++ticks;
    }
    EXPECT_EQ(figure("ticks of silence"), std::to_string(ticks));
}

TEST_F(ProtocolDocumentTiming, TheEmbeddedControllerAnswersAfterItsDelay) {
    Controller controller;
    VirtualLine line(controller, clock);
    line.open({});
    line.write({0xFF, 0xFF, 0x23, 0x03, 0x00, 0x0C, 0x01, 0x01, 0x43});
    EXPECT_EQ(figure("the embedded controller"), timeUntil([&line] { return line.inBufferCount() > 0; }));
}

} // namespace
} // namespace varda::test
