#include "core/pairs/sim_points.h"

#include "core/pairs/packet_builders.h"
#include "core/protocol/point_list.h"
#include "support/raises.h"

#include <gtest/gtest.h>

namespace varda {
namespace {

using test::numberRaisedBy;
using Lines = std::vector<std::string>;

const SimPosition m12{"M", "0012", "3"};

TEST(SimPointLine, EveryFormHasItsTagAndTabs) {
    EXPECT_EQ(simPointLine(SimPointForm::BitRead, m12, "8"), "RD_BIT \t\tM0012.3\t8");
    EXPECT_EQ(simPointLine(SimPointForm::WordRead, m12, "8"), "RD_WORD\tM0012\t8");
    EXPECT_EQ(simPointLine(SimPointForm::BitWrite, m12, "ON"), "WT_BIT \t\tM0012.3\tON");
    EXPECT_EQ(simPointLine(SimPointForm::WordWrite, m12, "00FF"), "WT_WORD\tM0012\t00FF");
    EXPECT_EQ(simPointLine(SimPointForm::MixedReadBit, m12, "8"), "MR_BIT \t\tM0012.3\t8");
    EXPECT_EQ(simPointLine(SimPointForm::MixedReadWord, m12, "8"), "MR_WORD\tM0012\t8");
    EXPECT_EQ(simPointLine(SimPointForm::MixedWriteBit, m12, "OFF"), "MW_BIT \t\tM0012.3\tOFF");
    EXPECT_EQ(simPointLine(SimPointForm::MixedWriteWord, m12, "00FF"), "MW_WORD\tM0012\t00FF");
}

TEST(SimPointLine, TagIsSevenCharactersLong) {
    for (const SimPointForm form :
         {SimPointForm::BitRead, SimPointForm::WordRead, SimPointForm::BitWrite, SimPointForm::WordWrite,
          SimPointForm::MixedReadBit, SimPointForm::MixedReadWord, SimPointForm::MixedWriteBit,
          SimPointForm::MixedWriteWord}) {
        EXPECT_EQ(simPointLine(form, m12, "1").find('\t'), 7U);
    }
}

TEST(SimPointLine, TagOfAReloadedWordWriteIsEightCharactersLong) {
    EXPECT_EQ(simPointLine(SimPointForm::ReloadedWordWrite, m12, "00FF"), "WT_WORD \tM0012\t00FF");
}

TEST(SimPointLine, FieldsGoInAsTheyStand) {
    EXPECT_EQ(simPointLine(SimPointForm::BitWrite, {"TC", "00000", "0"}, "ON"), "WT_BIT \t\tTC00000.0\tON");
    EXPECT_EQ(simPointLine(SimPointForm::BitRead, {"", "", ""}, ""), "RD_BIT \t\t.\t");
}

TEST(SimPointLine, ValueStandsBehindTheLastTab) {
    EXPECT_EQ(pointValue(simPointLine(SimPointForm::BitWrite, m12, "OFF")), "OFF");
    EXPECT_EQ(pointValue(simPointLine(SimPointForm::ReloadedWordWrite, m12, "BEEF")), "BEEF");
}

TEST(SimWordValue, HexadecimalKeepsTheLastFourDigitsAsTheyAreTyped) {
    EXPECT_EQ(simWordValue("", true), "0000");
    EXPECT_EQ(simWordValue("7", true), "0007");
    EXPECT_EQ(simWordValue("BEEF", true), "BEEF");
    EXPECT_EQ(simWordValue("12345", true), "2345");
    EXPECT_EQ(simWordValue("ab", true), "00ab");
}

TEST(SimWordValue, DecimalBecomesFourUpperCaseDigits) {
    EXPECT_EQ(simWordValue("0", false), "0000");
    EXPECT_EQ(simWordValue("10", false), "000A");
    EXPECT_EQ(simWordValue("48879", false), "BEEF");
    EXPECT_EQ(simWordValue("65535", false), "FFFF");
    EXPECT_EQ(simWordValue("-1", false), "FFFF");
    EXPECT_EQ(simWordValue("-32768", false), "8000");
}

TEST(SimWordValue, DecimalNumberOutsideSixteenBitsIsAnOverflow) {
    EXPECT_EQ(numberRaisedBy([] { simWordValue("65536", false); }), 6);
    EXPECT_EQ(numberRaisedBy([] { simWordValue("-32769", false); }), 6);
}

TEST(SimWordValue, DecimalTextThatIsNoNumberIsATypeMismatch) {
    EXPECT_EQ(numberRaisedBy([] { simWordValue("", false); }), 13);
    EXPECT_EQ(numberRaisedBy([] { simWordValue("BEEF", false); }), 13);
}

struct ReadRow {
    const char* request;
    const char* mode;
    SimPosition position;
    const char* length;
};

const std::vector<ReadRow> readRows = {
    {"01002103C30C084379", "Bit Read", {"M", "0012", "3"}, "8"},
    {"01002103FF1C010000", "Bit Read", {"F", "0015", "15"}, "1"},
    {"01002103001D010000", "Bit Read", {"TC", "000", "0"}, "1"},
    {"01002303F401100000", "Word Read", {"TC", "036", ""}, "16"},
    {"01002303FF09FF0000", "Word Read", {"W", "2047", ""}, "255"},
    {"01002303280A010000", "Word Read", {"SV", "040", ""}, "1"},
    {"010023030000000000", "Word Read", {"R", "0000", ""}, "0"},
};

TEST(PreparedRequestOf, AReadShowsItsStartAddressInTheWidthOfTheList) {
    for (const ReadRow& row : readRows) {
        SCOPED_TRACE(row.request);
        const PreparedRequest prepared = parsePreparedRequest(row.request);
        EXPECT_TRUE(prepared.supported);
        EXPECT_EQ(prepared.destination, "1");
        EXPECT_EQ(prepared.source, "0");
        EXPECT_EQ(prepared.mode, row.mode);
        EXPECT_TRUE(prepared.position == row.position) << prepared.position.kind << prepared.position.number;
        EXPECT_EQ(prepared.count, row.length);
        EXPECT_TRUE(prepared.points.empty());
    }
}

TEST(PreparedRequestOf, StationsAreDecimal) {
    const PreparedRequest prepared = parsePreparedRequest("0AFF2303FF0DFF146C");
    EXPECT_EQ(prepared.destination, "10");
    EXPECT_EQ(prepared.source, "255");
}

TEST(PreparedRequestOf, AnSRNumberIsTheWholeAddress) {
    EXPECT_EQ(parsePreparedRequest("010023031C0C010000").position.number, "3100");
    EXPECT_EQ(parsePreparedRequest("01002303FFFF010000").position.number, "65535");
}

TEST(PreparedRequestOf, ATCNumberAboveItsBlockComesBackAsWWhereItIsAWord) {
    // "TC" 100 and "W" 52 are the same word
    EXPECT_TRUE(parsePreparedRequest("010023033402010000").position == (SimPosition{"W", "0052", ""}));
    EXPECT_TRUE(parsePreparedRequest("010021034323010000").position == (SimPosition{"TC", "100", "3"}));
}

TEST(PreparedRequestOf, TheCheckIsNotLookedAt) {
    EXPECT_EQ(parsePreparedRequest("01002103C30C08").count, "8");
    EXPECT_EQ(parsePreparedRequest("01002103C30C08FFFF").count, "8");
}

TEST(PreparedRequestOf, ABitWriteRebuildsItsPointsAndStandsBehindTheLast) {
    const PreparedRequest prepared = parsePreparedRequest("01002203FE2CFF00FF1065");
    EXPECT_EQ(prepared.mode, "Bit Write");
    EXPECT_EQ(prepared.points,
              (Lines{"WT_BIT \t\tTC255.14\tON", "WT_BIT \t\tTC255.15\tOFF", "WT_BIT \t\tW00000.0\tON"}));
    EXPECT_TRUE(prepared.position == (SimPosition{"W", "00000", "1"}));
    EXPECT_EQ(prepared.count, "");
}

TEST(PreparedRequestOf, ARunOverTheEndOfARegisterShowsFiveZeros) {
    const PreparedRequest prepared = parsePreparedRequest("01002202FF1CFFFF0000");
    EXPECT_EQ(prepared.points, (Lines{"WT_BIT \t\tF0015.15\tON", "WT_BIT \t\tTC00000.0\tON"}));
    EXPECT_TRUE(prepared.position == (SimPosition{"TC", "00000", "1"}));
}

TEST(PreparedRequestOf, AWordWriteRebuildsLinesWithATagOfEightCharacters) {
    const PreparedRequest prepared = parsePreparedRequest("01002402C0001234ABCDEAFA");
    EXPECT_EQ(prepared.mode, "Word Write");
    EXPECT_EQ(prepared.points, (Lines{"WT_WORD \tM0000\t1234", "WT_WORD \tM0001\tABCD"}));
    EXPECT_TRUE(prepared.position == (SimPosition{"M", "0002", "0"}));
}

TEST(PreparedRequestOf, ASRWriteStandsStillSinceItsNumberIsBeyondTheLast) {
    const PreparedRequest prepared = parsePreparedRequest("010024021C0C000100020000");
    EXPECT_EQ(prepared.points, (Lines{"WT_WORD \tSR3100\t0001", "WT_WORD \tSR3100\t0002"}));
    EXPECT_TRUE(prepared.position == (SimPosition{"SR", "3100", ""}));
}

TEST(PreparedRequestOf, PointsOfAWriteAreThoseOfItsDataWhateverItsCountSays) {
    EXPECT_EQ(parsePreparedRequest("010022050000FF00FF0000").points.size(), 3U);
    EXPECT_EQ(parsePreparedRequest("010022FF00000000").points.size(), 0U);
}

TEST(PreparedRequestOf, RebuiltWritesBuildTheSameFrameAgain) {
    for (const char* const request :
         {"010022030000FF00FF7521", "010022125A00FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF2B1"}) {
        const PreparedRequest prepared = parsePreparedRequest(request);
        EXPECT_EQ(MakeSimBitWriteFormat(
                      {prepared.destination, prepared.source, prepared.position, "", "", prepared.points}),
                  request);
    }
    const PreparedRequest prepared = parsePreparedRequest("01002402C0001234ABCDEAFA");
    EXPECT_EQ(MakeSimWordWriteFormat(
                  {prepared.destination, prepared.source, prepared.position, "", "", prepared.points}),
              "01002402C0001234ABCDEAFA");
}

TEST(PreparedRequestOf, RebuiltReadsBuildTheSameFrameAgain) {
    const PreparedRequest bits = parsePreparedRequest("01002103C30C084379");
    EXPECT_EQ(MakeSimBitReadFormat({bits.destination, bits.source, bits.position, bits.count, "", {}}),
              "01002103C30C084379");
}

TEST(PreparedRequestOf, MixedRequestIsNotSupported) {
    const PreparedRequest read = parsePreparedRequest("050725");
    EXPECT_FALSE(read.supported);
    EXPECT_EQ(read.mode, "Mixed Read");
    EXPECT_EQ(read.destination, "5");
    EXPECT_EQ(read.source, "7");
    EXPECT_FALSE(parsePreparedRequest("0507260000").supported);
    EXPECT_EQ(parsePreparedRequest("0507260000").mode, "Mixed Write");
}

TEST(PreparedRequestOf, AnyOtherCodeIsNotSupportedAndHasNoMode) {
    for (const char* const request : {"0100A103FF", "010027", "010020", "0100", "01002", "0100xyz"}) {
        const PreparedRequest prepared = parsePreparedRequest(request);
        EXPECT_FALSE(prepared.supported) << request;
        EXPECT_EQ(prepared.mode, "") << request;
    }
}

TEST(PreparedRequestOf, DamagedTextIsATypeMismatch) {
    for (const char* const request :
         {"", "0", "01", "zz00", "010021", "01002103C30C", "01002103C30C0", "01002103C30CXX",
          "01002201000000", "010022010000010000", "010024010000FF0000", "0100240100FF"}) {
        EXPECT_EQ(numberRaisedBy([&] { parsePreparedRequest(request); }), 13) << request;
    }
}

TEST(PreparedRequestOf, BitWriteDataThatAreNeitherOnNorOffAreATypeMismatch) {
    EXPECT_EQ(numberRaisedBy([] { parsePreparedRequest("010022010000010000"); }), 13);
}

TEST(PreparedAnswerData, AreTheTextBetweenHeaderAndCheck) {
    EXPECT_EQ(preparedAnswerData("0100A103FF00FFC62D"), "FF00FF");
    EXPECT_EQ(preparedAnswerData("0100A30212345678E1AB"), "12345678");
    EXPECT_EQ(preparedAnswerData("0100A2010073B2"), "00");
}

TEST(PreparedAnswerData, AreEmptyInAnAnswerThatHasNone) {
    EXPECT_EQ(preparedAnswerData("0100A103B65D"), "");
    EXPECT_EQ(preparedAnswerData("0100A103B6"), "");
    EXPECT_EQ(preparedAnswerData(""), "");
}

} // namespace
} // namespace varda
