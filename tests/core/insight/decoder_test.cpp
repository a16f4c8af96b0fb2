#include "core/insight/decoder.h"

#include "core/insight/drawn_frames.h"
#include "core/insight/field_words.h"
#include "core/protocol/frame_text.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

constexpr unsigned seed = 20261122;

TEST(Decoder, WhatWasEncodedIsDecodedForEveryKind) {
    FrameDraws draws(seed);
    for (int round = 0; round < 6000; ++round) {
        const DrawnExchange drawn = draws.exchange(round % FrameDraws::kinds);
        const DecodedFrame request = decode(drawn.request);
        const DecodedFrame answer = decode(drawn.answer, drawn.request);
        ASSERT_EQ(meaningOf(request), drawn.asked) << "seed " << seed << ", round " << round;
        ASSERT_EQ(meaningOf(answer), drawn.answered) << "seed " << seed << ", round " << round;
        ASSERT_TRUE(request.isSound() && answer.isSound()) << "seed " << seed << ", round " << round;
        ASSERT_EQ(answer.answersRequest, !drawn.asked.kind.command->writes);
        expectCovered(request, drawn.request.size());
        expectCovered(answer, drawn.answer.size());
    }
}

TEST(Decoder, ByteBehindAMixedRequestIsNoFault) {
    const DecodedFrame frame = decode(bytesOfText("FF FF 25 08 02 00 03 00 04 00 01 42 77 C1 00 "));
    EXPECT_TRUE(frame.isSound());
    EXPECT_EQ(frame.fields.back().role, FieldRole::Behind);
    EXPECT_EQ(frame.end, 14U);
    EXPECT_TRUE(
        decode(bytesOfText("FF FF 25 08 02 00 03 00 04 00 01 42 77 C1 00 00 ")).has(Fault::MoreBytes));
}

TEST(Decoder, AnswersOf256BitsAnd256WordsAreWhole) {
    for (const int kind : {0, 2}) {
        const Bytes request = checked({1, 0, commands()[static_cast<std::size_t>(kind)].code, 3, 0, 0, 0});
        Controller controller;
        const Bytes answer = controller.answer(request).value();
        EXPECT_EQ(answer.size(), kind == 0 ? 262U : 518U);
        for (const Bytes& asked : {request, Bytes()}) {
            const DecodedFrame frame = decode(answer, asked);
            EXPECT_TRUE(frame.isSound());
            EXPECT_EQ(frame.bodyLength, answer.size() - frame_size::envelope);
            EXPECT_EQ(frame.answersRequest, !asked.empty());
        }
    }
}

TEST(Decoder, MixedAnswerWithAnotherCodeIsToldByItsLength) {
    const Bytes request = bytesOfText("FF FF 25 08 02 00 03 00 04 00 01 42 77 C1 00 ");
    const DecodedFrame frame = decode(bytesOfText("FF FF 77 05 00 FF 00 2B 1A 00 00 "), request);
    EXPECT_EQ(kindInWords(frame.kind), "answer to mixed read");
    EXPECT_EQ(runsInWords(runsOf(frame)), "R 0000.2 .. R 0000.4, W 0001");
    EXPECT_TRUE(decode(bytesOfText("FF FF 77 05 00 FF 00 2B 1A 00 00 ")).has(Fault::UnknownCommand));
}

TEST(Decoder, FrameWithAnotherLengthEndsWhereItsCheckIs) {
    const DecodedFrame decoded = decode(checked(bytesOfText("FF FF A3 07 34 12 CD AB ")));
    EXPECT_EQ(decoded.faults, std::vector{Fault::WrongLength});
    EXPECT_EQ(faultInWords(decoded, Fault::WrongLength), "LEN says 7, the body has 4 bytes.");
}

TEST(Decoder, BurstOfARequestAndItsAnswerIsTwoFrames) {
    FrameDraws draws(seed);
    for (int round = 0; round < 600; ++round) {
        const DrawnExchange drawn = draws.exchange(round % FrameDraws::kinds);
        Bytes burst = drawn.request;
        burst.insert(burst.end(), drawn.answer.begin(), drawn.answer.end());
        const auto frames = decodeBurst(burst);
        ASSERT_EQ(frames.size(), 2U) << "seed " << seed << ", round " << round;
        ASSERT_EQ(meaningOf(frames[0]), drawn.asked);
        ASSERT_EQ(meaningOf(frames[1]), drawn.answered);
        ASSERT_TRUE(frames[0].isSound() && frames[1].isSound());
        ASSERT_EQ(frames[1].fields.back().place + frames[1].fields.back().length, burst.size());
    }
}

TEST(Decoder, EveryNumberHasItsForms) {
    const NumberForms word = numberForms(Access::Word, 0xFF2C);
    EXPECT_EQ(word.decimal, "65324");
    EXPECT_EQ(word.withSign, "-212");
    EXPECT_EQ(word.hex, "FF2Ch");
    EXPECT_EQ(word.binary, "1111 1111 0010 1100");
    EXPECT_EQ(numberForms(Access::Bit, 0x81).withSign, "-127");
    EXPECT_EQ(numberForms(Access::Bit, 0x81).binary, "1000 0001");
}

} // namespace
} // namespace varda::test
