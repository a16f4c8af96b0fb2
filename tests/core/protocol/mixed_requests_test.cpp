#include "core/protocol/mixed_requests.h"

#include "support/raises.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace varda {
namespace {

using test::numberRaisedBy;
using Lines = std::vector<std::string>;

const StationTexts oneAndZero = {"1", "0"};
const StationTexts startTexts = {"255", "255"};

Lines times(std::size_t count, const char* line) { return {count, line}; }

Bytes readRequest(FrameImages& images, const Lines& lines, const StationTexts& stations = oneAndZero) {
    MakeMRDataFormat(images, lines);
    MakeMReadFormat(images, stations, lines);
    return mixedWire(images, command::mixedRead);
}

Bytes writeRequest(FrameImages& images, const Lines& lines, const StationTexts& stations = startTexts) {
    MakeMWDataFormat(images, lines);
    MakeMWriteFormat(images, stations, lines);
    return mixedWire(images, command::mixedWrite);
}

Bytes readRequest(const Lines& lines) {
    FrameImages images;
    return readRequest(images, lines);
}

Bytes writeRequest(const Lines& lines) {
    FrameImages images;
    return writeRequest(images, lines);
}

int readError(const Lines& lines) {
    FrameImages images;
    return numberRaisedBy([&] { readRequest(images, lines); });
}

int writeError(const Lines& lines) {
    FrameImages images;
    return numberRaisedBy([&] { writeRequest(images, lines); });
}

/// The LEN body bytes of a request as they went out.
Bytes bodyOf(const Bytes& wire) { return {wire.begin() + 4, wire.begin() + 4 + wire[3]}; }

TEST(MixedRead, OfAnEmptyListIsTheHeaderAndTheCheckWithOneByteMore) {
    FrameImages images;
    EXPECT_EQ(readRequest(images, {}, {"10", "0"}), (Bytes{0x0A, 0x00, 0x25, 0x00, 0x19, 0x6C, 0x00}));
    EXPECT_EQ(DisplayMRString(images), "A 0 25 00 19 6C ");
}

TEST(MixedRead, RunOfWordsBecomesMarkedAddresses) {
    EXPECT_EQ(readRequest({"WORD\tW0000\t2"}),
              (Bytes{0x01, 0x00, 0x25, 0x04, 0x00, 0x42, 0x01, 0x42, 0x56, 0x87, 0x00}));
}

TEST(MixedRead, WordAndBitPointsStandInListOrder) {
    FrameImages images;
    EXPECT_EQ(
        readRequest(images, {"WORD\tW0000\t2", "BIT\tR0001.0\t1", "BIT\tR0002.3\t1"}),
        (Bytes{0x01, 0x00, 0x25, 0x08, 0x00, 0x42, 0x01, 0x42, 0x10, 0x00, 0x23, 0x00, 0xE9, 0x51, 0x00}));
    EXPECT_EQ(DisplayMRString(images), "1 0 25 08 00 42 01 42 10 00 23 00 E9 51 ");
}

TEST(MixedRead, HighByteTwoIsMarkedForAWordAndPlainForABit) {
    EXPECT_EQ(bodyOf(readRequest({"WORD\tW0000\t1", "BIT\tR0032.0\t1"})), (Bytes{0x00, 0x42, 0x00, 0x02}));
}

TEST(MixedRead, BitsAboveFifteenAreNotCarriedIntoTheWord) {
    EXPECT_EQ(readRequest({"BIT\tR0000.14\t4"}), (Bytes{0x01, 0x00, 0x25, 0x08, 0x0E, 0x00, 0x0F, 0x00, 0x01,
                                                        0x00, 0x01, 0x00, 0x6E, 0x64, 0x00}));
}

TEST(MixedRead, BitRunPastFifteenKeepsTheWordInTheCutText) {
    // K 5 is word 0x145: texts 145F, 14510, cut to 5F 14 and 51 14
    EXPECT_EQ(bodyOf(readRequest({"BIT\tK0005.15\t2"})), (Bytes{0x5F, 0x14, 0x51, 0x14}));
}

TEST(MixedRead, WordOnlyKindInABitLineAddressesTheBlockOfR) {
    EXPECT_EQ(bodyOf(readRequest({"BIT\tW0002.3\t1"})), (Bytes{0x23, 0x00}));
}

TEST(MixedRead, SameLineTwiceIsReadTwice) {
    EXPECT_EQ(bodyOf(readRequest({"WORD\tM0000\t1", "WORD\tM0000\t1"})), (Bytes{0xC0, 0x40, 0xC0, 0x40}));
}

TEST(MixedRead, EmptyLinesAreSkipped) {
    EXPECT_EQ(bodyOf(readRequest({"", "WORD\tM0000\t1", ""})), (Bytes{0xC0, 0x40}));
}

TEST(MixedRead, CountBelowOneAddsNothing) { EXPECT_EQ(bodyOf(readRequest({"WORD\tM0000\t0"})), Bytes{}); }

TEST(MixedRead, Takes127Points) {
    const Bytes wire = readRequest({"WORD\tR0000\t127"});
    EXPECT_EQ(wire[3], 254);
    EXPECT_EQ(wire.size(), 261U);
    EXPECT_EQ(wire[256], 126);
    EXPECT_EQ(wire[257], 0x40);
}

TEST(MixedRead, The128thPointIsOverflow) {
    EXPECT_EQ(readError({"WORD\tR0000\t128"}), 6);
    EXPECT_EQ(readError({"BIT\tR0000.0\t200"}), 6);
    EXPECT_EQ(readError({"WORD\tR0000\t100", "BIT\tR0000.0\t28"}), 6);
    EXPECT_EQ(readError(times(127, "BIT\tR0000.0\t1")), 0);
    EXPECT_EQ(readError(times(128, "BIT\tR0000.0\t1")), 6);
}

TEST(MixedRead, KindOfTwoLettersIsTypeMismatch) {
    EXPECT_EQ(readError({"BIT\tTC000.0\t1"}), 13);
    EXPECT_EQ(readError({"WORD\tTC000\t1"}), 13);
    EXPECT_EQ(readError({"WORD\tSV000\t1"}), 13);
    EXPECT_EQ(readError({"WORD\tPV000\t1"}), 13);
    EXPECT_EQ(readError({"WORD\tW0000\t3", "WORD\tSR511\t1"}), 13);
}

TEST(MixedRead, FirstFailingLineDecidesTheError) {
    EXPECT_EQ(readError({"WORD\tR0000\t128", "WORD\tSV000\t1"}), 6);
    EXPECT_EQ(readError({"WORD\tSV000\t1", "WORD\tR0000\t128"}), 13);
}

TEST(MixedRead, CountOrNumberThatIsNoneIsAnError) {
    EXPECT_EQ(readError({"WORD\tW0000\tx"}), 13);
    EXPECT_EQ(readError({"WORD\tW0000\t"}), 13);
    EXPECT_EQ(readError({"WORD\tW32256\t1"}), 6); // 512 + 32256 = 32768
    EXPECT_EQ(readError({"WORD\tW32255\t2"}), 6);
    EXPECT_EQ(readError({"WORD\tW32255\t1"}), 0);
}

TEST(MixedRead, ExtraByteOnTheWireIsWhatAnEarlierLongerFrameLeft) {
    FrameImages images;
    readRequest(images, {"WORD\tW0000\t3"}); // body at 4 .. 9: 00 42 01 42 02 42
    EXPECT_EQ(readRequest(images, {"WORD\tR0000\t1"}).back(), 0x02);
    EXPECT_EQ(readRequest(images, {}).back(), 0xAA); // low byte of the check of the request before
}

TEST(MixedRead, PointThatOverflowsStaysBehindTheFrame) {
    FrameImages images;
    EXPECT_EQ(numberRaisedBy([&] { readRequest(images, {"WORD\tR0000\t128"}); }), 6);
    const Bytes wire = readRequest(images, {"WORD\tR0000\t126"}); // body at 4 .. 255, check at 256 and 257
    EXPECT_EQ(wire.size(), 259U);
    EXPECT_EQ(wire.back(), 0x7F); // low byte of the 128th address, 127
}

TEST(MixedRead, MixedImagesAreSeparate) {
    FrameImages images;
    writeRequest(images, times(3, "BIT\tR0000.3\tON"));
    EXPECT_EQ(readRequest(images, {}).back(), 0x00);
}

TEST(MixedRead, PointsBeforeAFailingLineStayInTheImage) {
    FrameImages images;
    EXPECT_EQ(numberRaisedBy([&] {
                  MakeMRDataFormat(images, Lines{"WORD\tW0000\t2", "WORD\tSV000\t1"});
              }),
              13);
    EXPECT_EQ(images.mixedRead.byte(offset::length), 4);
    EXPECT_EQ(images.mixedRead.byte(5), 0x42);
}

TEST(MixedReadHeader, LengthIsTheSumOfTheLinesWhereTheImageAgrees) {
    FrameImages images;
    const Lines lines = {"WORD\tW0000\t2", "", "BIT\tR0000.0\t3"};
    MakeMRDataFormat(images, lines);
    EXPECT_EQ(CheckMRLength(images, lines), 10);
}

TEST(MixedReadHeader, LengthIsZeroWhereTheImageDisagrees) {
    FrameImages images;
    const Lines lines = {"WORD\tW0000\t2"};
    EXPECT_EQ(CheckMRLength(images, lines), 0);
    MakeMRDataFormat(images, lines);
    EXPECT_EQ(CheckMRLength(images, Lines{"WORD\tW0000\t3"}), 0);
    MakeMReadFormat(images, oneAndZero, Lines{"WORD\tW0000\t3"});
    EXPECT_EQ(images.mixedRead.text(offset::length), "00");
}

TEST(MixedReadHeader, SumOfLinesAboveEightBitsIsOverflow) {
    const FrameImages images;
    EXPECT_EQ(numberRaisedBy([&] { CheckMRLength(images, Lines{"BIT\tR0000.0\t128"}); }), 6);
    EXPECT_EQ(numberRaisedBy([&] { CheckMRLength(images, Lines{"BIT\tR0000.0\t127"}); }), 0);
    EXPECT_EQ(numberRaisedBy([&] { CheckMRLength(images, Lines{"BIT\tR0000.0\tx"}); }), 13);
}

TEST(MixedReadHeader, ChangedStationsKeepTheBody) {
    FrameImages images;
    const Lines lines = {"WORD\tW0000\t2"};
    readRequest(images, lines);
    MakeMReadFormat(images, {"&HFF", "x"}, lines);
    EXPECT_EQ(DisplayMRString(images).substr(0, 24), "FF 00 25 04 00 42 01 42 ");
}

TEST(MixedWrite, OfAnEmptyListIsTheHeaderAndTheCheckWithOneByteMore) {
    EXPECT_EQ(writeRequest(Lines{}), (Bytes{0xFF, 0xFF, 0x26, 0x00, 0x1A, 0x60, 0x00}));
}

TEST(MixedWrite, SingleBitOn) {
    FrameImages images;
    EXPECT_EQ(writeRequest(images, {"BIT\tR0000.3\tON"}),
              (Bytes{0xFF, 0xFF, 0x26, 0x03, 0x03, 0x00, 0xFF, 0xB9, 0xC3, 0x00}));
    EXPECT_EQ(DisplayMWString(images), "FF FF 26 03 03 00 FF B9 C3 ");
}

TEST(MixedWrite, SingleWord) {
    EXPECT_EQ(writeRequest({"WORD\tW0001\t1A2B"}),
              (Bytes{0xFF, 0xFF, 0x26, 0x04, 0x01, 0x42, 0x2B, 0x1A, 0xC8, 0x15, 0x00}));
}

TEST(MixedWrite, WordValueIsReadInEitherCaseWithoutPadding) {
    EXPECT_EQ(bodyOf(writeRequest({"WORD\tW0001\t1a2b"})), (Bytes{0x01, 0x42, 0x2B, 0x1A}));
    EXPECT_EQ(bodyOf(writeRequest({"WORD\tW0001\t5"})), (Bytes{0x01, 0x42, 0x05, 0x00}));
    EXPECT_EQ(bodyOf(writeRequest({"WORD\tW0001\tFFFF"})), (Bytes{0x01, 0x42, 0xFF, 0xFF}));
}

TEST(MixedWrite, AnyBitValueButOnIsZero) {
    EXPECT_EQ(bodyOf(writeRequest({"BIT\tR0000.3\tOFF"})), (Bytes{0x03, 0x00, 0x00}));
    EXPECT_EQ(bodyOf(writeRequest({"BIT\tR0000.3\ton"})), (Bytes{0x03, 0x00, 0x00}));
    EXPECT_EQ(bodyOf(writeRequest({"BIT\tR0000.3\t"})), (Bytes{0x03, 0x00, 0x00}));
}

TEST(MixedWrite, BitsAndWordsStandInListOrder) {
    EXPECT_EQ(bodyOf(writeRequest({"BIT\tM0002.3\tON", "", "WORD\tR0010\tABCD", "BIT\tF0015.15\tOFF"})),
              (Bytes{0x23, 0x0C, 0xFF, 0x0A, 0x40, 0xCD, 0xAB, 0xFF, 0x1C, 0x00}));
}

TEST(MixedWrite, BitAboveFifteenIsNotCarriedIntoTheWord) {
    EXPECT_EQ(bodyOf(writeRequest({"BIT\tK0005.16\tON"})), (Bytes{0x51, 0x14, 0xFF}));
}

TEST(MixedWrite, Takes84BitsOr62Words) {
    EXPECT_EQ(writeRequest(times(84, "BIT\tR0000.0\tON"))[3], 252);
    EXPECT_EQ(writeRequest(times(62, "WORD\tR0000\t1"))[3], 248);
}

TEST(MixedWrite, BitIsLeftOutWhereItWouldPass252AndAWordWhereItWouldPass251) {
    FrameImages images;
    Lines lines = times(62, "WORD\tR0000\t1"); // LEN 248
    lines.emplace_back("WORD\tR0000\t1");      // 252: left out
    lines.emplace_back("BIT\tR0000.0\tON");    // 251: taken
    lines.emplace_back("BIT\tR0000.0\tON");    // 254: left out
    MakeMWDataFormat(images, lines);
    EXPECT_EQ(images.mixedWrite.byte(offset::length), 251);
    EXPECT_EQ(images.mixedWrite.byte(4 + 250), 0xFF);
    EXPECT_EQ(images.mixedWrite.text(4 + 251), "");
}

TEST(MixedWrite, With85BitLinesGoesOutWithAnEmptyBody) {
    FrameImages images;
    const Bytes wire = writeRequest(images, times(85, "BIT\tR0000.0\tON"));
    EXPECT_EQ(wire, (Bytes{0xFF, 0xFF, 0x26, 0x00, 0x1A, 0x60, 0xFF}));
    EXPECT_EQ(images.mixedWrite.byte(offset::length), 0);
}

TEST(MixedWrite, With63WordLinesGoesOutWithAnEmptyBody) {
    EXPECT_EQ(writeRequest(times(63, "WORD\tR0000\t1234")),
              (Bytes{0xFF, 0xFF, 0x26, 0x00, 0x1A, 0x60, 0x34}));
}

TEST(MixedWrite, With86BitLinesOr64WordLinesIsOverflow) {
    EXPECT_EQ(writeError(times(86, "BIT\tR0000.0\tON")), 6);
    EXPECT_EQ(writeError(times(64, "WORD\tR0000\t1")), 6);
    EXPECT_EQ(writeError(times(254, "BIT\tR0000.0\tON")), 6);
}

TEST(MixedWrite, KindOfTwoLettersIsTypeMismatch) {
    EXPECT_EQ(writeError({"BIT\tTC000.0\tON"}), 13);
    EXPECT_EQ(writeError({"WORD\tSV000\t1"}), 13);
    EXPECT_EQ(writeError({"BIT\tR0000.0\tON", "WORD\tPV000\t1"}), 13);
}

TEST(MixedWrite, LineLeftOutIsStillCut) {
    Lines lines = times(84, "BIT\tR0000.0\tON");
    lines.emplace_back("BIT\tTC000.0\tON");
    EXPECT_EQ(writeError(lines), 13);
}

TEST(MixedWrite, EmptyWordValueIsTypeMismatch) {
    EXPECT_EQ(writeError({"WORD\tW0001\t"}), 13);
    EXPECT_EQ(writeError({"WORD\tW0001\tXY"}), 13);
}

TEST(MixedWrite, AddressAboveSixteenBitsIsOverflow) {
    EXPECT_EQ(writeError({"WORD\tW32256\t1"}), 6);
    EXPECT_EQ(writeError({"BIT\tL32767.0\tON"}), 6);
}

TEST(MixedWrite, ExtraByteOnTheWireIsWhatAnEarlierLongerFrameLeft) {
    FrameImages images;
    writeRequest(images, {"WORD\tW0001\t1A2B", "WORD\tW0001\t3C4D"}); // body at 4 .. 11
    EXPECT_EQ(writeRequest(images, {"WORD\tW0001\t1A2B"}).back(), 0x4D);
}

TEST(MixedWriteHeader, LengthIsZeroWhereTheImageDisagrees) {
    FrameImages images;
    const Lines lines = {"BIT\tR0000.3\tON", "WORD\tW0001\t1"};
    EXPECT_EQ(CheckMWLength(images, lines), 0);
    MakeMWDataFormat(images, lines);
    EXPECT_EQ(CheckMWLength(images, lines), 7);
    EXPECT_EQ(CheckMWLength(images, Lines{lines.front()}), 0);
}

} // namespace
} // namespace varda
