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

TEST(RegisterWords, RegistersAreReadAsTheyAreWritten) {
    EXPECT_EQ(readPoint("W 0100"), (Point{Access::Word, 612}));
    EXPECT_EQ(readPoint(" w100 "), (Point{Access::Word, 612}));
    EXPECT_EQ(readPoint("R 0012.3"), (Point{Access::Bit, 195}));
    EXPECT_EQ(readPoint("sr 511"), (Point{Access::Word, 3583}));
    for (const char* const text :
         {"", "W", "100", "W 2048", "X 1", "R 1.16", "R 1.", "R .1", "R 1.2.3", "R -1", "W 1x"}) {
        EXPECT_EQ(readPoint(text), std::nullopt) << text;
    }
}

TEST(RegisterWords, BitsAreReadAsTheyAreTyped) {
    for (const char* const text : {"ON", "on", "On", "1"}) {
        EXPECT_EQ(readBit(text), true) << text;
    }
    for (const char* const text : {"OFF", "off", "0"}) {
        EXPECT_EQ(readBit(text), false) << text;
    }
    for (const char* const text : {"", "2", "O", "FF", "01"}) {
        EXPECT_EQ(readBit(text), std::nullopt) << text;
    }
}

TEST(RegisterWords, BitsThatAreNeitherShowTheirByte) {
    EXPECT_EQ(bitValue(0xFF), "ON");
    EXPECT_EQ(bitValue(0), "OFF");
    EXPECT_EQ(bitValue(0x12), "12h");
}

} // namespace
} // namespace varda
