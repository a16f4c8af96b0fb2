#include "core/protocol/pasted_words.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

/// Each field as it is shown: "FFh=255", "abc=?" for what is no word, "-" for an empty one.
std::string read(std::string_view text) {
    std::string shown;
    for (const PastedWord& word : pastedWords(text)) {
        shown += shown.empty() ? "" : " ";
        shown += word.isEmpty() ? "-"
                                : word.text + (word.hexadecimal ? "h=" : "=") +
                                      (word.value ? std::to_string(*word.value) : "?");
    }
    return shown;
}

TEST(PastedWords, TabsAndLinesPartThem) {
    EXPECT_EQ(read("1\t2\n3\t4\n"), "1=1 2=2 3=3 4=4");
    EXPECT_EQ(read("1\t2\r\n3\r\n"), "1=1 2=2 3=3");
    EXPECT_EQ(read("4660"), "4660=4660");
}

TEST(PastedWords, HexadecimalBearsAMark) {
    EXPECT_EQ(read("0x12ab\t12ABh\t&HFFFF\t0h\t0X0a"), "12ABh=4779 12ABh=4779 FFFFh=65535 0h=0 0Ah=10");
}

TEST(PastedWords, OneAloneIsReadInTheSameForms) {
    EXPECT_EQ(readWord(" 4660 "), 4660);
    EXPECT_EQ(readWord("1234h"), 0x1234);
    EXPECT_EQ(readWord("65536"), std::nullopt);
    EXPECT_EQ(readWord("1\t2"), std::nullopt);
    EXPECT_EQ(readWord(""), std::nullopt);
}

TEST(PastedWords, LongerThanACellIsWideTheyAreWrittenAnew) {
    EXPECT_EQ(read("0x000012ab\t0000065535"), "12ABh=4779 65535=65535");
    EXPECT_EQ(read("00007\t00FFh"), "00007=7 00FFh=255");
}

TEST(PastedWords, WhatIsNoWordHasNoValue) {
    EXPECT_EQ(read("65536\t-1\t+1\tabc\t12AB\t1.5\t0x\t10000h"),
              "65536=? -1=? +1=? abc=? 12AB=? 1.5=? 0x=? 10000hh=?");
}

TEST(PastedWords, EmptyFieldsKeepTheirPlaces) {
    EXPECT_EQ(read("1\t\t3\n\n5"), "1=1 - 3=3 - 5=5");
    EXPECT_EQ(read(" 1 \t 2"), "1=1 2=2");
    EXPECT_EQ(read("1\t"), "1=1 -");
}

TEST(PastedWords, NothingIsNoField) {
    EXPECT_EQ(pastedWords("").size(), 0U);
    EXPECT_EQ(pastedWords("\n").size(), 0U);
}

TEST(PastedWords, AllFitWhereThereIsRoom) {
    const WordsThatFit fit = fitWords(pastedWords("1\t\t3"), 3);
    EXPECT_TRUE(fit.isAll());
    ASSERT_EQ(fit.words.size(), 2U);
    EXPECT_EQ(fit.words.at(1).place, 2U);
    EXPECT_EQ(fit.words.at(1).word.value, 3);
}

TEST(PastedWords, WhatDoesNotFitIsTold) {
    const WordsThatFit fit = fitWords(pastedWords("1\tabc\t3\t4\t5"), 3);
    EXPECT_FALSE(fit.isAll());
    EXPECT_EQ(fit.words.size(), 2U);
    EXPECT_EQ(fitInWords(fit),
              "Of 5 pasted words, 2 fit. \"abc\" is no word of 0 to 65535. The request has no place for 2.");
}

} // namespace
} // namespace varda::test
