#include "core/pairs/packet_builders.h"

#include "support/raises.h"

#include <gtest/gtest.h>

namespace varda {
namespace {

using test::numberRaisedBy;

constexpr const char* nineDigits = "313233343536373839";

/// Station 1 asked by station 0; the rest is the test's own.
SimFields fieldsAt(const SimPosition& position) { return {"1", "0", position, "", "", {}}; }

SimFields readFields(const SimPosition& position, const std::string& length, const std::string& data = "") {
    return {"1", "0", position, length, data, {}};
}

SimFields writeFields(const SimPosition& position, std::vector<std::string> points) {
    return {"1", "0", position, "", "", std::move(points)};
}

const std::string on = "WT_BIT \t\tR0000.0\tON";
const std::string off = "WT_BIT \t\tR0000.0\tOFF";

std::string word(const std::string& value) { return "WT_WORD\tR0000\t" + value; }

/// The four digits of the address field of a bit write of one point.
std::string bitAddressBehind(const SimPosition& position, std::size_t points = 1) {
    return MakeSimBitWriteFormat(writeFields(position, std::vector<std::string>(points, on))).substr(8, 4);
}

TEST(BytesOfFrameText, ReadsPairsOfEitherCase) {
    EXPECT_EQ(bytesOfFrameText("00fFA1"), (Bytes{0x00, 0xFF, 0xA1}));
    EXPECT_TRUE(bytesOfFrameText("").empty());
}

TEST(BytesOfFrameText, RefusesOddLengthAndWhatIsNoHexadecimal) {
    for (const char* const text : {"0", "012", "0G", "GG", " 1", "1 ", "-1", "+1", "&H", "0x", "\t1"}) {
        EXPECT_EQ(numberRaisedBy([&] { bytesOfFrameText(text); }), 13) << '"' << text << '"';
    }
}

TEST(SimPacketCheck, LowByteGoesFirst) { EXPECT_EQ(AppendSimPacketCheck("BIT_WRITE", nineDigits), "374B"); }

struct CheckRow {
    const char* kind;
    const char* overNine;    ///< check over the nine bytes of nineDigits
    const char* overFive;    ///< over 01 00 21 03 C3
    const char* overNothing; ///< over no byte
};

// A read covers seven bytes whatever the body, an answer one zero byte more than the body.
const std::vector<CheckRow> checkRows = {
    {"BIT_READ", "739D", "47BF", "1B00"},
    {"WORD_READ", "739D", "47BF", "1B00"},
    {"BIT_WRITE", "374B", "096B", "FFFF"},
    {"WORD_WRITE", "374B", "096B", "FFFF"},
    {"BIT_READ_ANS", "0AD6", "AB06", "BF40"},
    {"WORD_READ_ANS", "0AD6", "AB06", "BF40"},
    {"BIT_WRITE_ANS", "0AD6", "AB06", "BF40"},
    {"WORD_WRITE_ANS", "0AD6", "AB06", "BF40"},
    {"MIXED_READ", "", "", ""},
    {"MIXED_WRITE", "", "", ""},
};

TEST(SimPacketCheck, EveryKindCoversItsOwnBytes) {
    for (const CheckRow& row : checkRows) {
        SCOPED_TRACE(row.kind);
        EXPECT_EQ(AppendSimPacketCheck(row.kind, nineDigits), row.overNine);
        EXPECT_EQ(AppendSimPacketCheck(row.kind, "01002103C3"), row.overFive);
        EXPECT_EQ(AppendSimPacketCheck(row.kind, ""), row.overNothing);
    }
}

TEST(SimPacketCheck, ReadKindsCoverSevenBytesOfALongerBody) {
    EXPECT_EQ(AppendSimPacketCheck("BIT_READ", nineDigits),
              AppendSimPacketCheck("BIT_WRITE", "31323334353637"));
}

TEST(SimPacketCheck, BodyShorterThanCoveredCountsAsFollowedByZeros) {
    EXPECT_EQ(AppendSimPacketCheck("WORD_READ", "01002103C3"),
              AppendSimPacketCheck("WORD_WRITE", "01002103C30000"));
}

TEST(SimPacketCheck, KeysAreCaseSensitiveAndOthersHaveNoCheck) {
    EXPECT_EQ(AppendSimPacketCheck("bit_read", nineDigits), "");
    EXPECT_EQ(AppendSimPacketCheck("", nineDigits), "");
}

TEST(SimPacketCheck, BodyThatIsNoFrameTextIsATypeMismatch) {
    for (const CheckRow& row : checkRows) {
        const int expected = std::string(row.kind).starts_with("MIXED") ? 0 : 13;
        EXPECT_EQ(numberRaisedBy([&] { AppendSimPacketCheck(row.kind, "010"); }), expected) << row.kind;
        EXPECT_EQ(numberRaisedBy([&] { AppendSimPacketCheck(row.kind, "01XY"); }), expected) << row.kind;
    }
}

TEST(SimReadRequest, BitReadCarriesAddressLowByteFirstAndPlainCount) {
    EXPECT_EQ(MakeSimBitReadFormat(readFields({"M", "0012", "3"}, "8")), "01002103C30C084379");
}

TEST(SimReadRequest, WordReadReachesTheLastRegister) {
    EXPECT_EQ(MakeSimWordReadFormat({"10", "255", {"SR", "511", ""}, "255", "", {}}), "0AFF2303FF0DFF146C");
}

TEST(SimReadRequest, FiveDigitNumberOfASteppedPageIsReadAsDecimal) {
    EXPECT_EQ(MakeSimBitReadFormat(readFields({"R", "00000", "0"}, "256")), "01002103000000B783");
}

TEST(SimReadRequest, CountOf256IsSentAsZero) {
    EXPECT_EQ(MakeSimBitReadFormat(readFields({"R", "0000", "0"}, "256")).substr(12, 2), "00");
}

TEST(SimReadRequest, BitAboveFifteenLengthensTheTextTheAddressIsCutFrom) {
    EXPECT_EQ(MakeSimBitReadFormat(readFields({"R", "0000", "20"}, "8")), "01002103010008E785");
}

TEST(SimReadRequest, WordOnlyKindHasBaseZeroInABitRequest) {
    EXPECT_EQ(MakeSimBitReadFormat(readFields({"W", "0012", "3"}, "8")).substr(8, 4), "C300");
}

TEST(SimReadRequest, WordRequestNeedsNoBit) {
    EXPECT_EQ(MakeSimWordReadFormat(readFields({"W", "0000", "nonsense"}, "1")).substr(8, 4), "0002");
}

TEST(SimReadRequest, StationThatIsNoNumberOrTooLargeIsStationZero) {
    for (const char* const station : {"", "abc", "256", "-1", "99999", "1.5"}) {
        const SimFields fields{station, station, {"R", "0000", "0"}, "8", "", {}};
        EXPECT_EQ(MakeSimBitReadFormat(fields), "00002103000008A685") << '"' << station << '"';
    }
}

TEST(SimReadRequest, FieldThatIsNoNumberIsATypeMismatch) {
    const std::vector<SimFields> damaged = {
        readFields({"R", "", "0"}, "8"),
        readFields({"R", "0000", ""}, "8"),
        readFields({"R", "0000", "0"}, ""),
        readFields({"R", "x", "y"}, "z"),
    };
    for (const SimFields& fields : damaged) {
        EXPECT_EQ(numberRaisedBy([&] { MakeSimBitReadFormat(fields); }), 13);
    }
}

TEST(SimReadRequest, AddressBeyondSixteenBitsIsAnOverflow) {
    EXPECT_EQ(numberRaisedBy([] { MakeSimWordReadFormat(readFields({"W", "32767", ""}, "1")); }), 6);
}

TEST(SimReadAnswer, BitReadAnswerIsFinishedAsARequest) {
    EXPECT_EQ(MakeSimBitReadAnsFormat(readFields({}, "3", "FF00FF")), "0100A103FF00FFC62D");
    EXPECT_EQ(MakeSimBitReadAnsFormat(readFields({}, "8", "FF00FF00FF00FF00")),
              "0100A108FF00FF00FF00FF00C409");
}

TEST(SimReadAnswer, ShortBitReadAnswerIsCheckedAsFollowedByZeros) {
    EXPECT_EQ(MakeSimBitReadAnsFormat(readFields({}, "1", "FF")), "0100A101FF87D5");
    EXPECT_EQ(MakeSimBitReadAnsFormat(readFields({}, "3", "")), "0100A103B65D");
}

TEST(SimReadAnswer, BitReadAnswerChecksItsFirstSevenBytesOnly) {
    const std::string allOn = MakeSimBitReadAnsFormat(readFields({}, "8", "FF00FF00FF00FFFF"));
    EXPECT_EQ(allOn.substr(allOn.size() - 4), "C409");
}

TEST(SimReadAnswer, WordReadAnswerCarriesThePlainCountAndOneZeroByteInItsCheck) {
    EXPECT_EQ(MakeSimWordReadAnsFormat(readFields({}, "2", "12345678")), "0100A30212345678E1AB");
    EXPECT_EQ(MakeSimWordReadAnsFormat(readFields({}, "255", "")), "0100A3FFA812");
}

TEST(SimReadAnswer, DataGoInAsTheyStand) {
    EXPECT_EQ(MakeSimWordReadAnsFormat(readFields({}, "1", "abcd")), "0100A301abcdEB55");
}

TEST(SimReadAnswer, DataThatAreNoFrameTextAreATypeMismatch) {
    EXPECT_EQ(numberRaisedBy([] { MakeSimWordReadAnsFormat(readFields({}, "1", "123")); }), 13);
    EXPECT_EQ(numberRaisedBy([] { MakeSimBitReadAnsFormat(readFields({}, "1", "XX")); }), 13);
}

TEST(SimAcknowledgement, CarriesFixedTextAndOneZeroByteInItsCheck) {
    EXPECT_EQ(MakeSimBitWriteAnsFormat(fieldsAt({})), "0100A2010073B2");
    EXPECT_EQ(MakeSimWordWriteAnsFormat(fieldsAt({})), "0100A40100733A");
    EXPECT_EQ(MakeSimBitWriteAnsFormat({}), "0000A201007263");
}

TEST(SimMixedRequest, CannotBePrepared) {
    EXPECT_EQ(MakeSimMixedReadFormat(), "");
    EXPECT_EQ(MakeSimMixedWriteFormat(), "");
}

TEST(SimBitWrite, CarriesThePlainCountTheFirstPointsAddressAndOneByteForEachPoint) {
    EXPECT_EQ(MakeSimBitWriteFormat(writeFields({"R", "0000", "3"}, {on, off, on})),
              "010022030000FF00FF7521");
}

TEST(SimBitWrite, SixteenBitsAreOneNumberOnTheWayBack) {
    EXPECT_EQ(MakeSimBitWriteFormat(writeFields({"R", "0006", "12"}, std::vector<std::string>(18, on))),
              "010022125A00FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF2B1");
}

TEST(SimBitWrite, WithoutPointsStandsAtThePageItself) {
    EXPECT_EQ(MakeSimBitWriteFormat(writeFields({"R", "0000", "0"}, {})), "0100220000000BB2");
}

TEST(SimBitWrite, CountOfMoreThanAByteKeepsItsLastTwoDigits) {
    const std::vector<std::string> points(256, off);
    const std::string frame = MakeSimBitWriteFormat(writeFields({"R", "0016", "0"}, points));
    EXPECT_EQ(frame, "010022000000" + std::string(512, '0') + "5004");
}

TEST(SimBitWrite, BelowNumberZeroLiesTheEndOfThePreviousRegister) {
    // from "W" back into "TC", whose last word is 464 + 255
    EXPECT_EQ(MakeSimBitWriteFormat(writeFields({"W", "00000", "0"}, {on, off, on})),
              "01002203FD2CFF00FF1065");
    EXPECT_EQ(bitAddressBehind({"TC", "00000", "0"}), "FF1C");
}

TEST(SimBitWrite, RegisterMReachesBackToNumber64OfL) {
    EXPECT_EQ(MakeSimBitWriteFormat(writeFields({"M", "00000", "0"}, {on})), "010022010F0CFF8778");
}

TEST(SimBitWrite, RunFromMIntoKGetsAnAddressInK) {
    EXPECT_EQ(MakeSimBitWriteFormat(writeFields({"K", "00000", "0"}, {on})), "01002201FF1BFF88BB");
}

TEST(SimBitWrite, WordOnlyKindThatStepsReachHasBaseZero) {
    EXPECT_EQ(MakeSimBitWriteFormat(writeFields({"W", "0001", "2"}, {on})), "010022011100FFE27E");
}

TEST(SimBitWrite, DoesNotStepBelowTheFirstRegister) {
    EXPECT_EQ(bitAddressBehind({"R", "0000", "1"}, 3), "0000");
    EXPECT_EQ(bitAddressBehind({"R", "0000", "0"}, 300), "0000");
}

TEST(SimWordWrite, WordsGoHighByteFirstAsTheyAreTyped) {
    EXPECT_EQ(MakeSimWordWriteFormat(writeFields({"M", "0002", ""}, {word("1234"), word("ABCD")})),
              "01002402C0001234ABCDEAFA");
}

TEST(SimWordWrite, BitFieldIsNotLookedAt) {
    EXPECT_EQ(MakeSimWordWriteFormat(writeFields({"M", "0002", "x"}, {word("1234"), word("ABCD")})),
              "01002402C0001234ABCDEAFA");
}

TEST(SimWordWrite, TypedLowerCaseDigitsBecomeUpperCase) {
    EXPECT_EQ(MakeSimWordWriteFormat(writeFields({"W", "0001", ""}, {word("00ab")})), "01002401000200AB5A9C");
}

TEST(SimWordWrite, ReloadedLinesBuildTheSameFrame) {
    EXPECT_EQ(MakeSimWordWriteFormat(
                  writeFields({"M", "0002", "0"}, {"WT_WORD \tM0000\t1234", "WT_WORD \tM0001\tABCD"})),
              "01002402C0001234ABCDEAFA");
}

TEST(SimWordWrite, BelowNumberZeroLiesTheEndOfThePreviousRegister) {
    // from "PV" back into "SV", whose last word is 2560 + 255
    EXPECT_EQ(MakeSimWordWriteFormat(writeFields({"PV", "00000", "0"}, {word("0001")})),
              "01002401FF0A00016B35");
}

TEST(SimWordWrite, LastRegisterOfAllIsAddressedOneTooLowSinceThePageDoesNotStepBehindIt) {
    EXPECT_EQ(MakeSimWordWriteFormat(writeFields({"SR", "511", ""}, {word("BEEF")})), "01002401FE0DBEEF2AE4");
}

TEST(SimWordWrite, ValueThatIsNoHexadecimalIsATypeMismatch) {
    EXPECT_EQ(numberRaisedBy([] {
                  MakeSimWordWriteFormat(writeFields({"R", "0001", ""}, {word("0xyz")}));
              }),
              13);
}

} // namespace
} // namespace varda
