#include "core/files/profile_file.h"

#include "support/profile_file_checks.h"

#include <gtest/gtest.h>

#include <iostream>
#include <random>
#include <string>

namespace varda {
namespace {

using test::bytesOf;
using test::expectUnreadable;
using test::totalOf;
using test::writeBytes;

enum class Order { LittleEndian, BigEndian };

/// A text in UTF-16 with its byte order mark, put down in another way than in the file.
std::string inUtf16(const std::u16string& text, Order order) {
    std::string bytes;
    for (const char16_t unit : u"\uFEFF" + text) {
        const char high = static_cast<char>(unit >> 8U);
        const char low = static_cast<char>(unit & 0xFFU);
        bytes += order == Order::BigEndian ? std::string{high, low} : std::string{low, high};
    }
    return bytes;
}

class ProfileFileUtf16 : public test::ProfileFileTest, public testing::WithParamInterface<Order> {
protected:
    std::string bytes(const std::u16string& text) const { return inUtf16(text, GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(BothOrders, ProfileFileUtf16, testing::Values(Order::LittleEndian, Order::BigEndian),
                         [](const auto& order) {
                             return order.param == Order::BigEndian ? "BigEndian" : "LittleEndian";
                         });

TEST_P(ProfileFileUtf16, IsReadByItsByteOrderMark) {
    writeBytes(path_, bytes(u"[Information]\r\nTotal=3\r\n"));
    const ProfileFile file = ProfileFile::load(path_);
    EXPECT_FALSE(file.problem().has_value());
    EXPECT_EQ(totalOf(file), "3");
}

TEST_P(ProfileFileUtf16, IsWrittenBackInTheSameForm) {
    writeBytes(path_, bytes(u"; ä€\U0001F600\n[Information]\r\nTotal=3"));
    ProfileFile file = ProfileFile::load(path_);
    file.setValue("Information", "Total", "4");
    file.setValue("Send", "0", "FF");
    file.save(path_);
    EXPECT_EQ(bytesOf(path_), bytes(u"; ä€\U0001F600\r\n[Information]\r\nTotal=4\r\n[Send]\r\n0=FF\r\n"));
}

TEST_P(ProfileFileUtf16, ValuesAreUtf8) {
    const ProfileFile file = ProfileFile::parse(bytes(u"[S]\r\nk=ä€\U0001F600\r\n"));
    EXPECT_EQ(file.value("S", "k", "", 1024), "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST_P(ProfileFileUtf16, HalfASurrogatePairStaysAsItIs) {
    const std::u16string halves = {u'a', 0xD83D, u'\r', u'\n', 0xDE00, 0xDE00, u'\r', u'\n'};
    EXPECT_EQ(ProfileFile::parse(bytes(halves)).text(), bytes(halves));
}

TEST_P(ProfileFileUtf16, WhatIsNoTextInAValueIsReadBackAsItIsWritten) {
    ProfileFile file = ProfileFile::parse(bytes(u""));
    file.setValue("S", "k", "a\xFF\xC3");
    EXPECT_EQ(file.value("S", "k", "", 1024), "a\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(file.text(), bytes(u"[S]\r\nk=a\uFFFD\uFFFD\r\n"));
}

TEST_P(ProfileFileUtf16, NamesThatAreNoTextAreRefused) {
    ProfileFile file = ProfileFile::parse(bytes(u""));
    EXPECT_THROW(file.setValue("S\xFF", "k", "v"), RuntimeError);
    EXPECT_THROW(file.setValue("S", "\xC3", "v"), RuntimeError);
    EXPECT_EQ(file.text(), bytes(u""));
}

TEST_P(ProfileFileUtf16, WithAZeroCharacterIsNoText) {
    writeBytes(path_, bytes(std::u16string(u"[S]\0", 4)));
    expectUnreadable(path_, 75, "is no text file");
}

TEST_P(ProfileFileUtf16, OfAnOddNumberOfBytesIsNoText) {
    writeBytes(path_, bytes(u"[S]") + "x");
    expectUnreadable(path_, 75, "is no text file");
}

TEST_P(ProfileFileUtf16, EveryTextComesBackAsItWas) {
    constexpr std::uint32_t seed = 20261122;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    for (int round = 0; round < 1000; ++round) {
        std::u16string text;
        for (auto unit = random() % 50; unit > 0; --unit) {
            constexpr std::u16string_view favourites = u"\r\n=[];\xD800\xDBFF\xDC00\xDFFF";
            text += random() % 2 == 0 ? favourites[random() % favourites.size()]
                                      : static_cast<char16_t>(1 + random() % 0xFFFF);
        }
        const std::string once = ProfileFile::parse(bytes(text)).text();
        ASSERT_EQ(ProfileFile::parse(once).text(), once) << "round " << round;
        ASSERT_EQ(once.substr(0, 2), bytes(u"")) << "round " << round;
    }
}

TEST(ProfileFileText, InUtf16WithoutAMarkIsNone) {
    EXPECT_TRUE(ProfileFile::parse(inUtf16(u"[S]", Order::LittleEndian).substr(2)).problem().has_value());
}

TEST(ProfileFileText, HoldsNoControlCharactersButTheUsualOnes) {
    EXPECT_TRUE(ProfileFile::parse("\xEF\xBB\xBF[S]\r\n\tk=\xE4\xFF\f\v\x1A").isText());
    EXPECT_TRUE(ProfileFile::parse("").isText());
    EXPECT_FALSE(ProfileFile::parse("PK\x03\x04").isText());
    EXPECT_FALSE(ProfileFile::parse(std::string("a\0b", 3)).isText());
    EXPECT_FALSE(ProfileFile::parse("\xFF\xFE\x01").isText());
}

} // namespace
} // namespace varda
