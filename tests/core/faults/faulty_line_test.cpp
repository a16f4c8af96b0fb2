#include "core/faults/faulty_line.h"

#include "core/insight/field_words.h"
#include "core/insight/trace_words.h"
#include "core/insight/traced_link.h"

namespace varda::test {
namespace {

/// A simulating link on a line in memory, whose faults and trace are those of the program.
class FaultyLineTest : public testing::Test {
protected:
    FaultyLineTest() {
        port.setEventHandler([this](CommEvent event, const std::string& reason) {
            link.commPLC_OnComm(event);
            if (event == CommEvent::HungUp) {
                hungUp = reason;
                ++hangUps;
            }
        });
        link.observe(recorder);
        table.addPair("FF00230364020490F0", "00FFA3080000000000000000C658");
        link.setRoles({.answerTo = [this](auto request) { return responder.answerTo(request); }});
        injector.setWatcher([this](const FaultDone& fault) { recorder.doneOnPurpose(fault.text); });
        recorder.open(std::chrono::system_clock::time_point(1'800'000'000s));
        port.open();
        link.enterMode(Mode::Simulation);
    }

    void plan(const char* text) { injector.setPlan(parseFaults(text), 1); }
    void ask() {
        wire.receive(bytesOfText("FF 00 23 03 64 02 04 90 F0 "));
        clock.advance(150);
    }
    /// Sends as a master page does.
    void request() {
        link.enterMode(Mode::WordRead);
        ASSERT_TRUE(link.startRequest());
        link.SendRequest(bytesOfText("FF 00 23 03 64 02 04 90 F0 "), 14);
    }
    void comeAnswer() {
        clock.advance(20);
        wire.receiveAt(clock.now(), answer);
        wire.raiseReceived();
        clock.advance(100);
    }
    std::vector<std::string> words() const {
        std::vector<std::string> lines;
        for (Trace::Number number = trace.begin(); number < trace.end(); ++number) {
            lines.push_back(cellInWords(trace, number, TraceColumn::Direction) + ": " +
                            verdictInWords(trace, number));
        }
        return lines;
    }

    ManualClock clock;
    FakeWire wire;
    FaultInjector injector;
    PacketTable table;
    Responder responder{table};
    Trace trace;
    TraceRecorder recorder{trace, clock};
    MSComm port{faulty(
        traced([this](const std::string& name) { return std::make_unique<FakeWire::NearEnd>(wire, name); },
               recorder, clock),
        injector, clock)};
    SerialLink link{port, clock};
    std::string hungUp;
    int hangUps = 0;
    const Bytes answer = bytesOfText("00 FF A3 08 00 00 00 00 00 00 00 00 C6 58 ");
};

TEST_F(FaultyLineTest, WithNoFaultOnTheAnswerGoesOutAsItIs) {
    ask();
    EXPECT_EQ(wire.written(), std::vector<Bytes>{answer});
    EXPECT_EQ(trace.size(), 3U);
}

TEST_F(FaultyLineTest, ALateAnswerGoesOutLater) {
    plan("late=120");
    ask();
    clock.advance(119);
    EXPECT_TRUE(wire.written().empty());
    clock.advance(1);
    EXPECT_EQ(wire.written(), std::vector<Bytes>{answer});
}

TEST_F(FaultyLineTest, ASplitAnswerGoesOutInTwoPieces) {
    plan("split=200");
    ask();
    ASSERT_EQ(wire.written().size(), 1U);
    clock.advance(200);
    ASSERT_EQ(wire.written().size(), 2U);
    EXPECT_EQ(wire.written()[0].size() + wire.written()[1].size(), answer.size());
}

TEST_F(FaultyLineTest, EachFaultStandsInTheTraceAsOurOwnDoing) {
    plan("check");
    ask();
    const auto lines = words();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[2], "event: Our own doing: answer 1: check broken.");
    EXPECT_EQ(lines[3], "sent: The answer of prepared pair 1.");
    EXPECT_EQ(cellInWords(trace, trace.begin() + 2, TraceColumn::Kind), "fault on purpose");
}

TEST_F(FaultyLineTest, TheTraceSaysWhyAKnownRequestHasNoAnswer) {
    plan("drop");
    ask();
    const auto lines = words();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(
        lines[1],
        "received: Known, by prepared pair 1, whose answer a fault on purpose kept back: answer 1: dropped.");
    EXPECT_TRUE(wire.written().empty());
}

TEST_F(FaultyLineTest, AFaultBeforeIsNotTakenForTheNextAnswersReason) {
    plan("drop@only1");
    ask();
    table.replace({"FF00230364020490F0"}, {"no frame"});
    ask();
    EXPECT_NE(words().back().find("the answer is no frame"), std::string::npos) << words().back();
}

TEST_F(FaultyLineTest, AFaultToWhatIsRefusedIsNotTakenForALaterAnswersReason) {
    plan("check@only1");
    link.enterMode(Mode::WordRead);
    wire.failWrite({8020, "gone"});
    ASSERT_TRUE(link.startRequest());
    EXPECT_THROW(link.SendRequest(bytesOfText("FF 00 23 03 64 02 04 90 F0 "), 14), RuntimeError);
    wire.heal();
    link.enterMode(Mode::Simulation);
    table.replace({"FF00230364020490F0"}, {"no frame"});
    ask();
    EXPECT_NE(words().back().find("the answer is no frame"), std::string::npos) << words().back();
}

TEST_F(FaultyLineTest, AHangUpClosesTheLineAndIsToldOnce) {
    plan("hangup@2nd");
    ask();
    injector.setWatcher([this](const FaultDone&) { EXPECT_TRUE(port.isOpen()) << "not inside the write"; });
    ask();
    EXPECT_EQ(hungUp, "The line was hung up on purpose, by a fault of this program.");
    EXPECT_FALSE(port.isOpen());
    clock.advance(1000);
    EXPECT_EQ(hangUps, 1);
    EXPECT_EQ(wire.written().size(), 1U);
}

TEST_F(FaultyLineTest, WhatIsOnItsWayIsLostWhenThePortIsClosed) {
    plan("late=100");
    ask();
    port.close();
    clock.advance(1000);
    EXPECT_TRUE(wire.written().empty());
}

TEST_F(FaultyLineTest, ALatePieceThatIsRefusedHarmsNothing) {
    plan("late=100");
    ask();
    wire.failWrite({8020, "gone"});
    clock.advance(100);
    EXPECT_NE(words().back().find("Not sent. gone"), std::string::npos);
}

TEST_F(FaultyLineTest, ALineThatGoesAwayByItselfTakesItsLatePiecesAlong) {
    plan("late=100");
    ask();
    wire.hangUp("pulled out");
    clock.advance(1000);
    EXPECT_TRUE(wire.written().empty());
    EXPECT_EQ(hungUp, "pulled out");
}

TEST_F(FaultyLineTest, ARequestThatGoesOutLaterHasItsAnswerInTheTrace) {
    plan("late=100");
    request();
    EXPECT_EQ(trace.size(), 2U) << "nothing has gone out yet";
    clock.advance(100);
    EXPECT_EQ(words().back(), "sent: Sent; an answer of 14 bytes is awaited.");
    comeAnswer();
    EXPECT_EQ(words().at(2), "sent: Answered 20 ms later.");
    EXPECT_EQ(words().at(3), "received: Taken: it has the 14 bytes that were awaited.");
    EXPECT_EQ(runsInWords(runsOf(framesOf(*trace.find(3)).at(0))), "W 0100 .. W 0103");
}

TEST_F(FaultyLineTest, ARequestInTwoPiecesHasItsAnswerAtTheFirst) {
    plan("split=50");
    request();
    clock.advance(50);
    comeAnswer();
    const auto lines = words();
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[2], "sent: Answered 70 ms later.");
    EXPECT_EQ(lines[3], "sent: Sent while the answer to the request before it is awaited.");
    EXPECT_EQ(lines[4], "received: Taken: it has the 14 bytes that were awaited.");
    EXPECT_EQ(runsInWords(runsOf(framesOf(*trace.find(4)).at(0))), "W 0100 .. W 0103");
}

TEST_F(FaultyLineTest, WhatCameBeforeALatePieceStandsBeforeIt) {
    plan("split=50");
    request();
    clock.advance(10);
    wire.receiveAt(clock.now(), {1});
    wire.raiseReceived();
    clock.advance(35);
    wire.receiveAt(clock.now(), {2}); // the line is going to tell of it later
    clock.advance(200);
    std::string directions;
    for (Trace::Number number = trace.begin() + 2; number < trace.end(); ++number) {
        directions += cellInWords(trace, number, TraceColumn::Direction) + ' ';
        EXPECT_GE(trace.find(number)->first, trace.find(number - 1)->first) << number;
    }
    EXPECT_EQ(directions, "sent received received sent ");
}

TEST_F(FaultyLineTest, ARequestThatIsStillOnItsWayWhenTheWaitEndsAwaitsNothing) {
    plan("late=60000");
    request();
    for (int tick = 0; tick < SerialLink::ticksOfSilence; ++tick) {
        link.tmrComm_Timer();
    }
    clock.advance(60'000);
    EXPECT_EQ(words().back(), "sent: Sent; no answer is awaited.");
}

TEST_F(FaultyLineTest, AFaultOfAFrameThatIsRefusedIsNotTakenForTheNextAnswersReason) {
    plan("check@only1");
    link.enterMode(Mode::WordRead);
    ASSERT_TRUE(link.startRequest());
    wire.failWrite({8020, "gone"});
    EXPECT_THROW(link.SendRequest(bytesOfText("FF 00 23 03 64 02 04 90 F0 "), 14), RuntimeError);
    wire.heal();
    link.enterMode(Mode::Simulation);
    table.replace({"FF00230364020490F0"}, {"no frame"});
    ask();
    EXPECT_NE(words().back().find("the answer is no frame"), std::string::npos) << words().back();
}

TEST_F(FaultyLineTest, ARequestIsCalledOne) {
    plan("check");
    request();
    EXPECT_EQ(words().at(1), "event: Our own doing: request 1: check broken.");
    EXPECT_EQ(wire.written().size(), 1U);
}

/// The same random traffic over a bare line and over one whose faults are all off.
TEST_F(FaultyLineTest, OffItIsByteForByteTheLineInIt) {
    const auto traffic = [](FakeWire& far, MSComm& comm) {
        std::mt19937 random(16'003);
        comm.open();
        for (int count = 0; count < 1000; ++count) {
            comm.write(Bytes(random() % 300, static_cast<std::uint8_t>(random())));
            far.receiveSilently(Bytes(random() % 300, static_cast<std::uint8_t>(random())));
            if (random() % 2 == 0) {
                comm.read();
            }
        }
        comm.close();
    };
    FakePort bare;
    FakeWire wrapped;
    MSComm comm(
        faulty([&](const std::string& name) { return std::make_unique<FakeWire::NearEnd>(wrapped, name); },
               injector, clock));
    traffic(bare, bare);
    traffic(wrapped, comm);
    EXPECT_EQ(bare.written(), wrapped.written());
    EXPECT_EQ(bare.calls(), wrapped.calls());
}

} // namespace
} // namespace varda::test
