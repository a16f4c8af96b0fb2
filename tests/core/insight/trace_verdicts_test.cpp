#include "core/insight/field_words.h"
#include "core/insight/trace_words.h"
#include "core/insight/traced_link.h"
#include "core/protocol/independent_encoder.h"

#include <algorithm>
#include <cctype>

namespace varda::test {
namespace {

// stations 5 and 0: two words from W 0000, answered with 1234h and ABCDh
constexpr const char* wordRead = "05 00 23 03 00 02 02 0B 22 ";
constexpr const char* wordAnswer = "00 05 A3 04 34 12 CD AB 47 42 ";

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

TEST_F(TraceVerdicts, ShortBurstIsDroppedAndTheRestCameLater) {
    send(wordRead, 10);
    receive("00 05 A3 04 34 12 ");
    clock.advance(100);
    EXPECT_EQ(verdict(2),
              "Dropped: 6 of 10 bytes had come when it was read. The frame is cut: 4 bytes are missing.");
    receive("CD AB 47 42 ", 20);
    clock.advance(100);
    EXPECT_EQ(verdict(1), "What came for it was dropped, and the wait ended with that.");
    EXPECT_EQ(verdict(2),
              "Dropped: 6 of 10 bytes had come when it was read. The rest came 120 ms later. The frame is "
              "cut: 4 bytes are missing.");
    EXPECT_EQ(verdict(3),
              "Dropped: the last 4 of 10 bytes; those before them had been dropped already, for pieces are "
              "not put together.");
}

TEST_F(TraceVerdicts, LongBurstIsDropped) {
    send(wordRead, 9);
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_EQ(verdict(2), "Dropped: 10 bytes, 1 more than were awaited.");
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

TEST_F(TraceVerdicts, RequestThatStillComesInIsThrownAwayWithTheSimulation) {
    link.enterMode(Mode::Simulation);
    receive(wordRead);
    link.enterMode(Mode::WordRead);
    EXPECT_EQ(verdict(1), "Thrown away unread, when the simulation was left.");
}

TEST_F(TraceVerdicts, BytesBehindARequestAreThrownAwayWithIt) {
    link.setRoles({.answerTo = [this](std::span<const std::uint8_t>) {
        wire.receiveSilently({1, 2});
        return std::optional<PreparedAnswer>();
    }});
    link.enterMode(Mode::Simulation);
    receive(wordRead);
    clock.advance(150);
    EXPECT_EQ(verdict(2),
              "Thrown away unread, when the request before it had been dealt with. It is too short "
              "for a frame.");
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

TEST_F(TraceVerdicts, KnownRequestOnAPortThatWasClosedMeanwhileIsNotAnswered) {
    link.setRoles({.answerTo = [this](std::span<const std::uint8_t>) {
        port.close();
        return std::optional(PreparedAnswer{.pair = 4, .bytes = bytesOfText(wordAnswer)});
    }});
    link.enterMode(Mode::Simulation);
    receive(wordRead);
    clock.advance(150);
    EXPECT_EQ(verdict(1),
              "Known, by prepared pair 5, but nothing was sent: the port is closed or did not take the "
              "answer, or the answer is no frame.");
    EXPECT_EQ(lines(), 3U); // the closing is the last one
}

TEST_F(TraceVerdicts, RequestToTheMemoryOnAPortThatWasClosedMeanwhileIsNotAnswered) {
    link.setRoles({.answerTo = [this](std::span<const std::uint8_t>) {
        port.close();
        return std::optional(PreparedAnswer{.pair = std::nullopt, .bytes = bytesOfText(wordAnswer)});
    }});
    link.enterMode(Mode::Simulation);
    receive(wordRead);
    clock.advance(150);
    EXPECT_EQ(
        verdict(1),
        "Known, by the controller's memory, but nothing was sent: the port is closed or did not take the "
        "answer, or the answer is no frame.");
}

TEST_F(TraceVerdicts, AnswerThatThePortRefusedHidesNoLaterRefusal) {
    table.addPair(hexRun(bytesOfText(wordRead)), hexRun(bytesOfText(wordAnswer)));
    link.enterMode(Mode::Simulation);
    wire.failWrite(RuntimeError(8020, "Write error"));
    receive(wordRead);
    clock.advance(150);
    EXPECT_EQ(verdict(2), "Not sent. Write error");
    link.enterMode(Mode::Scenario);
    port.close();
    link.sendScenarioFrame(bytesOfText(wordRead), 10);
    EXPECT_EQ(verdict(lines() - 1), "Not sent. The port is closed.");
}

TEST_F(TraceVerdicts, StuckAfterAnUnknownRequestSaysSo) {
    const std::string after =
        " It came while the link was stuck after a request that no pair answers: its timer had stood still.";
    link.enterMode(Mode::Simulation);
    receive(wordRead);
    clock.advance(150);
    EXPECT_FALSE(line(1).whileStuck);
    receive(wordRead);
    clock.advance(150);
    EXPECT_EQ(verdict(2), "No prepared request matches. None is prepared." + after);
    table.addPair(hexRun(bytesOfText(wordRead)), hexRun(bytesOfText(wordAnswer)));
    receive(wordRead);
    clock.advance(150);
    EXPECT_EQ(verdict(3), "Answered by prepared pair 1." + after);
    receive(wordRead);
    clock.advance(150);
    EXPECT_EQ(verdict(5), "Answered by prepared pair 1.");
}

TEST_F(TraceVerdicts, StuckAfterARequestFromBeforeTheTraceSaysSoToo) {
    recorder.close();
    link.enterMode(Mode::Simulation);
    receive(wordRead);
    clock.advance(150);
    recorder.open();
    receive(wordRead);
    clock.advance(150);
    EXPECT_TRUE(line(lines() - 1).afterUnknown);
    EXPECT_TRUE(line(lines() - 1).whileStuck);
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

TEST_F(TraceVerdicts, PreparedPairAnswers) {
    table.addPair("050023030002020000", "00");
    table.addPair(hexRun(bytesOfText(wordRead)), hexRun(bytesOfText(wordAnswer)));
    link.enterMode(Mode::Simulation);
    receive(wordRead);
    clock.advance(150);
    ASSERT_EQ(lines(), 3U);
    EXPECT_EQ(verdict(1), "Answered by prepared pair 2.");
    EXPECT_EQ(verdict(2), "The answer of prepared pair 2.");
    EXPECT_EQ(*line(2).request, bytesOfText(wordRead));
    EXPECT_FALSE(isWrong(1) || isWrong(2));
}

TEST_F(TraceVerdicts, PairWhoseAnswerIsNoFrameSendsNothing) {
    table.addPair(hexRun(bytesOfText(wordRead)), "xy");
    link.enterMode(Mode::Simulation);
    receive(wordRead);
    clock.advance(150);
    EXPECT_EQ(verdict(1),
              "Known, by prepared pair 1, but nothing was sent: the port is closed or did not take the "
              "answer, or the answer is no frame.");
}

TEST_F(TraceVerdicts, UnknownRequestNamesTheNearestPairAndTheByte) {
    table.addPair("0500210300000200 00", "00");
    table.addPair("0500230300020512A0", "00");
    link.enterMode(Mode::Simulation);
    receive("05 00 23 03 00 02 04 8B 20 ");
    clock.advance(150);
    EXPECT_EQ(verdict(1),
              "No prepared request matches. The nearest is prepared pair 2, which differs in byte 6 (count: "
              "04h came, 05h is prepared).");
    EXPECT_TRUE(isWrong(1));
    receive("05 00 23 03 00 ");
    clock.advance(150);
    EXPECT_TRUE(verdict(2).starts_with(
        "No prepared request matches. The nearest is prepared pair 2, which has 9 bytes, "
        "not 5."))
        << verdict(2);
    EXPECT_TRUE(line(2).whileStuck);
}

TEST_F(TraceVerdicts, PairInSmallLettersIsTheSameAndDoesNotMatch) {
    const Bytes request = checked(bytesOfText("05 AB 23 03 CD EF 02 "));
    std::string small = hexRun(request);
    std::ranges::transform(small, small.begin(),
                           [](unsigned char digit) { return static_cast<char>(std::tolower(digit)); });
    table.addPair("05AB2303CDEF030000", "00"); // of another count
    table.addPair(small, "00");
    link.enterMode(Mode::Simulation);
    receive(hexGroups(request).c_str());
    clock.advance(150);
    EXPECT_EQ(verdict(1),
              "No prepared request matches. The nearest is prepared pair 2, which is the same, but "
              "written in small letters.");
}

TEST_F(TraceVerdicts, SmallLettersMakeNoPairLessNear) {
    table.addPair("05AB23030000020000", "00"); // two bytes differ
    table.addPair("05ab2303cdef030000", "00"); // one does
    link.enterMode(Mode::Simulation);
    receive(hexGroups(checked(bytesOfText("05 AB 23 03 CD EF 02 "))).c_str());
    clock.advance(150);
    EXPECT_EQ(verdict(1),
              "No prepared request matches. The nearest is prepared pair 2, which differs in byte 6 "
              "(count: 02h came, 03h is prepared).");
}

TEST_F(TraceVerdicts, RequestThatTheProgramCutsIsNotSaidToHaveTheLengthOfThePair) {
    const std::size_t looked = link.state().RxBuffer.size();
    table.addPair(hexRun(Bytes(looked, 0x77)), "00");
    link.enterMode(Mode::Simulation);
    receive(hexGroups(Bytes(looked + 5, 0x77)).c_str());
    clock.advance(300);
    EXPECT_TRUE(
        verdict(1).starts_with("No prepared request matches. The nearest is prepared pair 1, which begins "
                               "like it, but of the 1030 bytes that came no more than 1025 are looked "
                               "at."))
        << verdict(1);
}

TEST_F(TraceVerdicts, UnknownRequestWithoutAnyPairSaysSo) {
    link.enterMode(Mode::Simulation);
    receive(wordRead);
    clock.advance(150);
    EXPECT_EQ(verdict(1), "No prepared request matches. None is prepared.");
}

TEST_F(TraceVerdicts, UnawaitedBytesSaySo) {
    link.sendUnawaited(bytesOfText(wordRead));
    EXPECT_EQ(verdict(1), "Sent; no answer is awaited.");
}

TEST_F(TraceVerdicts, BurstsAreSplitBySilenceAndJudgedTogether) {
    send(wordRead, 10);
    receive("00 05 A3 04 ");
    receive("34 12 ", 20);
    receive("CD AB 47 42 ", 21);
    EXPECT_FALSE(isWrong(2) || isWrong(3)) << "nobody knows yet what becomes of them";
    EXPECT_EQ(verdict(2), "Waits to be read.");
    clock.advance(59);
    ASSERT_EQ(lines(), 4U);
    EXPECT_EQ(line(2).bytes.size(), 6U);
    EXPECT_EQ(line(2).last - line(2).first, 20ms);
    EXPECT_EQ(verdict(2),
              "Taken: it has the 10 bytes that were awaited. Part 1 of 2: bytes 0 to 5 of the 10 that "
              "were read together.");
    EXPECT_EQ(verdict(3),
              "Taken: it has the 10 bytes that were awaited. Part 2 of 2: bytes 6 to 9 of the 10 that "
              "were read together.");
    EXPECT_EQ(kindOfLine(line(2)), "part of answer to word read");
    EXPECT_EQ(kindOfLine(line(3)), "part of answer to word read");
    EXPECT_EQ(runsInWords(runsOf(framesOf(line(2)).at(0))), "W 0000");
    EXPECT_EQ(runsInWords(runsOf(framesOf(line(3)).at(0))), "W 0001");
    EXPECT_EQ(readBytes(line(3)), bytesOfText(wordAnswer));
    EXPECT_FALSE(isWrong(1) || isWrong(2) || isWrong(3));
    EXPECT_EQ(verdict(1), "Answered 41 ms later.");
}

TEST_F(TraceVerdicts, PartsOfOneReadAreNoRestOfEachOther) {
    send(wordRead, 14);
    receive("00 05 A3 04 ");
    receive("34 12 CD AB 47 42 ", 30);
    clock.advance(100);
    EXPECT_EQ(verdict(2),
              "Dropped: 10 of 14 bytes had come when it was read. Part 1 of 2: bytes 0 to 3 of the 10 "
              "that were read together.");
    EXPECT_EQ(verdict(3),
              "Dropped: 10 of 14 bytes had come when it was read. Part 2 of 2: bytes 4 to 9 of the 10 "
              "that were read together.");
    receive("01 02 03 ", 10);
    receive("04 ", 25);
    clock.advance(100);
    EXPECT_TRUE(verdict(2).starts_with(
        "Dropped: 10 of 14 bytes had come when it was read. The rest came 110 ms later. Part 1 of 2"))
        << verdict(2);
    EXPECT_EQ(verdict(4),
              "Dropped: the last 4 of 14 bytes; those before them had been dropped already, for pieces "
              "are not put together. Part 1 of 2: bytes 0 to 2 of the 4 that were read together.");
    EXPECT_TRUE(verdict(5).ends_with("Part 2 of 2: byte 3 of the 4 that were read together.")) << verdict(5);
}

TEST_F(TraceVerdicts, RestIsToldAlsoWhenTheLinkHasForgottenWhatItAwaited) {
    send(wordRead, 10);
    receive("00 05 A3 04 ");
    clock.advance(100);
    tick(1); // nothing is awaited any more
    receive("34 12 CD ", 20);
    clock.advance(100);
    EXPECT_TRUE(
        verdict(2).starts_with("Dropped: 4 of 10 bytes had come when it was read. 3 bytes more came 120 ms "
                               "later."))
        << verdict(2);
    receive("AB 47 42 ", 20);
    clock.advance(100);
    EXPECT_EQ(verdict(4),
              "Dropped: the last 3 of 10 bytes; those before them had been dropped already, for pieces "
              "are not put together.");
}

TEST_F(TraceVerdicts, WhatComesOnAnotherConnectionIsNoRest) {
    send(wordRead, 10);
    receive("00 05 A3 04 34 12 ");
    clock.advance(100);
    port.close();
    link.connectionClosed();
    port.open();
    link.connectionOpened();
    receive("CD AB 47 42 ");
    clock.advance(100);
    EXPECT_EQ(verdict(2),
              "Dropped: 6 of 10 bytes had come when it was read. The frame is cut: 4 bytes are missing.");
    EXPECT_TRUE(verdict(5).starts_with("Dropped: 4 of 10 bytes had come when it was read.")) << verdict(5);
}

TEST_F(TraceVerdicts, FrameThatStandsInALineOfItsOwnIsDecodedBesideNoise) {
    send(wordRead, 10);
    receive("F7 ");
    receive(wordAnswer, 40);
    clock.advance(100);
    EXPECT_EQ(kindOfLine(line(3)), "answer to word read");
    EXPECT_EQ(verdict(3), "Dropped: 11 bytes, 1 more than were awaited. Part 2 of 2: bytes 1 to 10 of the 11 "
                          "that were read together.");
    EXPECT_EQ(explainedBytes(line(3)), bytesOfText(wordAnswer));
    EXPECT_EQ(explainedSize(line(3)), 10U);
    EXPECT_EQ(verdict(2),
              "Dropped: 11 bytes, 1 more than were awaited. It is no frame of this protocol. Part 1 "
              "of 2: byte 0 of the 11 that were read together.");
    EXPECT_EQ(explainedSize(line(2)), 11U);
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

TEST_F(TraceVerdicts, PartsOfARequestThatIsNotKnownNameTheByteOfTheWholeRead) {
    table.addPair("0500230300020512A0", "00");
    link.enterMode(Mode::Simulation);
    receive("05 00 23 03 ");
    receive("00 02 04 8B 20 ", 50);
    clock.advance(250); // it has to be quiet for 150 ms after the first look
    for (const std::size_t part : {1U, 2U}) {
        EXPECT_TRUE(verdict(part).starts_with("No prepared request matches. The nearest is prepared pair 1, "
                                              "which differs in byte 6 (count: 04h came, "
                                              "05h is prepared)."))
            << verdict(part);
        EXPECT_EQ(kindOfLine(line(part)), "part of word read");
    }
}

TEST_F(TraceVerdicts, PartsThatAreThrownAwaySayWhenAndAreNoCutFrames) {
    send(wordRead, 10);
    wire.receiveAt(clock.now() + 3ms, bytesOfText("00 05 A3 04 "));
    wire.receiveAt(clock.now() + 43ms, bytesOfText("34 12 CD AB 47 42 "));
    clock.advance(50);
    send(wordRead, 10);
    ASSERT_EQ(lines(), 5U);
    EXPECT_EQ(verdict(2),
              "Thrown away unread, before the next send. Part 1 of 2: bytes 0 to 3 of the 10 that waited "
              "together.");
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

TEST_F(TraceVerdicts, LineThatWentAwayAnswersNothing) {
    send(wordRead, 10);
    wire.hangUp("ttyS0 went away: it was unplugged.");
    EXPECT_EQ(verdict(1), "No answer came. The line went away.");
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
    receive(wordRead);
    clock.advance(150);
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

TEST_F(TraceVerdicts, NearestPairIsFoundHoweverFarItIs) {
    table.addPair("nonsense", "00");
    link.enterMode(Mode::Simulation);
    receive(wordRead);
    clock.advance(150);
    EXPECT_EQ(verdict(1), "No prepared request matches. None of those prepared is a frame.");
    table.addPair(hexRun(Bytes(40, 0x77)), "00");
    receive("05 ");
    clock.advance(150);
    EXPECT_TRUE(verdict(2).starts_with(
        "No prepared request matches. The nearest is prepared pair 2, which differs in "
        "byte 0 (DA: 05h came, 77h is prepared)."))
        << verdict(2);
}

} // namespace
} // namespace varda::test
