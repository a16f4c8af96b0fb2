#include "core/protocol/single_requests.h"

#include <gtest/gtest.h>

#include <cmath>

namespace varda {
namespace {

/// A write image as the choice of a write mode leaves it.
FrameImages preparedForWrite() {
    FrameImages images;
    images.write.reset(3, 1023);
    return images;
}

/// Calls the fill with a constant draw and returns how often it was asked.
int drawsOf(FrameImages& images, double drawn) {
    int draws = 0;
    fillRandomWords(images, [&] {
        ++draws;
        return drawn;
    });
    return draws;
}

TEST(RandomFill, DrawsLengthLessTwoWordsSoTwiceTheWordsOfAWordWrite) {
    FrameImages images = preparedForWrite();
    setWriteCount(images, Access::Word, 8);
    EXPECT_EQ(drawsOf(images, 0.5), 16);
    EXPECT_EQ(images.write.text(2 * 15 + 7), "80"); // 0.5 draws 0x8000
    EXPECT_EQ(images.write.text(2 * 16 + 7), "00");
}

TEST(RandomFill, OfABitWriteDrawsAWordForEachBit) {
    FrameImages images = preparedForWrite();
    setWriteCount(images, Access::Bit, 253);
    EXPECT_EQ(drawsOf(images, 0.5), 253);
    EXPECT_EQ(images.write.byte(511), 0x80);
    EXPECT_EQ(images.write.text(512), "00");
}

TEST(RandomFill, WithoutALengthDrawsNothing) {
    FrameImages images = preparedForWrite();
    EXPECT_EQ(drawsOf(images, 0.5), 0);
    images.write.set(offset::length, 1);
    EXPECT_EQ(drawsOf(images, 0.5), 0);
    images.write.set(offset::length, 2);
    EXPECT_EQ(drawsOf(images, 0.5), 0);
}

TEST(RandomFill, ValuesRunFrom1To65535) {
    FrameImages images = preparedForWrite();
    images.write.set(offset::length, 3);
    drawsOf(images, 0.0);
    EXPECT_EQ(images.write.text(6), "01");
    EXPECT_EQ(images.write.text(7), "00");
    drawsOf(images, std::nextafter(1.0, 0.0));
    EXPECT_EQ(images.write.text(6), "FF");
    EXPECT_EQ(images.write.text(7), "FF");
    drawsOf(images, 0.5); // 0.5 * 65535 + 1 = 32768.5
    EXPECT_EQ(images.write.byte(6), 0x00);
    EXPECT_EQ(images.write.byte(7), 0x80);
}

TEST(RandomFill, EachWordIsDrawnAnew) {
    FrameImages images = preparedForWrite();
    setWriteCount(images, Access::Word, 1); // LEN 4, so two draws
    double drawn = -0.25;
    fillRandomWords(images, [&] { return drawn += 0.25; });
    MakeWriteFormat(images, Access::Word, 1);
    EXPECT_EQ(images.write.byte(6), 0x01); // 0.00 * 65535 + 1 = 1
    EXPECT_EQ(images.write.byte(7), 0x00);
    EXPECT_EQ(writeWire(images).size(), 10U); // the second word gave way to the frame check
}

} // namespace
} // namespace varda
