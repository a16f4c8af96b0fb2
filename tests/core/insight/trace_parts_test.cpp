#include "core/insight/field_words.h"
#include "core/insight/trace_words.h"
#include "core/insight/traced_link.h"

namespace varda::test {
namespace {

class TraceParts : public TracedLinkTest {};

TEST_F(TraceParts, ShortBurstIsDroppedAndTheRestCameLater) {
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

TEST_F(TraceParts, LongBurstIsDropped) {
    send(wordRead, 9);
    receive(wordAnswer);
    clock.advance(100);
    EXPECT_EQ(verdict(2), "Dropped: 10 bytes, 1 more than were awaited.");
}

TEST_F(TraceParts, BurstsAreSplitBySilenceAndJudgedTogether) {
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

TEST_F(TraceParts, PartsOfOneReadAreNoRestOfEachOther) {
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

TEST_F(TraceParts, RestIsToldAlsoWhenTheLinkHasForgottenWhatItAwaited) {
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

TEST_F(TraceParts, WhatComesOnAnotherConnectionIsNoRest) {
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

TEST_F(TraceParts, FrameThatStandsInALineOfItsOwnIsDecodedBesideNoise) {
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

TEST_F(TraceParts, PartsOfARequestThatIsNotKnownNameTheByteOfTheWholeRead) {
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

TEST_F(TraceParts, RestIsNotLookedForBehindThousandsOfEvents) {
    send(wordRead, 10);
    receive("00 05 A3 04 34 12 ");
    clock.advance(100);
    for (int event = 0; event < 1000; ++event) {
        link.commPLC_OnComm(CommEvent::Received);
        clock.advance(100);
    }
    receive("CD AB 47 42 ");
    clock.advance(100);
    EXPECT_EQ(verdict(2).find("The rest came"), std::string::npos) << verdict(2);
    EXPECT_TRUE(verdict(lines() - 1).starts_with("Dropped: 4 of 10 bytes")) << verdict(lines() - 1);
}

TEST_F(TraceParts, OfAMixedRequestSpeakOfTheRegistersInThem) {
    const std::string request = hexGroups(checked(bytesOfText("05 00 25 04 64 42 65 42 ")));
    const std::size_t cut = std::string("05 00 25 04 64 42 ").size();
    link.enterMode(Mode::Simulation);
    receive(request.substr(0, cut).c_str());
    receive(request.substr(cut).c_str(), 30);
    clock.advance(300);
    EXPECT_EQ(runsInWords(runsOf(framesOf(line(1)).at(0))), "W 0100");
    EXPECT_EQ(runsInWords(runsOf(framesOf(line(2)).at(0))), "W 0101");
}

TEST_F(TraceParts, PartsThatAreThrownAwaySayWhenAndAreNoCutFrames) {
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

} // namespace
} // namespace varda::test
