#include "core/protocol/crc16.h"

#include "core/protocol/independent_encoder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace varda {
namespace {

std::vector<std::uint8_t> bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

TEST(Crc16, TableBeginsAsLaidDown) {
    EXPECT_EQ(crc16Table()[0], 0x0000);
    EXPECT_EQ(crc16Table()[1], 0xC0C1);
    EXPECT_EQ(crc16Table()[2], 0xC181);
    EXPECT_EQ(crc16Table()[3], 0x0140);
    EXPECT_EQ(crc16Table()[128], 0xA001);
}

TEST(Crc16, EveryTableEntryIsThePolynomialDivisionOfItsIndex) {
    for (std::size_t i = 0; i < 256; ++i) {
        EXPECT_EQ(crc16Table()[i], test::shiftedOut(static_cast<unsigned>(i))) << i;
    }
}

TEST(Crc16, CheckValueOverTheDigitsOneToNine) { EXPECT_EQ(crc16(bytesOf("123456789")), 0x4B37); }

TEST(Crc16, OfNoBytesIsTheStartValue) { EXPECT_EQ(crc16({}), 0xFFFF); }

TEST(Crc16, OfOneByte) {
    EXPECT_EQ(crc16(std::vector<std::uint8_t>{0x00}), 0x40BF);
    EXPECT_EQ(crc16(std::vector<std::uint8_t>{0xFF}), 0x00FF);
}

TEST(Crc16, OfARequestHeader) {
    EXPECT_EQ(crc16(std::vector<std::uint8_t>{0x01, 0x00, 0x21, 0x03, 0x23, 0x0C, 0x10}), 0x8542);
}

/// Eight bytes are taken at a time: every number of bytes up to the longest frame's.
TEST(Crc16, OfEveryLengthIsThePolynomialDivisionByteForByte) {
    std::vector<std::uint8_t> bytes;
    unsigned check = 0xFFFF;
    for (unsigned length = 0; length < 530; ++length) {
        ASSERT_EQ(crc16(bytes), check) << length;
        bytes.push_back(static_cast<std::uint8_t>(length * 37 + (length >> 3U)));
        check = (check >> 8U) ^ test::shiftedOut((check ^ bytes.back()) & 0xFFU);
    }
}

TEST(Crc16, OverAFrameWithItsOwnCheckIsZero) {
    EXPECT_EQ(crc16(std::vector<std::uint8_t>{0xFF, 0xFF, 0x25, 0x00, 0x1A, 0x90}), 0x0000);
}

} // namespace
} // namespace varda
