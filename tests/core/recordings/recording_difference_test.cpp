#include "core/recordings/recording_difference.h"

#include "core/recordings/recordings.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

const Recording both = {sentAt(0ms, wordRequest), receivedAt(20ms, wordAnswer), sentAt(500ms, bitRequest)};

TEST(RecordingDifference, EqualOnesAreTheSame) {
    const RecordingDifference difference = compare(both, both);
    EXPECT_TRUE(difference.isSame());
    EXPECT_EQ(difference.why, "");
    EXPECT_EQ(difference.same, 3U);
    EXPECT_EQ(difference.left, (RecordingSize{2, 1, 32, 500ms}));
    EXPECT_EQ(difference.left, difference.right);
    EXPECT_TRUE(compare({}, {}).isSame());
}

TEST(RecordingDifference, TimesAreToldAndMakeNoDifference) {
    Recording later = both;
    for (RecordedBurst& burst : later) {
        burst.time += 1h;
    }
    later[1].time += 15ms;
    const RecordingDifference difference = compare(both, later);
    EXPECT_TRUE(difference.isSame());
    EXPECT_EQ(difference.mostApart, 15ms);
}

TEST(RecordingDifference, TheFirstByteThatDiffersIsNamed) {
    Recording other = both;
    other[1].bytes[4] = 0x2A;
    const RecordingDifference difference = compare(both, other);
    EXPECT_EQ(difference.first, 1U);
    EXPECT_EQ(difference.same, 1U);
    EXPECT_EQ(difference.why, "Burst 2 differs in byte 4: 00h and 2Ah.");
}

TEST(RecordingDifference, LengthsAndDirectionsAreNamed) {
    Recording other = both;
    other[0].bytes.pop_back();
    EXPECT_EQ(compare(both, other).why, "Burst 1 has 9 bytes and 8.");
    other = both;
    other[2].isSent = false;
    EXPECT_EQ(compare(both, other).why, "Burst 3 was sent and received.");
}

TEST(RecordingDifference, WhatIsMissingIsNamed) {
    const Recording shorter = {both[0], both[1]};
    EXPECT_EQ(compare(both, shorter).why, "Burst 3 is missing in the second one.");
    EXPECT_EQ(compare(shorter, both).why, "Burst 3 is missing in the first one.");
    EXPECT_EQ(compare({}, both).first, 0U);
}

} // namespace
} // namespace varda::test
