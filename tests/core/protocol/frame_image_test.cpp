#include "core/protocol/frame_image.h"

#include "core/protocol/hex_text.h"
#include "support/raises.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <functional>
#include <random>
#include <string>

namespace varda {
namespace {

using test::numberRaisedBy;

/// Every text, "-" for an empty one, and the bytes behind them: the whole content of a small image.
std::string contentOf(const FrameImage& image, std::size_t entries) {
    std::string content;
    for (std::size_t i = 0; i < entries; ++i) {
        content += (image.text(i).empty() ? "-" : image.text(i)) + "=" + std::to_string(image.byte(i)) + " ";
    }
    return content;
}

FrameImage fourEntries() {
    FrameImage image(4, 4);
    image.set(0, 10);
    image.set(1, 11);
    image.set(2, 12);
    image.set(3, 13);
    return image;
}

const std::string fourEntriesContent = "0A=10 0B=11 0C=12 0D=13 ";

/// Runs `change` on a four-entry image and expects error 9 and no trace of the attempt.
template <typename Change>
void expectOutOfRangeChangesNothing(Change change) {
    FrameImage image = fourEntries();
    EXPECT_EQ(numberRaisedBy([&] { change(image); }), 9);
    EXPECT_EQ(contentOf(image, 4), fourEntriesContent);
}

std::string stationText(std::string_view typed) {
    FrameImage image(9, 9);
    image.set(offset::destination, 0x77);
    setStation(image, offset::destination, typed);
    return image.text(offset::destination);
}

int stationByte(std::string_view typed) {
    FrameImage image(9, 9);
    image.set(offset::source, 0x77);
    setStation(image, offset::source, typed);
    return image.byte(offset::source);
}

TEST(FrameImage, BeginsWithEmptyTextsAndZeroBytes) {
    const FrameImage image(3, 3);
    EXPECT_EQ(contentOf(image, 3), "-=0 -=0 -=0 ");
}

TEST(FrameImage, SetWritesByteAndTwoUpperCaseDigits) {
    FrameImage image(2, 2);
    image.set(0, 5);
    image.set(1, 0xAB);
    EXPECT_EQ(contentOf(image, 2), "05=5 AB=171 ");
}

TEST(FrameImage, SetTextKeepsTheTextAsItIs) {
    FrameImage image(2, 2);
    image.setText(0, "F");
    image.setText(1, "7F");
    EXPECT_EQ(contentOf(image, 2), "F=15 7F=127 ");
}

TEST(FrameImage, TextThatIsNoByteIsRefusedAndChangesNothing) {
    FrameImage image = fourEntries();
    EXPECT_EQ(numberRaisedBy([&] { image.setText(1, "XY"); }), 13);
    EXPECT_EQ(numberRaisedBy([&] { image.setText(2, "100"); }), 6);
    EXPECT_EQ(contentOf(image, 4), fourEntriesContent);
}

TEST(FrameImage, ResetMakesBytesZeroAndTextsDoubleZero) {
    FrameImage image = fourEntries();
    image.reset(1, 2);
    EXPECT_EQ(contentOf(image, 4), "0A=10 00=0 00=0 0D=13 ");
}

TEST(FrameImage, FourDigitsAreSplitLowByteFirst) {
    FrameImage image(4, 4);
    image.setLowHigh(1, "145A");
    EXPECT_EQ(contentOf(image, 4), "-=0 5A=90 14=20 -=0 ");
}

TEST(FrameImage, SplitOfAGrownTextTakesItsFirstFourDigits) {
    FrameImage image(2, 2);
    image.setLowHigh(0, "00011");
    EXPECT_EQ(contentOf(image, 2), "01=1 00=0 ");
}

TEST(FrameImage, TextTooShortToSplitIsRefusedAndChangesNothing) {
    FrameImage image = fourEntries();
    EXPECT_NE(numberRaisedBy([&] { image.setLowHigh(1, "145"); }), 0);
    EXPECT_EQ(contentOf(image, 4), fourEntriesContent);
}

TEST(FrameImage, FrameCheckGoesBehindTheBytesLowByteFirst) {
    FrameImage image(11, 11);
    for (std::size_t i = 0; i < 9; ++i) {
        image.set(i, static_cast<std::uint8_t>('1' + i));
    }
    image.appendCrc(9);
    EXPECT_EQ(image.byte(9), 0x37);
    EXPECT_EQ(image.byte(10), 0x4B);
    EXPECT_EQ(image.text(9), "37");
    EXPECT_EQ(image.text(10), "4B");
}

TEST(FrameImage, CompletingFillsEmptyTextsUpToTheLast) {
    FrameImage image(4, 4);
    image.set(1, 7);
    image.complete(2);
    EXPECT_EQ(contentOf(image, 4), "00=0 07=7 00=0 -=0 ");
}

TEST(FrameImage, WhateverIsWrittenTextsAndBytesAgree) {
    std::mt19937 draw(20261122);
    const auto drawn = [&draw](int end) {
        return static_cast<std::size_t>(draw() % static_cast<unsigned>(end));
    };
    FrameImage image(16, 16);
    const std::array<std::function<void(std::size_t)>, 7> writes = {
        [&](std::size_t at) { image.set(at, static_cast<std::uint8_t>(drawn(256))); },
        [&](std::size_t at) { image.setText(at, hex(static_cast<int>(drawn(256)))); },
        [&](std::size_t at) { image.reset(at / 2, at); },
        [&](std::size_t at) { image.setLowHigh(at, hex(static_cast<int>(drawn(65536)), 4)); },
        [&](std::size_t at) { image.appendCrc(at); },
        [&](std::size_t at) { image.complete(at); },
        [&](std::size_t at) { setStation(image, at, std::to_string(drawn(300))); }};
    for (int round = 0; round < 1000; ++round) {
        writes.at(drawn(7))(drawn(15));
        for (std::size_t at = 0; at < 16; ++at) {
            const std::string& text = image.text(at);
            ASSERT_EQ(image.byte(at), text.empty() ? 0 : byteFromHex(text)) << round << ' ' << at;
        }
    }
}

TEST(FrameImage, ShownTextHasASpaceBehindEveryEntry) {
    FrameImage image(4, 4);
    image.setText(0, "5");
    image.set(2, 0xFE);
    EXPECT_EQ(image.display(2), "5 00 FE ");
    EXPECT_EQ(image.text(3), "");
}

TEST(FrameImage, ShowingAnEntryNeverSetMakesItDoubleZero) {
    FrameImage image(2, 2);
    EXPECT_EQ(image.display(1), "00 00 ");
    EXPECT_EQ(contentOf(image, 2), "00=0 00=0 ");
}

TEST(FrameImage, WireIsACopyOfTheFirstBytes) {
    const FrameImage image = fourEntries();
    EXPECT_EQ(image.wire(3), (Bytes{10, 11, 12}));
    EXPECT_EQ(image.wire(4), (Bytes{10, 11, 12, 13}));
    EXPECT_EQ(image.wire(0), Bytes{});
}

TEST(FrameImage, ReadingPastTheEndIsOutOfRange) {
    FrameImage image = fourEntries();
    EXPECT_EQ(numberRaisedBy([&] { image.text(4); }), 9);
    EXPECT_EQ(numberRaisedBy([&] { image.byte(4); }), 9);
    EXPECT_EQ(numberRaisedBy([&] { image.wire(5); }), 9);
}

TEST(FrameImage, WritingPastTheEndIsOutOfRangeAndChangesNothing) {
    expectOutOfRangeChangesNothing([](FrameImage& image) { image.set(4, 1); });
    expectOutOfRangeChangesNothing([](FrameImage& image) { image.setText(4, "01"); });
    expectOutOfRangeChangesNothing([](FrameImage& image) { image.reset(4, 4); });
    expectOutOfRangeChangesNothing([](FrameImage& image) { image.setLowHigh(4, "1234"); });
    expectOutOfRangeChangesNothing([](FrameImage& image) { image.appendCrc(5); });
}

TEST(FrameImage, RunThatEndsPastTheEndIsOutOfRangeAndChangesNothing) {
    expectOutOfRangeChangesNothing([](FrameImage& image) { image.reset(2, 4); });
    expectOutOfRangeChangesNothing([](FrameImage& image) { image.setLowHigh(3, "1234"); });
    expectOutOfRangeChangesNothing([](FrameImage& image) { image.appendCrc(3); });
}

TEST(FrameImage, CompletingOrShowingPastTheEndIsOutOfRangeAndChangesNothing) {
    FrameImage image(4, 4);
    EXPECT_EQ(numberRaisedBy([&] { image.complete(4); }), 9);
    EXPECT_EQ(numberRaisedBy([&] { image.display(4); }), 9);
    EXPECT_EQ(contentOf(image, 4), "-=0 -=0 -=0 -=0 ");
}

TEST(FrameImages, ReadImageHasTwoTextsMoreThanBytes) {
    FrameImages images;
    EXPECT_EQ(images.read.text(10), "");
    EXPECT_EQ(numberRaisedBy([&] { images.read.text(11); }), 9);
    EXPECT_EQ(images.read.byte(8), 0);
    EXPECT_EQ(numberRaisedBy([&] { images.read.byte(9); }), 9);
    EXPECT_EQ(numberRaisedBy([&] { images.read.set(9, 1); }), 9);
    EXPECT_EQ(images.read.text(9), "");
}

TEST(FrameImages, SizesOfTheOtherImages) {
    FrameImages images;
    images.write.set(1023, 1);
    EXPECT_EQ(numberRaisedBy([&] { images.write.set(1024, 1); }), 9);
    images.mixedRead.set(512, 1);
    EXPECT_EQ(numberRaisedBy([&] { images.mixedRead.set(513, 1); }), 9);
    images.mixedWrite.set(512, 1);
    EXPECT_EQ(numberRaisedBy([&] { images.mixedWrite.set(513, 1); }), 9);
}

TEST(FrameImages, EachRequestCodeHasItsImage) {
    FrameImages images;
    EXPECT_EQ(&images.of(0x21), &images.read);
    EXPECT_EQ(&images.of(0x23), &images.read);
    EXPECT_EQ(&images.of(0x22), &images.write);
    EXPECT_EQ(&images.of(0x24), &images.write);
    EXPECT_EQ(&images.of(0x25), &images.mixedRead);
    EXPECT_EQ(&images.of(0x26), &images.mixedWrite);
    EXPECT_EQ(numberRaisedBy([&] { images.of(0x20); }), 9);
    EXPECT_EQ(numberRaisedBy([&] { images.of(0xA1); }), 9);
}

TEST(AppendCrc16, CoversTheBytesOfASingleRequest) {
    FrameImages images;
    images.read.set(0, 0x01);
    images.read.set(2, 0x21);
    images.read.set(3, 0x03);
    images.read.setLowHigh(4, "0C23");
    images.read.set(6, 0x10);
    AppendCRC16(images, 0x21, 7);
    EXPECT_EQ(images.read.text(7), "42");
    EXPECT_EQ(images.read.text(8), "85");
    EXPECT_EQ(images.read.wire(9), (Bytes{0x01, 0x00, 0x21, 0x03, 0x23, 0x0C, 0x10, 0x42, 0x85}));
}

TEST(AppendCrc16, AddsTheHeaderItselfForTheMixedRequests) {
    FrameImages images;
    images.mixedRead.set(0, 0x0A);
    images.mixedRead.set(2, 0x25);
    AppendCRC16(images, 0x25, 0);
    EXPECT_EQ(images.mixedRead.wire(6), (Bytes{0x0A, 0x00, 0x25, 0x00, 0x19, 0x6C}));
    images.mixedWrite.set(0, 0xFF);
    images.mixedWrite.set(1, 0xFF);
    images.mixedWrite.set(2, 0x26);
    images.mixedWrite.set(3, 0x03);
    images.mixedWrite.set(4, 0x03);
    images.mixedWrite.set(6, 0xFF);
    AppendCRC16(images, 0x26, 3);
    EXPECT_EQ(images.mixedWrite.wire(9), (Bytes{0xFF, 0xFF, 0x26, 0x03, 0x03, 0x00, 0xFF, 0xB9, 0xC3}));
}

TEST(AppendCrc16, CoversTheBytesOfAWrite) {
    FrameImages images;
    images.write.set(0, 0x01);
    images.write.set(2, 0x22);
    images.write.set(3, 0x03);
    images.write.set(6, 0xFF);
    AppendCRC16(images, 0x22, 7);
    EXPECT_EQ(images.write.text(7), "B3");
    EXPECT_EQ(images.write.byte(8), 0xC3);
}

TEST(Station, BelowSixteenShowsAsOneDigit) {
    EXPECT_EQ(stationText("5"), "5");
    EXPECT_EQ(stationText("15"), "F");
    EXPECT_EQ(stationText("0"), "0");
    EXPECT_EQ(stationByte("5"), 5);
}

TEST(Station, FromSixteenUpShowsTwoDigits) {
    EXPECT_EQ(stationText("16"), "10");
    EXPECT_EQ(stationText("255"), "FF");
    EXPECT_EQ(stationByte("255"), 255);
    EXPECT_EQ(stationByte("16"), 16);
}

TEST(Station, HexadecimalPrefixAndBlanksAreRead) {
    EXPECT_EQ(stationText("&H1f"), "1F");
    EXPECT_EQ(stationByte("&HA"), 10);
    EXPECT_EQ(stationByte(" 12 "), 12);
    EXPECT_EQ(stationByte("+12"), 12);
}

TEST(Station, TextThatIsNoStationGivesDoubleZero) {
    for (const char* typed : {"256", "", "-1", "abc", "FF", "1.5x", "32768", "99999", "&HFFFF", "&H100"}) {
        EXPECT_EQ(stationText(typed), "00") << typed;
        EXPECT_EQ(stationByte(typed), 0) << typed;
    }
}

} // namespace
} // namespace varda
