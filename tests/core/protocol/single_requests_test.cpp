#include "core/protocol/single_requests.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace varda {
namespace {

/// Stations 1 and 0, as most rows here use them.
void setStations(FrameImage& image) {
    setStation(image, offset::destination, "1");
    setStation(image, offset::source, "0");
}

void setBitAddress(FrameImage& image, const char* kind, int number, int bit) {
    image.setLowHigh(offset::address, bitAddressText(registerAddress(Access::Bit, kind, number), bit));
}

void setWordAddress(FrameImage& image, const char* kind, int number) {
    image.setLowHigh(offset::address, wordAddressText(registerAddress(Access::Word, kind, number)));
}

/// A write image as the choice of a write mode leaves it.
FrameImages preparedForWrite() {
    FrameImages images;
    images.write.reset(3, 1023);
    setStations(images.write);
    return images;
}

int countByteAfter(int earlier, int count) {
    FrameImages images;
    setReadCount(images, earlier);
    setReadCount(images, count);
    return images.read.byte(offset::count);
}

TEST(SingleRead, BitReadOfM2Bit3Count16) {
    FrameImages images;
    setStations(images.read);
    setBitAddress(images.read, "M", 2, 3);
    setReadCount(images, 16);
    MakeReadFormat(images, Access::Bit);
    EXPECT_EQ(readWire(images), (Bytes{0x01, 0x00, 0x21, 0x03, 0x23, 0x0C, 0x10, 0x42, 0x85}));
    EXPECT_EQ(readAnswerLength(Access::Bit, images.read.byte(offset::count)), 22);
}

TEST(SingleRead, BitAddress0010Count8) {
    FrameImages images;
    setStations(images.read);
    setBitAddress(images.read, "R", 1, 0);
    setReadCount(images, 8);
    MakeReadFormat(images, Access::Bit);
    EXPECT_EQ(readWire(images), (Bytes{0x01, 0x00, 0x21, 0x03, 0x10, 0x00, 0x08, 0xB7, 0x80}));
}

TEST(SingleRead, BitAddressOfR1Bit15GoesLowByteFirst) {
    FrameImages images;
    setBitAddress(images.read, "R", 1, 15);
    EXPECT_EQ(images.read.byte(4), 0x1F);
    EXPECT_EQ(images.read.byte(5), 0x00);
}

TEST(SingleRead, WordReadOfTheHighestRegister) {
    FrameImages images;
    setStation(images.read, offset::destination, "255");
    setStation(images.read, offset::source, "255");
    setWordAddress(images.read, "SR", 511);
    setReadCount(images, 128);
    MakeReadFormat(images, Access::Word);
    EXPECT_EQ(readWire(images), (Bytes{0xFF, 0xFF, 0x23, 0x03, 0xFF, 0x0D, 0x80, 0xF0, 0x83}));
}

TEST(SingleRead, ShownRequestHasNineGroupsWithATrailingSpace) {
    FrameImages images;
    setStation(images.read, offset::destination, "255");
    setStation(images.read, offset::source, "255");
    setWordAddress(images.read, "W", 2047);
    setReadCount(images, 256);
    MakeReadFormat(images, Access::Word);
    EXPECT_EQ(DisplayRString(images), "FF FF 23 03 FF 09 00 F3 E3 ");
}

TEST(SingleRead, StationBelowSixteenShowsAsOneCharacter) {
    FrameImages images;
    setStation(images.read, offset::destination, "1");
    setStation(images.read, offset::source, "0");
    setBitAddress(images.read, "M", 2, 3);
    setReadCount(images, 16);
    MakeReadFormat(images, Access::Bit);
    EXPECT_EQ(DisplayRString(images), "1 0 21 03 23 0C 10 42 85 ");
    EXPECT_EQ(readWire(images)[0], 0x01);
}

TEST(SingleRead, EntriesNeverSetShowAsDoubleZero) {
    FrameImages images;
    EXPECT_EQ(DisplayRString(images), "00 00 00 00 00 00 00 00 00 ");
    MakeReadFormat(images, Access::Bit);
    EXPECT_EQ(DisplayRString(images), "00 00 21 03 00 00 00 A7 43 ");
    EXPECT_EQ(readWire(images), (Bytes{0x00, 0x00, 0x21, 0x03, 0x00, 0x00, 0x00, 0xA7, 0x43}));
}

TEST(SingleRead, SpareTextsBehindTheFrameStayEmpty) {
    FrameImages images;
    MakeReadFormat(images, Access::Word);
    EXPECT_EQ(DisplayRString(images).size(), 27U);
    EXPECT_EQ(images.read.text(9), "");
    EXPECT_EQ(images.read.text(10), "");
}

TEST(SingleRead, WithoutAChosenModeCommandAndCheckStayAsTheyStand) {
    FrameImages images;
    MakeReadFormat(images, std::nullopt);
    EXPECT_EQ(DisplayRString(images), "00 00 00 03 00 00 00 00 00 ");
    MakeReadFormat(images, Access::Bit);
    setReadCount(images, 1);
    MakeReadFormat(images, std::nullopt);
    EXPECT_EQ(DisplayRString(images), "00 00 21 03 00 00 01 A7 43 ");
}

TEST(SingleRead, CountIsWrittenAsOneByte) {
    EXPECT_EQ(countByteAfter(9, 1), 1);
    EXPECT_EQ(countByteAfter(9, 255), 255);
    FrameImages images;
    setReadCount(images, 10);
    EXPECT_EQ(images.read.text(offset::count), "0A");
}

TEST(SingleRead, Count256IsSentAsZero) {
    EXPECT_EQ(countByteAfter(9, 256), 0);
    EXPECT_EQ(countByteAfter(9, 0), 0);
    FrameImages images;
    setReadCount(images, 256);
    EXPECT_EQ(images.read.text(offset::count), "00");
}

TEST(SingleRead, CountOutOfRangeLeavesThePreviousOne) {
    EXPECT_EQ(countByteAfter(9, 300), 9);
    EXPECT_EQ(countByteAfter(9, 257), 9);
    EXPECT_EQ(countByteAfter(9, 32767), 9);
    EXPECT_EQ(countByteAfter(9, -1), 9);
    EXPECT_EQ(countByteAfter(9, -32768), 9);
}

TEST(SingleRead, BitAnswerHasAByteForEachBit) {
    EXPECT_EQ(readAnswerLength(Access::Bit, 1), 7);
    EXPECT_EQ(readAnswerLength(Access::Bit, 255), 261);
    EXPECT_EQ(readAnswerLength(Access::Bit, 0), 262);
}

TEST(SingleRead, WordAnswerHasTwoBytesForEachWord) {
    EXPECT_EQ(readAnswerLength(Access::Word, 1), 8);
    EXPECT_EQ(readAnswerLength(Access::Word, 128), 262);
    EXPECT_EQ(readAnswerLength(Access::Word, 255), 516);
    EXPECT_EQ(readAnswerLength(Access::Word, 0), 518);
}

TEST(SingleWrite, EveryWriteIsAnsweredWithSevenBytes) { EXPECT_EQ(writeAnswerLength, 7); }

TEST(SingleWrite, BodyHoldsTheAddressAndTheData) {
    EXPECT_EQ(writeBodyLength(Access::Bit, 1), 3);
    EXPECT_EQ(writeBodyLength(Access::Bit, 253), 255);
    EXPECT_EQ(writeBodyLength(Access::Word, 1), 4);
    EXPECT_EQ(writeBodyLength(Access::Word, 126), 254);
    EXPECT_EQ(writeLimit(Access::Bit), 253);
    EXPECT_EQ(writeLimit(Access::Word), 126);
}

TEST(SingleWrite, BitWriteOfThreeBits) {
    FrameImages images = preparedForWrite();
    setStation(images.write, offset::source, "2");
    setBitAddress(images.write, "R", 0, 0);
    setWriteCount(images, Access::Bit, 3);
    setWriteBit(images, 0, true);
    setWriteBit(images, 2, true);
    MakeWriteFormat(images, Access::Bit, 3);
    EXPECT_EQ(writeWire(images), (Bytes{0x01, 0x02, 0x22, 0x05, 0x00, 0x00, 0xFF, 0x00, 0xFF, 0xF4, 0x9E}));
    EXPECT_EQ(DisplayWString(images), "1 2 22 05 00 00 FF 00 FF F4 9E ");
}

TEST(SingleWrite, BitTurnedOffAgainIsZero) {
    FrameImages images = preparedForWrite();
    setWriteBit(images, 4, true);
    EXPECT_EQ(images.write.text(10), "FF");
    EXPECT_EQ(images.write.byte(10), 0xFF);
    setWriteBit(images, 4, false);
    EXPECT_EQ(images.write.text(10), "00");
    EXPECT_EQ(images.write.byte(10), 0x00);
}

TEST(SingleWrite, WordOf4660GoesLowByteFirst) {
    FrameImages images = preparedForWrite();
    setWordAddress(images.write, "W", 0);
    setWriteCount(images, Access::Word, 1);
    setWriteWord(images, 0, 4660);
    EXPECT_EQ(images.write.text(6), "34");
    EXPECT_EQ(images.write.text(7), "12");
    MakeWriteFormat(images, Access::Word, 1);
    EXPECT_EQ(writeWire(images), (Bytes{0x01, 0x00, 0x24, 0x04, 0x00, 0x02, 0x34, 0x12, 0x41, 0xEE}));
    EXPECT_EQ(DisplayWString(images), "1 0 24 04 00 02 34 12 41 EE ");
}

TEST(SingleWrite, WordsStandTwoEntriesApart) {
    FrameImages images = preparedForWrite();
    setWriteWord(images, 3, 65535);
    setWriteWord(images, 4, 10);
    EXPECT_EQ(images.write.wire(17), (Bytes{1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0x0A, 0x00, 0}));
}

TEST(SingleWrite, ShownRequestOfTheLongestFrames) {
    FrameImages images = preparedForWrite();
    setStation(images.write, offset::destination, "16");
    setStation(images.write, offset::source, "16");
    MakeWriteFormat(images, Access::Bit, 253);
    EXPECT_EQ(images.write.byte(offset::length), 255);
    EXPECT_EQ(writeWire(images).size(), 261U);
    EXPECT_EQ(DisplayWString(images).size(), 3U * 261U);
    MakeWriteFormat(images, Access::Word, 126);
    EXPECT_EQ(images.write.text(offset::length), "FE");
    EXPECT_EQ(writeWire(images).size(), 260U);
}

TEST(SingleWrite, ImageNeverPreparedIsCompletedWithZeros) {
    FrameImages images;
    MakeWriteFormat(images, Access::Word, 1);
    EXPECT_EQ(DisplayWString(images).substr(0, 24), "00 00 24 04 00 00 00 00 ");
}

TEST(SingleWriteCount, SetsTheLength) {
    FrameImages images = preparedForWrite();
    setWriteCount(images, Access::Bit, 253);
    EXPECT_EQ(images.write.text(offset::length), "FF");
    setWriteCount(images, Access::Bit, 1);
    EXPECT_EQ(images.write.text(offset::length), "03");
    setWriteCount(images, Access::Word, 126);
    EXPECT_EQ(images.write.byte(offset::length), 254);
}

TEST(SingleWriteCount, OfZeroMakesTheLengthZero) {
    FrameImages images = preparedForWrite();
    setWriteCount(images, Access::Word, 5);
    setWriteCount(images, Access::Word, 0);
    EXPECT_EQ(images.write.text(offset::length), "00");
    setWriteCount(images, Access::Bit, 5);
    setWriteCount(images, Access::Bit, 0);
    EXPECT_EQ(images.write.byte(offset::length), 0);
}

TEST(SingleWriteCount, Of256MakesTheLengthZeroAsOfZero) {
    for (const Access access : {Access::Bit, Access::Word}) {
        FrameImages images = preparedForWrite();
        setWriteCount(images, access, 5);
        setWriteCount(images, access, 256);
        EXPECT_EQ(images.write.text(offset::length), "00");
        EXPECT_EQ(images.write.byte(offset::length), 0);
    }
}

TEST(SingleWriteCount, OfZeroResetsTheFirstDataEntryAlone) {
    FrameImages images = preparedForWrite();
    setWriteBit(images, 0, true);
    setWriteBit(images, 1, true);
    setWriteCount(images, Access::Bit, 0);
    EXPECT_EQ(images.write.byte(6), 0x00);
    EXPECT_EQ(images.write.byte(7), 0xFF);
}

TEST(SingleWriteCount, OfBitsResetsOneEntryMoreThanItsData) {
    FrameImages images = preparedForWrite();
    for (std::size_t i = 0; i < 6; ++i) {
        setWriteBit(images, i, true);
    }
    setWriteCount(images, Access::Bit, 3);
    EXPECT_EQ(images.write.wire(12), (Bytes{1, 0, 0, 5, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF}));
    EXPECT_EQ(images.write.text(9), "00");
}

TEST(SingleWriteCount, OfWordsResetsOneEntryMoreThanItsData) {
    FrameImages images = preparedForWrite();
    for (std::size_t i = 0; i < 4; ++i) {
        setWriteWord(images, i, 0xABCD);
    }
    setWriteCount(images, Access::Word, 2);
    EXPECT_EQ(images.write.wire(14), (Bytes{1, 0, 0, 6, 0, 0, 0, 0, 0, 0, 0, 0xAB, 0xCD, 0xAB}));
}

TEST(SingleWriteCount, OutOfRangeLeavesLengthAndData) {
    for (const int count : {254, 255, 257, 1000, 32767, -1, -32768}) {
        FrameImages images = preparedForWrite();
        setWriteCount(images, Access::Bit, 2);
        setWriteBit(images, 0, true);
        setWriteCount(images, Access::Bit, count);
        EXPECT_EQ(images.write.byte(offset::length), 4) << count;
        EXPECT_EQ(images.write.byte(offset::data), 0xFF) << count;
    }
}

TEST(SingleWriteCount, OutOfTheRangeOfWordsLeavesLengthAndData) {
    for (const int count : {127, 253, 255, 257, 32767, -1}) {
        FrameImages images = preparedForWrite();
        setWriteCount(images, Access::Word, 2);
        setWriteWord(images, 0, 0x1234);
        setWriteCount(images, Access::Word, count);
        EXPECT_EQ(images.write.byte(offset::length), 6) << count;
        EXPECT_EQ(images.write.byte(offset::data), 0x34) << count;
    }
}

TEST(SingleWriteCount, OfZeroIsCompletedAsTheAddressAlone) {
    FrameImages images = preparedForWrite();
    setWriteCount(images, Access::Bit, 0);
    MakeWriteFormat(images, Access::Bit, 0);
    EXPECT_EQ(images.write.text(offset::length), "02");
    EXPECT_EQ(writeWire(images).size(), 8U);
    setWriteCount(images, Access::Word, 0);
    MakeWriteFormat(images, Access::Word, 0);
    EXPECT_EQ(images.write.text(offset::length), "02");
}

TEST(SingleWriteCount, OutOfRangeIsCompletedWithTheLengthThatStands) {
    FrameImages images = preparedForWrite();
    setWriteCount(images, Access::Word, 2);
    MakeWriteFormat(images, Access::Word, 127);
    EXPECT_EQ(images.write.byte(offset::length), 6);
    EXPECT_EQ(writeWire(images).size(), 12U);
    MakeWriteFormat(images, Access::Bit, -1);
    EXPECT_EQ(images.write.byte(offset::length), 6);
}

} // namespace
} // namespace varda
