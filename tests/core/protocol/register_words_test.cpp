#include "core/protocol/register_words.h"

#include <gtest/gtest.h>

namespace varda {
namespace {

TEST(RegisterWords, EveryRegisterHasItsName) {
    EXPECT_EQ(wordName(0), "R 0000");
    EXPECT_EQ(wordName(3072), "SR 000"); // unlike the address that comes back whole elsewhere
    EXPECT_EQ(wordName(3583), "SR 511");
    EXPECT_EQ(wordName(3584), "address 0E00h");
    EXPECT_EQ(bitName(0x0C23), "M 0002.3");
}

TEST(RegisterWords, BitsThatAreNeitherShowTheirByte) {
    EXPECT_EQ(bitValue(0xFF), "ON");
    EXPECT_EQ(bitValue(0), "OFF");
    EXPECT_EQ(bitValue(0x12), "12h");
}

} // namespace
} // namespace varda
