#include "core/faults/frame_damage.h"

#include "core/insight/decoder.h"
#include "core/protocol/independent_encoder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace varda::test {
namespace {

/// A frame with its right check, by the tests' own arithmetic.
Bytes sealed(Bytes frame) {
    const unsigned check = frameCheck(frame, frame.size());
    frame.push_back(low(check));
    frame.push_back(high(check));
    return frame;
}

const Bytes answer = sealed({0x00, 0x05, 0xA3, 0x04, 0x12, 0x34, 0x56, 0x78});
const Bytes request = sealed({0x05, 0x00, 0x23, 0x03, 0x00, 0x02, 0x02});

bool isSealed(const Bytes& frame) { return sealed({frame.begin(), frame.end() - 2}) == frame; }

std::vector<std::size_t> differing(const Bytes& left, const Bytes& right) {
    std::vector<std::size_t> places;
    for (std::size_t index = 0; index < std::min(left.size(), right.size()); ++index) {
        if (left[index] != right[index]) {
            places.push_back(index);
        }
    }
    return places;
}

class FrameDamageTest : public testing::Test {
protected:
    FaultDraws draws{42, FaultKind::Check};
};

TEST_F(FrameDamageTest, ABrokenCheckChangesNothingElse) {
    for (int round = 0; round < 1000; ++round) {
        Bytes frame = answer;
        ASSERT_TRUE(breakCheck(frame, draws));
        ASSERT_FALSE(isSealed(frame));
        ASSERT_TRUE(std::equal(answer.begin(), answer.end() - 2, frame.begin(), frame.end() - 2));
    }
}

TEST_F(FrameDamageTest, OfAMixedRequestTheCheckIsBrokenAndNotTheByteBehindIt) {
    Bytes frame = sealed({0x05, 0x00, 0x25, 0x02, 0x00, 0x42});
    frame.push_back(0x77);
    const Bytes whole = frame;
    ASSERT_TRUE(breakCheck(frame, draws));
    for (const std::size_t place : differing(frame, whole)) {
        EXPECT_TRUE(place == 6 || place == 7) << place;
    }
    EXPECT_NE(frame, whole);
}

TEST_F(FrameDamageTest, AnotherStationKeepsTheCheckRight) {
    for (int round = 0; round < 1000; ++round) {
        Bytes frame = answer;
        ASSERT_TRUE(changeStation(frame, {0, 255}, draws));
        ASSERT_NE(frame[1], answer[1]) << "an answer comes from another station";
        ASSERT_EQ(frame[0], answer[0]);
        ASSERT_TRUE(isSealed(frame));
        Bytes asked = request;
        ASSERT_TRUE(changeStation(asked, {0, 255}, draws));
        ASSERT_NE(asked[0], request[0]) << "a request goes to another one";
        ASSERT_EQ(asked[1], request[1]);
        ASSERT_TRUE(isSealed(asked));
    }
}

TEST_F(FrameDamageTest, TheStationThatItIsAlreadyIsNoOther) {
    Bytes frame = answer;
    EXPECT_FALSE(changeStation(frame, {5, 5}, draws));
    EXPECT_EQ(frame, answer);
    EXPECT_EQ(changeStation(frame, {5, 6}, draws), 6U);
}

TEST_F(FrameDamageTest, AnotherCommandStaysOnItsSideAndKeepsTheCheckRight) {
    for (int round = 0; round < 1000; ++round) {
        Bytes frame = answer;
        ASSERT_TRUE(changeCommand(frame, draws));
        ASSERT_NE(frame[2], answer[2]);
        ASSERT_TRUE(kindOf(frame).isAnswer);
        ASSERT_TRUE(isSealed(frame));
        Bytes asked = request;
        ASSERT_TRUE(changeCommand(asked, draws));
        ASSERT_TRUE(kindOf(asked).isRequest());
        ASSERT_NE(asked[2], request[2]);
    }
}

TEST_F(FrameDamageTest, ACheckThatWasWrongStaysAsItIs) {
    Bytes frame = answer;
    frame.back() ^= 1U;
    const Bytes prepared = frame;
    ASSERT_TRUE(changeStation(frame, {0, 255}, draws));
    EXPECT_EQ(differing(frame, prepared), std::vector<std::size_t>{1});
}

TEST_F(FrameDamageTest, AnAnswerBeyondWhatLenCanSayKeepsItsCheckRight) {
    Bytes body = {0x00, 0x05, 0xA3, 0x00};
    body.resize(4 + 512, 0x11);
    Bytes frame = sealed(body);
    ASSERT_TRUE(changeStation(frame, {0, 255}, draws));
    EXPECT_TRUE(isSealed(frame));
}

TEST_F(FrameDamageTest, FlipsSoManyBits) {
    for (std::uint32_t bits = 1; bits <= 16; ++bits) {
        Bytes frame = answer;
        ASSERT_EQ(flipBits(frame, {bits, bits}, draws), bits);
        std::uint32_t flipped = 0;
        for (std::size_t index = 0; index < frame.size(); ++index) {
            for (unsigned rest = frame[index] ^ answer[index]; rest != 0; rest /= 2) {
                flipped += rest % 2;
            }
        }
        ASSERT_EQ(flipped, bits);
    }
}

TEST_F(FrameDamageTest, CutsTheEndAndLeavesAByte) {
    Bytes frame = answer;
    EXPECT_EQ(cutEnd(frame, {3, 3}, draws), 3U);
    EXPECT_EQ(frame, Bytes(answer.begin(), answer.end() - 3));
    EXPECT_EQ(cutEnd(frame, {500, 500}, draws), answer.size() - 4);
    EXPECT_EQ(frame, Bytes{0x00});
    EXPECT_FALSE(cutEnd(frame, {1, 1}, draws));
}

TEST_F(FrameDamageTest, NoiseComesBesideTheFrame) {
    Bytes frame = answer;
    EXPECT_EQ(addNoiseBefore(frame, {4, 4}, draws), 4U);
    EXPECT_EQ(Bytes(frame.begin() + 4, frame.end()), answer);
    frame = answer;
    EXPECT_EQ(addNoiseBehind(frame, {2, 2}, draws), 2U);
    EXPECT_EQ(Bytes(frame.begin(), frame.end() - 2), answer);
}

TEST_F(FrameDamageTest, WhatIsNoFrameIsLeftAloneOrDamagedWithinItsBytes) {
    for (std::size_t size = 1; size < 6; ++size) {
        Bytes frame(size, 0x55);
        EXPECT_FALSE(breakCheck(frame, draws)) << size;
        EXPECT_EQ(changeCommand(frame, draws).has_value(), size > 2);
        EXPECT_EQ(changeStation(frame, {0, 255}, draws).has_value(), size > 1);
        EXPECT_TRUE(flipBits(frame, {16, 16}, draws));
        EXPECT_EQ(frame.size(), size);
    }
}

} // namespace
} // namespace varda::test
