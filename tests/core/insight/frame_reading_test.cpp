#include "core/insight/frame_reading.h"
#include "core/protocol/frame_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varda::test {
namespace {

using Words = std::vector<std::string>;

Words inWords(const char* frame, const char* request = "") {
    const Bytes bytes = bytesOfText(frame);
    const Bytes asked = bytesOfText(request);
    Words words;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        words.push_back(byteInWords(bytes, index, asked));
    }
    return words;
}

TEST(FrameReading, WordReadNamesEachField) {
    const Words words = inWords("FF 01 23 03 39 02 00 00 00 ");
    EXPECT_EQ(Words(words.begin(), words.begin() + 7),
              (Words{"DA: station 255", "SA: station 1", "CMD 23h: word read", "LEN 03h = 3",
                     "Address 0239h: W 0057", "Address 0239h: W 0057", "Count 00h: 256 words"}));
}

TEST(FrameReading, BitReadNamesItsBit) {
    const Words words = inWords("01 00 21 03 23 0C 10 00 00 ");
    EXPECT_EQ(words.at(2), "CMD 21h: bit read");
    EXPECT_EQ(words.at(4), "Address 0C23h: M 0002.3");
    EXPECT_EQ(words.at(6), "Count 10h: 16 bits");
}

TEST(FrameReading, RightAndWrongChecksAreToldApart) {
    EXPECT_EQ(inWords("FF FF 21 03 20 00 04 BC 4A ").at(8), "CRC 4ABCh, right");
    EXPECT_EQ(inWords("FF FF 21 03 20 00 04 BC 4B ").at(7), "CRC 4BBCh; of the bytes before it, it is 4ABCh");
}

TEST(FrameReading, AnAnswerIsReadByItsRequest) {
    const Words words = inWords("FF FF A3 04 34 12 CD AB 52 49 ", "FF FF 23 03 39 02 02 00 00 ");
    EXPECT_EQ(words.at(2), "CMD A3h: answer to word read");
    EXPECT_EQ(words.at(4), "W 0057 = 1234h = 4660");
    EXPECT_EQ(words.at(5), "W 0057 = 1234h = 4660");
    EXPECT_EQ(words.at(7), "W 0058 = ABCDh = 43981");
    EXPECT_EQ(words.at(9), "CRC 4952h, right");
}

TEST(FrameReading, ABitAnswerGoesOnInTheNextWord) {
    const Words words = inWords("00 01 A1 02 FF 00 00 00 ", "01 00 21 03 2F 0C 02 00 00 ");
    EXPECT_EQ(words.at(4), "M 0002.15 = ON");
    EXPECT_EQ(words.at(5), "M 0003.0 = OFF");
}

TEST(FrameReading, AnAnswerToSomethingElseCountsItsValues) {
    EXPECT_EQ(inWords("FF FF A3 04 34 12 CD AB 52 49 ", "FF FF 21 03 39 02 02 00 00 ").at(6),
              "Word +1 = ABCDh = 43981");
    EXPECT_EQ(inWords("FF FF A1 01 12 52 49 ").at(4), "Bit +0 = 12h");
}

TEST(FrameReading, WritesNameEveryValue) {
    const Words words = inWords("FF FF 24 06 01 02 34 12 FF 00 00 00 ");
    EXPECT_EQ(words.at(2), "CMD 24h: word write");
    EXPECT_EQ(words.at(6), "W 0001 = 1234h = 4660");
    EXPECT_EQ(words.at(9), "W 0002 = 00FFh = 255");
    EXPECT_EQ(inWords("FF FF 22 03 03 00 FF 00 00 ").at(6), "R 0000.3 = ON");
    EXPECT_EQ(inWords("FF FF A4 01 00 40 73 ").at(4), "Acknowledgement: 00h, written");
    EXPECT_EQ(inWords("FF FF A4 01 07 40 73 ").at(4), "Acknowledgement: 07h");
}

TEST(FrameReading, MixedFramesNameTheirPoints) {
    const char* const request = "FF FF 25 08 02 00 03 00 04 00 01 42 77 C1 00 ";
    const Words asked = inWords("FF FF 25 08 02 00 03 00 04 00 01 42 77 C1 ");
    EXPECT_EQ(asked.at(2), "CMD 25h: mixed read");
    EXPECT_EQ(asked.at(7), "Address 0003h: R 0000.3");
    EXPECT_EQ(asked.at(11), "Address 4201h: W 0001");
    EXPECT_EQ(asked.at(12), "CRC C177h, right");
    const Words answered = inWords("FF FF A5 05 00 FF 00 2B 1A 5A 70 ", request);
    EXPECT_EQ(answered.at(4), "R 0000.2 = OFF");
    EXPECT_EQ(answered.at(5), "R 0000.3 = ON");
    EXPECT_EQ(answered.at(7), "W 0001 = 1A2Bh = 6699");
    EXPECT_EQ(answered.at(8), "W 0001 = 1A2Bh = 6699");
}

TEST(FrameReading, MixedWritesNameAddressAndValue) {
    const Words words = inWords("FF FF 26 07 03 00 FF 01 42 2B 1A EA 40 ");
    EXPECT_EQ(words.at(4), "Address 0003h: R 0000.3");
    EXPECT_EQ(words.at(6), "R 0000.3 = ON");
    EXPECT_EQ(words.at(8), "Address 4201h: W 0001");
    EXPECT_EQ(words.at(10), "W 0001 = 1A2Bh = 6699");
}

TEST(FrameReading, AnyBytesCanBeRead) {
    std::uint32_t seed = 20261122; // the same bytes in every run
    for (int round = 0; round < 2000; ++round) {
        const auto drawn = [&seed] {
            seed = seed * 1664525U + 1013904223U;
            return static_cast<std::uint8_t>(seed >> 24U);
        };
        Bytes frame(drawn() % 40);
        Bytes request(drawn() % 20);
        for (Bytes* const bytes : {&frame, &request}) {
            for (std::uint8_t& byte : *bytes) {
                byte = drawn() % 3 == 0
                           ? static_cast<std::uint8_t>((drawn() % 2 == 0 ? 0x20 : 0xA0) + drawn() % 8)
                           : drawn();
            }
        }
        for (std::size_t index = 0; index < frame.size(); ++index) {
            EXPECT_FALSE(byteInWords(frame, index, request).empty())
                << "round " << round << ", byte " << index;
        }
        EXPECT_EQ(byteInWords(frame, frame.size(), request), "");
    }
}

} // namespace
} // namespace varda::test
