#include "core/protocol/hex_text.h"

#include "support/raises.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <vector>

namespace varda {
namespace {

using test::numberRaisedBy;

int hexError(std::string_view text) {
    return numberRaisedBy([&] { fromHex(text); });
}

int byteError(std::string_view text) {
    return numberRaisedBy([&] { byteFromHex(text); });
}

TEST(HexText, DigitsAreUpperCaseWithoutLeadingZeros) {
    EXPECT_EQ(hex(0), "0");
    EXPECT_EQ(hex(5), "5");
    EXPECT_EQ(hex(171), "AB");
    EXPECT_EQ(hex(4660), "1234");
    EXPECT_EQ(hex(65535), "FFFF");
}

TEST(HexText, SpacesStandBetweenBytesAlone) {
    EXPECT_EQ(hexGroups(std::vector<std::uint8_t>{0, 255}), "00 FF ");
    EXPECT_EQ(hexSpaced(std::vector<std::uint8_t>{0, 255}), "00 FF");
    EXPECT_EQ(hexSpaced({}), "");
}

TEST(HexText, NegativeNumberShowsItsSixteenBits) {
    EXPECT_EQ(hex(-1), "FFFF");
    EXPECT_EQ(hex(-32768), "8000");
    EXPECT_EQ(hex(-1, 2), "FF");
}

TEST(HexText, FixedWidthFillsWithZeros) {
    EXPECT_EQ(hex(0, 2), "00");
    EXPECT_EQ(hex(10, 4), "000A");
    EXPECT_EQ(hex(255, 2), "FF");
}

TEST(HexText, FixedWidthKeepsOnlyTheLastDigits) {
    EXPECT_EQ(hex(0x1234, 3), "234");
    EXPECT_EQ(hex(0x1234, 2), "34");
    EXPECT_EQ(hex(256, 2), "00");
}

TEST(HexText, DecimalIsZeroFilledAndNeverCut) {
    EXPECT_EQ(decimal(0, 4), "0000");
    EXPECT_EQ(decimal(7, 3), "007");
    EXPECT_EQ(decimal(2047, 4), "2047");
    EXPECT_EQ(decimal(2047, 3), "2047");
}

TEST(HexText, ShownFrameHasASpaceBehindEveryByte) {
    EXPECT_EQ(hexGroups(std::vector<std::uint8_t>{0x01, 0xAB, 0x00}), "01 AB 00 ");
    EXPECT_EQ(hexGroups({}), "");
}

TEST(HexText, EveryByteHasTwoDigits) {
    for (int byte = 0; byte < 256; ++byte) {
        std::array<char, 4> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X", static_cast<unsigned>(byte));
        EXPECT_EQ(twoDigits(static_cast<std::uint8_t>(byte)), std::string_view(digits.data()));
    }
}

TEST(HexText, PacketTableFrameRunsTogether) {
    EXPECT_EQ(hexRun(std::vector<std::uint8_t>{0xA2, 0x01, 0x00}), "A20100");
    EXPECT_EQ(hexRun({}), "");
}

TEST(HexText, DigitsOfEitherCaseAreRead) {
    EXPECT_EQ(fromHex("0"), 0);
    EXPECT_EQ(fromHex("1a2B"), 0x1A2B);
    EXPECT_EQ(fromHex("FFFF"), 65535);
    EXPECT_EQ(fromHex("ffff"), 65535);
    EXPECT_EQ(fromHex("0000001F"), 31);
}

TEST(HexText, AnythingButDigitsIsTypeMismatch) {
    for (const char* text : {"", " ", "G", "1G", "g1", "&H10", "0x10", "-1", "+1", " 1", "1 ", "12 34"}) {
        EXPECT_EQ(hexError(text), 13) << text;
        EXPECT_EQ(byteError(text), 13) << text;
    }
}

TEST(HexText, MoreThanSixteenBitsIsOverflow) {
    EXPECT_EQ(hexError("10000"), 6);
    EXPECT_EQ(hexError("FFFFFFFFFFFFFFFFFFFFFFFF"), 6);
}

TEST(HexText, WrongDigitCountsMoreThanLength) { EXPECT_EQ(hexError("FFFFFFFFFFFFFFFFFFFFFFFG"), 13); }

TEST(HexText, ByteReadsUpTo255) {
    EXPECT_EQ(byteFromHex("0"), 0);
    EXPECT_EQ(byteFromHex("A"), 10);
    EXPECT_EQ(byteFromHex("fF"), 255);
    EXPECT_EQ(byteError("100"), 6);
    EXPECT_EQ(byteError("FFFFF"), 6);
}

} // namespace
} // namespace varda
