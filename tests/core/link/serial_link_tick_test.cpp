#include "core/link/serial_link.h"

#include "core/link/serial_link_fixture.h"
#include "support/master_pages.h"

#include <vector>

namespace varda::test {
namespace {

using Texts = std::vector<std::string>;

const Texts statusFields{"txtRStatus", "txtWStatus", "txtMRStatus", "txtMWStatus"};

// Every mode

class EveryModeTickTest : public SerialLinkTest, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Modes, EveryModeTickTest,
                         testing::Values(0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x80, 0x81, 0xC0, 0xFF));

TEST_P(EveryModeTickTest, DoesNothingWhileAReceptionRuns) {
    awaitAnswer(GetParam(), 14);
    state.WaitTicks = 12;
    state.AnswerReceived = true;
    state.InReceive = true;
    port.receiveSilently(burst(3));

    tick(5);

    EXPECT_EQ(state.WaitTicks, 12);
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_EQ(state.RxExpected, 14);
    EXPECT_EQ(port.inBufferCount(), 3U);
    EXPECT_TRUE(form.told("txtTotalData").empty());
    EXPECT_TRUE(form.told("txtCurrentData").empty());
    EXPECT_TRUE(form.told("txtWatchDog").empty());
}

TEST_P(EveryModeTickTest, ShowsTheCountersAndCountsWhileAnAnswerIsAwaited) {
    awaitAnswer(GetParam(), 14);
    state.RxCount = 3;

    tick();

    EXPECT_EQ(form.text("txtTotalData"), "14");
    EXPECT_EQ(form.text("txtCurrentData"), "3");
    EXPECT_EQ(form.text("txtWatchDog"), "1");
    EXPECT_EQ(state.WaitTicks, 1);
    tick();
    EXPECT_EQ(form.text("txtWatchDog"), "2");
}

TEST_P(EveryModeTickTest, CountsNothingWhileNoAnswerIsAwaited) {
    awaitAnswer(GetParam(), 14);
    state.WaitingAnswer = false;
    state.WaitTicks = 4;

    tick(20);

    EXPECT_EQ(state.WaitTicks, 4);
    EXPECT_TRUE(form.told("txtWatchDog").empty());
    EXPECT_EQ(form.text("txtTotalData"), "14");
    EXPECT_TRUE(form.controlsShowing("No Answer From PLC").empty());
}

class OtherModeTickTest : public SerialLinkTest, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Modes, OtherModeTickTest, testing::Values(0x80, 0x81, 0xFF));

TEST_P(OtherModeTickTest, NeitherTimesOutNorClearsNorSends) {
    awaitAnswer(GetParam(), 14);
    state.AnswerReceived = true;
    int repeats = 0;
    link.setRoles({.repeat = [&](Mode) { ++repeats; }});
    port.receiveSilently(burst(3));

    tick(30);

    EXPECT_EQ(state.WaitTicks, 30);
    EXPECT_TRUE(state.WaitingAnswer);
    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_EQ(state.RxExpected, 14);
    EXPECT_EQ(port.inBufferCount(), 3U);
    EXPECT_EQ(repeats, 0);
    for (const auto& status : statusFields) {
        EXPECT_TRUE(form.told(status).empty()) << status;
    }
}

// Master pages

class MasterTickTest : public SerialLinkTest, public testing::WithParamInterface<MasterPage> {};

INSTANTIATE_TEST_SUITE_P(Pages, MasterTickTest, testing::ValuesIn(masterPages()), PageName());

// Mixed write's silence is told in the write page's status field.
TEST_P(MasterTickTest, SilenceIsToldOnThe13thTickInExactlyOneField) {
    for (const auto mode : {GetParam().bitMode, GetParam().wordMode}) {
        awaitAnswer(mode, 14);
        form.setText(GetParam().silenceStatus, "");
        tick(12);
        EXPECT_TRUE(form.controlsShowing("No Answer From PLC").empty());
        EXPECT_EQ(form.text("txtWatchDog"), "12");

        tick();

        EXPECT_EQ(form.controlsShowing("No Answer From PLC"), Texts{GetParam().silenceStatus});
    }
}

TEST_P(MasterTickTest, SilenceClearsTheExchange) {
    awaitAnswer(GetParam().wordMode, 14);
    state.RxCount = 3;
    port.receiveSilently(burst(3));

    tick(13);

    EXPECT_EQ(state.WaitTicks, 0);
    EXPECT_FALSE(state.AnswerReceived);
    EXPECT_FALSE(state.WaitingAnswer);
    EXPECT_EQ(state.RxExpected, 0);
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_EQ(form.text("txtWatchDog"), "0");
    EXPECT_EQ(form.text("txtTotalData"), "0");
    EXPECT_EQ(form.text("txtCurrentData"), "0");
    EXPECT_EQ(port.inBufferCount(), 0U);
    EXPECT_TRUE(form.messages().empty());
}

TEST_P(MasterTickTest, SilenceIsToldOnce) {
    awaitAnswer(GetParam().bitMode, 14);
    tick(40);
    EXPECT_EQ(form.told(GetParam().silenceStatus), Texts{"No Answer From PLC"});
}

TEST_P(MasterTickTest, SilenceIsCountedFromTheLastReceptionNotFromSending) {
    awaitAnswer(GetParam().bitMode, 14);
    tick(12);
    port.receive(burst(1));
    clock.advance(100);
    // Awaited again without the counter of a new send.
    state.WaitingAnswer = true;

    tick(12);
    EXPECT_TRUE(form.controlsShowing("No Answer From PLC").empty());
    tick();
    EXPECT_EQ(form.controlsShowing("No Answer From PLC"), Texts{GetParam().silenceStatus});
}

TEST_P(MasterTickTest, TickAfterAReceptionClearsWhatItLeft) {
    awaitAnswer(GetParam().bitMode, 14);
    port.receive(burst(14));
    clock.advance(100);
    port.receiveSilently(burst(2));

    tick();

    EXPECT_FALSE(state.AnswerReceived);
    EXPECT_EQ(state.RxExpected, 0);
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_EQ(form.text("txtTotalData"), "0");
    EXPECT_EQ(form.text("txtCurrentData"), "0");
    EXPECT_EQ(port.inBufferCount(), 0U);
    EXPECT_EQ(form.text(GetParam().completionStatus), "Data Receive OK !!");
    EXPECT_EQ(form.text(GetParam().answer), groups(burst(14)));
}

TEST_P(MasterTickTest, TickBeforeAnyReceptionLeavesTheInputAlone) {
    awaitAnswer(GetParam().bitMode, 14);
    port.receiveSilently(burst(2));
    tick();
    EXPECT_EQ(port.inBufferCount(), 2U);
    EXPECT_EQ(state.RxExpected, 14);
}

// Scenario

TEST_F(SerialLinkTest, SilenceOfAScenarioIsToldOnTheWritePage) {
    awaitAnswer(0xC0, 14);
    state.RxCount = 3;
    port.receiveSilently(burst(3));
    tick(12);
    EXPECT_TRUE(form.controlsShowing("No Answer From PLC").empty());

    tick();

    EXPECT_EQ(form.controlsShowing("No Answer From PLC"), Texts{"txtWStatus"});
    EXPECT_EQ(state.WaitTicks, 0);
    EXPECT_EQ(state.RxExpected, 0);
    EXPECT_EQ(state.RxCount, 0);
    EXPECT_EQ(form.text("txtWatchDog"), "0");
    EXPECT_EQ(form.text("txtTotalData"), "0");
    EXPECT_EQ(form.text("txtCurrentData"), "0");
    EXPECT_EQ(port.inBufferCount(), 0U);
    EXPECT_TRUE(form.messages().empty());
}

TEST_F(SerialLinkTest, SilenceOfAScenarioIsCountedFromTheLastReception) {
    awaitAnswer(0xC0, 14);
    tick(12);
    port.receive(burst(14));
    clock.advance(100);
    state.WaitingAnswer = true;
    tick(12);
    EXPECT_EQ(form.text("txtWStatus"), "");
    tick();
    EXPECT_EQ(form.text("txtWStatus"), "No Answer From PLC");
}

TEST_F(SerialLinkTest, TickOfAScenarioLeavesTheReceivedAnswerAndTheInputAlone) {
    awaitAnswer(0xC0, 14);
    port.receive(burst(14));
    clock.advance(100);
    port.receiveSilently(burst(2));
    int repeats = 0;
    link.setRoles({.repeat = [&](Mode) { ++repeats; }});

    tick(3);

    EXPECT_TRUE(state.AnswerReceived);
    EXPECT_EQ(state.RxExpected, 14);
    EXPECT_EQ(port.inBufferCount(), 2U);
    EXPECT_EQ(repeats, 0);
}

} // namespace
} // namespace varda::test
