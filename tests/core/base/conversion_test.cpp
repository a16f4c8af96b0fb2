#include "core/base/conversion.h"

#include "support/raises.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace varda {
namespace {

using test::numberRaisedBy;

int integerError(std::string_view text) {
    return numberRaisedBy([&] { toInteger(text); });
}

int longError(std::string_view text) {
    return numberRaisedBy([&] { toLong(text); });
}

TEST(Conversion, DecimalDigitsAreRead) {
    EXPECT_EQ(toInteger("0"), 0);
    EXPECT_EQ(toInteger("7"), 7);
    EXPECT_EQ(toInteger("500"), 500);
    EXPECT_EQ(toInteger("32767"), 32767);
}

TEST(Conversion, LeadingZerosOfListTextsAreDecimal) {
    EXPECT_EQ(toInteger("0012"), 12);
    EXPECT_EQ(toInteger("008"), 8);
    EXPECT_EQ(toInteger("2047"), 2047);
    EXPECT_EQ(toInteger("0000000000000000000000012"), 12);
}

TEST(Conversion, SignIsOptional) {
    EXPECT_EQ(toInteger("+5"), 5);
    EXPECT_EQ(toInteger("-1"), -1);
    EXPECT_EQ(toInteger("-0"), 0);
    EXPECT_EQ(toInteger("-32768"), -32768);
}

TEST(Conversion, BlanksAroundTheNumberAreDropped) {
    EXPECT_EQ(toInteger("  42"), 42);
    EXPECT_EQ(toInteger("42  "), 42);
    EXPECT_EQ(toInteger(" -42 "), -42);
    EXPECT_EQ(toInteger(" &HFF "), 255);
}

TEST(Conversion, PrefixMarksHexadecimalInEitherCase) {
    EXPECT_EQ(toInteger("&H0"), 0);
    EXPECT_EQ(toInteger("&H1F"), 31);
    EXPECT_EQ(toInteger("&h1f"), 31);
    EXPECT_EQ(toInteger("&H7FFF"), 32767);
}

TEST(Conversion, HexadecimalFromEightThousandUpIsNegative) {
    EXPECT_EQ(toInteger("&H8000"), -32768);
    EXPECT_EQ(toInteger("&HFFFE"), -2);
    EXPECT_EQ(toInteger("&HFFFF"), -1);
}

TEST(Conversion, EmptyTextIsTypeMismatch) {
    EXPECT_EQ(integerError(""), 13);
    EXPECT_EQ(integerError(" "), 13);
    EXPECT_EQ(longError(""), 13);
}

TEST(Conversion, TextThatIsNoNumberIsTypeMismatch) {
    for (const char* text : {"abc", "12a", "a12", "1 2", "-", "+", "--1", "1-", "C012", "FF", "0x10"}) {
        EXPECT_EQ(integerError(text), 13) << text;
        EXPECT_EQ(longError(text), 13) << text;
    }
}

TEST(Conversion, BarePrefixOrWrongHexadecimalDigitIsTypeMismatch) {
    for (const char* text : {"&", "&H", "&h ", "&HG", "&H1G", "&12", "H12"}) {
        EXPECT_EQ(integerError(text), 13) << text;
        EXPECT_EQ(longError(text), 13) << text;
    }
}

TEST(Conversion, ReadingGivesNothingWhereTheOtherFormThrows) {
    EXPECT_EQ(readLong("&H12345"), 0x12345);
    EXPECT_EQ(readLong("-2147483648"), std::numeric_limits<std::int32_t>::min());
    for (const char* text : {"", "abc", "2147483648", "-2147483649", "99999999999999999999999"}) {
        EXPECT_EQ(readLong(text), std::nullopt) << text;
    }
}

TEST(Conversion, NumberBeyondSixteenBitsIsOverflow) {
    for (const char* text : {"32768", "-32769", "65535", "99999", "&H10000", "99999999999999999999999"}) {
        EXPECT_EQ(integerError(text), 6) << text;
    }
}

TEST(Conversion, LongNumberOfAnyLengthThatEndsInALetterIsTypeMismatch) {
    EXPECT_EQ(integerError("99999999999999999999999x"), 13);
    EXPECT_EQ(integerError("&HFFFFFFFFFFFFFFFFFFFFFx"), 13);
}

TEST(Conversion, ErrorsBearTheirDescriptions) {
    EXPECT_STREQ(test::raisedBy([] { toInteger("x"); })->what(), "Type mismatch");
    EXPECT_STREQ(test::raisedBy([] { toInteger("40000"); })->what(), "Overflow");
}

TEST(Conversion, LongReadsThirtyTwoBits) {
    EXPECT_EQ(toLong("40000"), 40000);
    EXPECT_EQ(toLong(" +65535 "), 65535);
    EXPECT_EQ(toLong("2147483647"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(toLong("-2147483648"), std::numeric_limits<std::int32_t>::min());
}

TEST(Conversion, LongBeyondThirtyTwoBitsIsOverflow) {
    for (const char* text : {"2147483648", "-2147483649", "99999999999999999999999", "&H100000000"}) {
        EXPECT_EQ(longError(text), 6) << text;
    }
}

TEST(Conversion, LongKeepsFourHexadecimalDigitsAsSixteenBits) {
    EXPECT_EQ(toLong("&H7FFF"), 32767);
    EXPECT_EQ(toLong("&H8000"), -32768);
    EXPECT_EQ(toLong("&HFFFF"), -1);
    EXPECT_EQ(toLong("&H10000"), 65536);
    EXPECT_EQ(toLong("&H7fffffff"), std::numeric_limits<std::int32_t>::max());
}

TEST(Conversion, SumsNarrowToSixteenBits) {
    EXPECT_EQ(toInteger16(32767), 32767);
    EXPECT_EQ(toInteger16(-32768), -32768);
    EXPECT_EQ(numberRaisedBy([] { toInteger16(32768); }), 6);
    EXPECT_EQ(numberRaisedBy([] { toInteger16(-32769); }), 6);
    EXPECT_EQ(numberRaisedBy([] { toInteger16(std::numeric_limits<std::int64_t>::max()); }), 6);
}

TEST(Conversion, CountsNarrowToEightBits) {
    EXPECT_EQ(toByte(0), 0);
    EXPECT_EQ(toByte(255), 255);
    EXPECT_EQ(numberRaisedBy([] { toByte(256); }), 6);
    EXPECT_EQ(numberRaisedBy([] { toByte(-1); }), 6);
    EXPECT_EQ(numberRaisedBy([] { toByte(std::numeric_limits<std::int64_t>::min()); }), 6);
}

TEST(Conversion, DigitsAloneAreANumberWithoutASign) {
    EXPECT_EQ(readDigits("0"), 0U);
    EXPECT_EQ(readDigits("007"), 7U);
    EXPECT_EQ(readDigits("4294967295"), 4294967295U);
    for (const char* const text :
         {"", "4294967296", "99999999999999999999", "-1", "+1", " 1", "1 ", "1.5", "1h", "&H1"}) {
        EXPECT_FALSE(readDigits(text)) << text;
    }
}

TEST(Conversion, AdviceNamesTheFieldThatCannotBeRead) {
    EXPECT_EQ(toInteger("12", "Bit number"), 12);
    EXPECT_EQ(toLong("40000", "Value"), 40000);
    const auto integer = [](std::string_view text) {
        return test::adviceOf([text] { toInteger(text, "Bit number"); });
    };
    EXPECT_EQ(integer("x"), "Bit number \"x\" is no number. Type digits only.");
    EXPECT_EQ(integer(""), "Bit number is empty. Fill it in.");
    EXPECT_EQ(integer("40000"), "Bit number \"40000\" is out of range: -32768 to 32767.");
    EXPECT_EQ(test::adviceOf([] { toLong("9999999999", "Value"); }),
              "Value \"9999999999\" is out of range: -2147483648 to 2147483647.");
}

TEST(Conversion, FirstAdviceStays) {
    EXPECT_EQ(test::adviceOf([] {
                  advised([] { toInteger("x", "Bit number"); },
                          [](const RuntimeError&) { return "Look elsewhere."; });
              }),
              "Bit number \"x\" is no number. Type digits only.");
}

} // namespace
} // namespace varda
