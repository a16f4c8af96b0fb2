#include "core/protocol/frame_text.h"

#include <gtest/gtest.h>

namespace varda {
namespace {

TEST(FrameText, TextsOfBothFormsAreRead) {
    EXPECT_EQ(bytesOfText("5 0A FF "), (Bytes{0x05, 0x0A, 0xFF})); // a station may have one digit
    EXPECT_EQ(bytesOfText("0AFF01"), (Bytes{0x0A, 0xFF, 0x01}));
    EXPECT_EQ(bytesOfText("0A zz 01 "), (Bytes{0x0A}));
    EXPECT_TRUE(bytesOfText("").empty());
}

TEST(FrameText, EveryCharacterBelongsToAByte) {
    EXPECT_EQ(byteAt("5 0A FF ", 0), 0U);
    EXPECT_EQ(byteAt("5 0A FF ", 1), 0U); // the space behind it
    EXPECT_EQ(byteAt("5 0A FF ", 2), 1U);
    EXPECT_EQ(byteAt("5 0A FF ", 6), 2U);
    EXPECT_EQ(byteAt("0AFF01", 3), 1U);
}

} // namespace
} // namespace varda
