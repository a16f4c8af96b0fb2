#include "core/protocol/point_list.h"

#include "support/raises.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varda {
namespace {

using test::numberRaisedBy;
using Lines = std::vector<std::string>;

int parseError(std::string_view line) {
    return numberRaisedBy([&] { parsePointLine(line); });
}

Lines times(std::size_t count, const char* line) { return {count, line}; }

TEST(PointList, BitLineIsBuiltFromTheTextsAsTheyStand) {
    EXPECT_EQ(bitPointLine("R", "0012", "3", "8"), "BIT\tR0012.3\t8");
    EXPECT_EQ(bitPointLine("TC", "012", "15", "ON"), "BIT\tTC012.15\tON");
}

TEST(PointList, WordLineIsBuiltFromTheTextsAsTheyStand) {
    EXPECT_EQ(wordPointLine("W", "0100", "4"), "WORD\tW0100\t4");
    EXPECT_EQ(wordPointLine("SV", "7", "1a2b"), "WORD\tSV7\t1a2b");
}

TEST(PointList, ValueIsTheTextBehindTheLastTab) {
    EXPECT_EQ(pointValue("BIT\tR0012.3\t8"), "8");
    EXPECT_EQ(pointValue("WORD\tW0001\t1A2B"), "1A2B");
    EXPECT_EQ(pointValue("WORD\tW0001\t"), "");
}

TEST(PointList, BitLineIsCutIntoItsFields) {
    const PointLine point = parsePointLine("BIT\tR0012.3\t8");
    EXPECT_EQ(point.access, Access::Bit);
    EXPECT_EQ(point.kind, "R");
    EXPECT_EQ(point.number, 12);
    EXPECT_EQ(point.bit, 3);
    EXPECT_EQ(point.value, "8");
}

TEST(PointList, WordLineIsCutIntoItsFields) {
    const PointLine point = parsePointLine("WORD\tW0100\t4");
    EXPECT_EQ(point.access, Access::Word);
    EXPECT_EQ(point.kind, "W");
    EXPECT_EQ(point.number, 100);
    EXPECT_EQ(point.bit, 0);
    EXPECT_EQ(point.value, "4");
}

TEST(PointList, KindOfTwoLettersIsCutToOneAndItsNumberIsTypeMismatch) {
    EXPECT_EQ(parseError("BIT\tTC012.3\t8"), 13);
    EXPECT_EQ(parseError("WORD\tTC012\t8"), 13);
    EXPECT_EQ(parseError("WORD\tSV012\t8"), 13);
    EXPECT_EQ(parseError("WORD\tPV012\tFFFF"), 13);
    EXPECT_EQ(parseError("WORD\tSR012\t8"), 13);
}

TEST(PointList, NumberThatIsNoneIsAnError) {
    EXPECT_EQ(parseError("BIT\tRx.3\t8"), 13);
    EXPECT_EQ(parseError("BIT\tR0012.\t8"), 13);
    EXPECT_EQ(parseError("BIT\tR0012.x\t8"), 13);
    EXPECT_EQ(parseError("WORD\tW\t8"), 13);
    EXPECT_EQ(parseError("WORD\tW40000\t8"), 6);
    EXPECT_EQ(parseError("BIT\tR0.99999\t8"), 6);
}

TEST(PointList, LineWithoutItsSeparatorsIsAnErrorNotACrash) {
    for (const char* line : {"B", "W", "BIT", "BIT\t", "BIT\tR", "BIT\tR1", "WORD\t", "WORD\t\t"}) {
        EXPECT_NE(parseError(line), 0) << line;
    }
}

TEST(ListDataLength, CountsOneForABitAndTwoForAWord) {
    EXPECT_EQ(GetListDataLength(Lines{}), 0);
    EXPECT_EQ(GetListDataLength(Lines{"BIT\tR0000.0\tON"}), 1);
    EXPECT_EQ(GetListDataLength(Lines{"WORD\tW0000\tFFFF"}), 2);
    EXPECT_EQ(GetListDataLength(Lines{"BIT\tR0000.0\tON", "", "WORD\tW0000\t0", "BIT\tTC000.0\tOFF"}), 4);
}

TEST(ListDataLength, LineOfNeitherAccessAddsNothing) {
    EXPECT_EQ(GetListDataLength(Lines{"X\tR0000\t5", "BIT\tR0000.0\tON"}), 1);
}

TEST(ListDataLength, TakesOtherSizesOfAPoint) {
    EXPECT_EQ(GetListDataLength(Lines{"BIT\tR0000.0\tON", "WORD\tW0000\t0"}, 3, 4), 7);
}

TEST(ListDataLength, With253BitLinesAFurtherLineIsAcceptedWith254NoneIs) {
    EXPECT_LT(GetListDataLength(times(253, "BIT\tR0000.0\tON")), fullPointList);
    EXPECT_GE(GetListDataLength(times(254, "BIT\tR0000.0\tON")), fullPointList);
    EXPECT_EQ(GetListDataLength(times(254, "BIT\tR0000.0\tON")), 254);
}

TEST(ListDataLength, SumAboveEightBitsIsOverflow) {
    EXPECT_EQ(GetListDataLength(times(255, "BIT\tR0000.0\tON")), 255);
    EXPECT_EQ(numberRaisedBy([] { GetListDataLength(times(256, "BIT\tR0000.0\tON")); }), 6);
    EXPECT_EQ(numberRaisedBy([] { GetListDataLength(times(128, "WORD\tW0000\t0")); }), 6);
}

TEST(MixedReadAnswerLength, CountsOneByteForABitAndTwoForAWord) {
    EXPECT_EQ(GetMRAnswerLength(Lines{}), 0);
    EXPECT_EQ(GetMRAnswerLength(Lines{"BIT\tR0012.3\t8", "", "WORD\tW0100\t4"}), 16);
}

TEST(MixedReadAnswerLength, SameLineTwiceCountsTwice) {
    EXPECT_EQ(GetMRAnswerLength(Lines{"WORD\tW0100\t4", "WORD\tW0100\t4"}), 16);
}

TEST(MixedReadAnswerLength, KindIsNotReadSoTwoLettersDoNotMatter) {
    EXPECT_EQ(GetMRAnswerLength(Lines{"WORD\tSV001\t5", "BIT\tTC000.0\t3"}), 13);
}

TEST(MixedReadAnswerLength, LineOfNeitherAccessAddsNothing) {
    EXPECT_EQ(GetMRAnswerLength(Lines{"X\tR0000\t5", "BIT\tR0000.0\t3"}), 3);
}

TEST(MixedReadAnswerLength, With253AnswerBytesAFurtherLineIsAcceptedWith254NoneIs) {
    EXPECT_LT(GetMRAnswerLength(Lines{"BIT\tR0000.0\t253"}), fullPointList);
    EXPECT_GE(GetMRAnswerLength(Lines{"BIT\tR0000.0\t253", "BIT\tR0000.0\t1"}), fullPointList);
    EXPECT_GE(GetMRAnswerLength(Lines{"WORD\tW0000\t127"}), fullPointList);
}

TEST(MixedReadAnswerLength, FullTestLeavesTheSizeOfTheNewLineOut) {
    const Lines grownPastTheEnd = {"BIT\tR0000.0\t253", "WORD\tW0000\t128"};
    EXPECT_LT(GetMRAnswerLength(Lines{grownPastTheEnd.front()}), fullPointList);
    EXPECT_EQ(numberRaisedBy([&] { GetMRAnswerLength(grownPastTheEnd); }), 6);
}

TEST(MixedReadAnswerLength, SumAboveEightBitsIsOverflow) {
    EXPECT_EQ(GetMRAnswerLength(Lines{"BIT\tR0000.0\t255"}), 255);
    EXPECT_EQ(numberRaisedBy([] { GetMRAnswerLength(Lines{"BIT\tR0000.0\t256"}); }), 6);
    EXPECT_EQ(numberRaisedBy([] { GetMRAnswerLength(Lines{"WORD\tW0000\t128"}); }), 6);
    EXPECT_EQ(numberRaisedBy([] { GetMRAnswerLength(times(2, "BIT\tR0000.0\t128")); }), 6);
}

TEST(MixedReadAnswerLength, CountThatIsNoNumberIsAnError) {
    EXPECT_EQ(numberRaisedBy([] { GetMRAnswerLength(Lines{"BIT\tR0000.0\tx"}); }), 13);
    EXPECT_EQ(numberRaisedBy([] { GetMRAnswerLength(Lines{"WORD\tW0000\t"}); }), 13);
    EXPECT_EQ(numberRaisedBy([] { GetMRAnswerLength(Lines{"WORD\tW0000\t40000"}); }), 6);
}

TEST(PointAdvice, NamesThePoint) {
    EXPECT_EQ(pointName("WORD\tSR000\t4"), "SR 000");
    EXPECT_EQ(pointName("BIT\tR0012.3\t8"), "R 0012.3");
    const auto begins = [](int number, std::string_view line) {
        const std::string advice = pointAdvice(number, line);
        return advice.substr(0, advice.find('.'));
    };
    EXPECT_EQ(begins(13, "WORD\tSR000\t4"), "SR 000: mixed requests carry no two-letter kind");
    EXPECT_EQ(begins(13, "WORD\tW0007\t"), "W 0007: the point has no value");
    EXPECT_EQ(begins(13, "WORD\tW0007\tzz"), "W 0007: the point bears no number");
    EXPECT_EQ(begins(6, "WORD\tW0007\t128"), "W 0007: with this point a number or the request is too large");
}

TEST(PointAdvice, ComesWithEveryErrorOfAList) {
    const Lines lines = {"WORD\tW0001\t100", "WORD\tW0200\t100"};
    EXPECT_TRUE(test::adviceOf([&] { GetMRAnswerLength(lines); }).starts_with("W 0200: "));
    EXPECT_TRUE(
        test::adviceOf([] { GetListDataLength(times(200, "WORD\tW0003\t1")); }).starts_with("W 0003: "));
}

} // namespace
} // namespace varda
