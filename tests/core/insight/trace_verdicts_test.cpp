#include "core/insight/trace_words.h"
#include "core/insight/traced_link.h"

namespace varda::test {
namespace {

class TraceVerdicts : public TracedLinkTest {};

TEST_F(TraceVerdicts, AnswerIsTaken) {
    send(wordRead, 10);
    EXPECT_EQ(verdict(1), "Sent; an answer of 10 bytes is awaited.");
    receive(wordAnswer, 23);
    EXPECT_EQ(verdict(2), "Waits to be read.");
    clock.advance(100);
    ASSERT_EQ(lines(), 3U);
    EXPECT_EQ(verdict(0), "The port was opened with 9600,n,8,1.");
    EXPECT_EQ(verdict(1), "Answered 23 ms later.");
    EXPECT_EQ(verdict(2), "Taken: it has the 10 bytes that were awaited.");
    EXPECT_FALSE(isWrong(1) || isWrong(2));
}

TEST_F(TraceVerdicts, WrongCheckIsTakenBecauseOnlyTheLengthCounts) {
    send(wordRead, 10);
    receive("00 05 A3 04 34 12 CD AB 47 43 ");
    clock.advance(100);
    EXPECT_EQ(verdict(2),
              "Taken: it has the 10 bytes that were awaited. Nothing else is looked at. The check is "
              "4347h; of the bytes before it, it is 4247h.");
    EXPECT_TRUE(isWrong(2));
}

TEST_F(TraceVerdicts, SilenceEndsTheWaitAndWhatComesLaterIsLate) {
    send(wordRead, 10);
    clock.advance(6500);
    tick(13);
    ASSERT_EQ(lines(), 3U);
    EXPECT_EQ(verdict(1), "No answer within 13 ticks of silence.");
    EXPECT_EQ(verdict(2), "The wait for the answer was given up after 13 ticks of silence.");
    receive(wordAnswer, 12);
    clock.advance(100);
    EXPECT_EQ(verdict(3),
              "Dropped: it came 6512 ms after the request, when the wait for the answer had ended.");
    EXPECT_TRUE(isWrong(1) && isWrong(2) && isWrong(3));
}

TEST_F(TraceVerdicts, BytesBeforeASendAreThrownAway) {
    send(wordRead, 10);
    wire.receiveAt(clock.now() + 3ms, bytesOfText("00 05 A3 "));
    clock.advance(5);
    send(wordRead, 10);
    ASSERT_EQ(lines(), 4U);
    EXPECT_EQ(verdict(1),
              "The next request went out, or the link went on to something else, before an answer came.");
    EXPECT_EQ(verdict(2), "Thrown away unread, before the next send. The frame is cut: 3 bytes are missing.");
    EXPECT_EQ(line(2).bytes, bytesOfText("00 05 A3 "));
    EXPECT_EQ(line(2).first - line(1).first, 3ms);
}

TEST_F(TraceVerdicts, BytesBehindAnAnswerAreThrownAwayByTheNextTick) {
    send(wordRead, 10);
    receive(wordAnswer);
    clock.advance(100);
    wire.receiveSilently({1, 2});
    tick(1);
    const std::string told =
        "Thrown away unread, by the tick that follows a reception. It is too short for a frame.";
    EXPECT_EQ(verdict(3), told);
    clock.advance(10min);
    send(wordRead, 10);
    EXPECT_EQ(verdict(3), told);
}

TEST_F(TraceVerdicts, BytesThatWaitWhenTheWaitIsGivenUpAreThrownAwayWithIt) {
    send(wordRead, 10);
    tick(12);
    wire.receiveSilently({1, 2});
    tick(1);
    EXPECT_EQ(verdict(2),
              "Thrown away unread, when the wait for an answer was given up. It is too short for a frame.");
}

TEST_F(TraceVerdicts, BytesThatTheLinkDidNotKnowOfAreThrownAwayWithoutACause) {
    wire.receiveSilently({1, 2});
    port.discard();
    EXPECT_EQ(verdict(1), "Thrown away unread. It is too short for a frame.");
}

TEST_F(TraceVerdicts, WhatCameWhileTheLinkWasStuckSaysSo) {
    send(wordRead, 10);
    link.commPLC_OnComm(CommEvent::Received);
    clock.advance(100);
    EXPECT_EQ(verdict(2),
              "The port told of bytes, and none were there. The link's timer stands still until something "
              "comes in.");
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_EQ(verdict(3),
              "Taken: it has the 10 bytes that were awaited. It came while the link was stuck after an event "
              "that led to nothing: its timer had stood still.");
    send(wordRead, 10);
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_FALSE(line(lines() - 1).whileStuck);
}

TEST_F(TraceVerdicts, HangUpLosesWhatWaits) {
    send(wordRead, 10);
    receive("00 05 ");
    wire.hangUp("ttyS0 went away: it was unplugged.");
    EXPECT_EQ(verdict(2), "Lost before it was read. The line went away. It is too short for a frame.");
    EXPECT_EQ(verdict(3), "ttyS0 went away: it was unplugged.");
    EXPECT_TRUE(isWrong(3));
}

TEST_F(TraceVerdicts, HangUpEndsTheRequestThatWaited) {
    send(wordRead, 10);
    wire.hangUp("ttyS0 went away: it was unplugged.");
    EXPECT_EQ(verdict(1), "No answer came. The line went away.");
}

TEST_F(TraceVerdicts, AnswerThatIsIgnoredEndsItsRequest) {
    send(wordRead, 10);
    link.enterMode(Mode::MonitorIdle);
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_EQ(verdict(1), "What came for it was dropped, and the wait ended with that.");
}

TEST_F(TraceVerdicts, ClosingLosesWhatWaitsToo) {
    receive("00 05 ");
    port.close();
    EXPECT_EQ(verdict(1), "Lost before it was read. The port was closed. It is too short for a frame.");
}

TEST_F(TraceVerdicts, FailedReadingLosesWhatWaited) {
    send(wordRead, 10);
    receive(wordAnswer);
    wire.failRead(RuntimeError(8020, "Read error"));
    clock.advance(100);
    EXPECT_EQ(verdict(1), "What came for it was dropped, and the wait ended with that.");
    EXPECT_EQ(verdict(2), "Lost before it was read. Reading failed: Read error.");
    wire.heal();
    send(wordRead, 10);
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_EQ(verdict(4), "Taken: it has the 10 bytes that were awaited.");
}

TEST_F(TraceVerdicts, RefusedBytesAreNotSent) {
    wire.failWrite(RuntimeError(8020, "Write error"));
    EXPECT_TRUE(link.startRequest());
    EXPECT_THROW(link.SendRequest(bytesOfText(wordRead), 10), RuntimeError);
    ASSERT_EQ(lines(), 2U);
    EXPECT_EQ(verdict(1), "Not sent. Write error");
    EXPECT_TRUE(isWrong(1));
}

TEST_F(TraceVerdicts, ClosedPortSendsNothing) {
    link.enterMode(Mode::Scenario);
    port.close();
    link.sendScenarioFrame(bytesOfText(wordRead), 10);
    EXPECT_EQ(verdict(1), "The port was closed.");
    EXPECT_EQ(verdict(2), "Not sent. The port is closed.");
}

TEST_F(TraceVerdicts, ModeWithoutUseForBytesDropsThem) {
    link.enterMode(Mode::MonitorIdle);
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_EQ(verdict(1), "Dropped: what is shown has no use for bytes that come in.");
}

TEST_F(TraceVerdicts, MonitorListsAndReadsAnswersByTheRequestBeforeThem) {
    link.enterMode(Mode::Monitoring);
    receive(wordRead);
    clock.advance(100);
    receive(wordAnswer, 50);
    clock.advance(100);
    EXPECT_EQ(verdict(1), "Listed by the monitor.");
    ASSERT_NE(line(2).request, nullptr);
    EXPECT_EQ(*line(2).request, bytesOfText(wordRead));
    EXPECT_FALSE(isWrong(2));
}

TEST_F(TraceVerdicts, MonitorTakesNoRequestOfTheProgramForTheLinesOwn) {
    send(wordRead, 10);
    link.enterMode(Mode::Monitoring);
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_EQ(line(2).request, nullptr);
    receive(wordRead);
    receive(wordAnswer, 30); // read together, and yet two frames
    clock.advance(100);
    EXPECT_EQ(line(3).request, nullptr);
    EXPECT_EQ(kindOfLine(line(3)), "word read");
    EXPECT_EQ(kindOfLine(line(4)), "answer to word read");
    EXPECT_TRUE(framesOf(line(4)).at(0).answersRequest);
    EXPECT_EQ(verdict(4),
              "Listed by the monitor. Part 2 of 2: bytes 9 to 18 of the 19 that were read together.");
}

TEST_F(TraceVerdicts, UnawaitedBytesSaySo) {
    link.sendUnawaited(bytesOfText(wordRead));
    EXPECT_EQ(verdict(1), "Sent; no answer is awaited.");
}

TEST_F(TraceVerdicts, FrameOfAScenarioWhoseAnswerHasNoKnownLengthAwaitsOne) {
    const Bytes unknown = checked(bytesOfText("05 00 77 01 00 "));
    link.enterMode(Mode::Scenario);
    link.sendScenarioFrame(unknown, std::nullopt);
    EXPECT_EQ(verdict(1),
              "Sent; an answer is awaited, but its length is not known, so whatever comes is dropped.");
    receive("F7 00 ");
    receive("05 ", 40);
    clock.advance(100);
    EXPECT_EQ(verdict(1), "What came for it was dropped, and the wait ended with that.");
    for (const std::size_t part : {2U, 3U}) {
        EXPECT_TRUE(
            verdict(part).starts_with("Dropped: an answer was awaited, but its length was not known, so "
                                      "whatever came was dropped."))
            << verdict(part);
    }
    receive("F7 ");
    clock.advance(100);
    EXPECT_EQ(verdict(4), "Dropped: no answer was awaited. It is too short for a frame.");
    link.sendScenarioFrame(unknown, std::nullopt);
    link.sendScenarioFrame(unknown, std::nullopt);
    EXPECT_EQ(verdict(5),
              "The next request went out, or the link went on to something else, before an answer came.");
    tick(13);
    EXPECT_EQ(verdict(6), "No answer within 13 ticks of silence.");
    EXPECT_EQ(verdict(7), "The wait for the answer was given up after 13 ticks of silence.");
}

TEST_F(TraceVerdicts, AnswerThatIsTakenCountsAlsoBehindNoise) {
    send(wordRead, 10);
    receive("F7 ");
    clock.advance(100);
    EXPECT_EQ(verdict(1), "What came for it was dropped, and the wait ended with that.");
    receive(wordAnswer, 10);
    clock.advance(100);
    EXPECT_EQ(verdict(1), "Answered 110 ms later.");
    EXPECT_FALSE(isWrong(1));
    EXPECT_EQ(line(1).partner, 3U);
    receive("F7 ");
    clock.advance(100);
    EXPECT_EQ(verdict(1), "Answered 110 ms later.");
}

TEST_F(TraceVerdicts, AnswerOfAnotherStationIsWrong) {
    send(wordRead, 10);
    receive(hexGroups(checked(bytesOfText("00 07 A3 04 34 12 CD AB "))).c_str());
    clock.advance(100);
    EXPECT_TRUE(isWrong(2));
}

TEST_F(TraceVerdicts, ClosedPortAnswersNothing) {
    send(wordRead, 10);
    port.close();
    link.connectionClosed();
    EXPECT_EQ(verdict(1), "No answer came. The port was closed.");
    EXPECT_TRUE(isWrong(1));
    port.open();
    link.connectionOpened();
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_EQ(line(lines() - 1).request, nullptr);
}

TEST_F(TraceVerdicts, HeardRequestIsForgottenWhenThePortIsClosed) {
    link.enterMode(Mode::Monitoring);
    receive(wordRead);
    clock.advance(100);
    port.close();
    port.open();
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_EQ(line(lines() - 1).request, nullptr);
}

TEST_F(TraceVerdicts, TraceThatIsClosedSaysWhatItDidNotSee) {
    send(wordRead, 10);
    receive("00 05 ");
    recorder.close();
    EXPECT_EQ(verdict(1), "The trace was closed before anything became of it.");
    EXPECT_EQ(verdict(2), "The trace was closed before anything became of it. It is too short for a frame.");
    clock.advance(100);
    EXPECT_EQ(lines(), 3U);
    EXPECT_FALSE(isWrong(1));
}

TEST_F(TraceVerdicts, OpenedAnewTheTraceJudgesNothingFromBefore) {
    wire.receiveSilently({1, 2});
    port.discard(); // nobody tells why
    wire.receiveSilently({3, 4});
    port.read(); // nor what becomes of these
    recorder.doneOnPurpose("answer 1: dropped");
    recorder.close();
    recorder.open();
    Exchange later;
    later.outcome = Outcome::ThrownAway;
    recorder.told(later);
    later.outcome = Outcome::Ignored;
    recorder.told(later);
    EXPECT_EQ(verdict(1), "Thrown away unread. It is too short for a frame.");
    EXPECT_EQ(line(2).verdict, Verdict::Unread);
    table.addPair(hexRun(bytesOfText(wordRead)), "no frame");
    link.enterMode(Mode::Simulation);
    hear(wordRead);
    EXPECT_TRUE(verdict(lines() - 1).ends_with("the answer is no frame.")) << verdict(lines() - 1);
}

TEST_F(TraceVerdicts, StuckIsWhatTheLinkIsAndNotWhatItWas) {
    send(wordRead, 10);
    link.commPLC_OnComm(CommEvent::Received);
    clock.advance(100);
    link.enterMode(Mode::Simulation);
    link.enterMode(Mode::WordRead); // leaving the simulation frees the link
    EXPECT_FALSE(link.state().InReceive);
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_FALSE(line(lines() - 1).whileStuck);
    link.enterMode(Mode::Simulation);
    link.commPLC_OnComm(CommEvent::Received);
    EXPECT_TRUE(verdict(lines() - 1).starts_with("The port told of bytes, and none were there."))
        << verdict(lines() - 1);
    hear(wordRead);
    EXPECT_TRUE(line(lines() - 1).whileStuck);
}

TEST_F(TraceVerdicts, StuckInOneModeIsStuckInTheNext) {
    link.enterMode(Mode::Monitoring);
    link.commPLC_OnComm(CommEvent::Received);
    clock.advance(100);
    link.enterMode(Mode::WordRead);
    send(wordRead, 10);
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_TRUE(line(lines() - 1).whileStuck);
}

} // namespace
} // namespace varda::test
