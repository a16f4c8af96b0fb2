#include "core/recordings/recording_words.h"

#include "core/recordings/recordings.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

TEST(RecordingWords, SayHowMuchARecordingHolds) {
    EXPECT_EQ(inWords(sizeOf({sentAt(0ms, wordRequest), receivedAt(20ms, wordAnswer)})),
              "1 sent, 1 received, 23 bytes in 20 ms");
}

TEST(RecordingWords, SayTheFirstDifference) {
    const Recording left = {sentAt(0ms, wordRequest), receivedAt(20ms, wordAnswer)};
    const Recording right = {sentAt(0ms, wordRequest), sentAt(20ms, wordAnswer)};
    EXPECT_EQ(inWords(compare(left, left)), "first:  1 sent, 1 received, 23 bytes in 20 ms\n"
                                            "second: 1 sent, 1 received, 23 bytes in 20 ms\n"
                                            "The same bytes, at most 0 ms apart.");
    const std::string different = inWords(compare(left, right));
    EXPECT_NE(different.find(compare(left, right).why + " Before that, times are at most 0 ms apart."),
              std::string::npos)
        << different;
}

TEST(RecordingWords, SayHowFarAPlayerIs) {
    EXPECT_EQ(inWords(PlayerProgress{3, 12, 200ms, 201ms, 1500us}),
              "3 of 12 frames played; mean period 201 ms, recorded 200 ms; at most 1.5 ms late");
}

} // namespace
} // namespace varda::test
