#include "core/virtual/controller_memory.h"

#include "core/base/runtime_error.h"
#include "core/virtual/controller.h"
#include "support/raises.h"

#include <gtest/gtest.h>

#include <iostream>
#include <random>

namespace varda::test {
namespace {

std::string refusal(const std::string& text) {
    const auto error = raisedBy([&text] { readMemory(text); });
    return error && error->number() == run_time_error::typeMismatch ? error->what() : "";
}

TEST(ControllerMemory, HoldsWordsAndTheirBits) {
    ControllerMemory memory;
    memory.setWord(12, 0x0008);
    EXPECT_TRUE(memory.bit(12 * 16 + 3));
    memory.setBit(12 * 16 + 15, true);
    memory.setBit(12 * 16 + 3, false);
    EXPECT_EQ(memory.word(12), 0x8000);
    EXPECT_EQ(memory.value({Access::Bit, 12 * 16 + 15}), 1);
    EXPECT_EQ(memory.value({Access::Word, 12}), 0x8000);
    for (const int address : {-1, ControllerMemory::wordCount}) {
        EXPECT_EQ(numberRaisedBy([&] { memory.word(address); }), run_time_error::subscriptOutOfRange);
    }
    EXPECT_EQ(numberRaisedBy([&] { memory.bit(-1); }), run_time_error::subscriptOutOfRange);
    EXPECT_EQ(numberRaisedBy([&] { memory.setBit(ControllerMemory::bitCount, true); }),
              run_time_error::subscriptOutOfRange);
}

TEST(ControllerMemory, IsReadAsPeopleAndSpreadsheetsWriteIt) {
    const ControllerMemory memory = readMemory("\xEF\xBB\xBF# a comment\r\n"
                                               "W 0100,4660\r\n"
                                               "  w101 ; 1A2Bh \n"
                                               "\"W 0102\",\"7\"\n"
                                               "W 0103\t0x10\n"
                                               "\n"
                                               "R 0012.3,ON\n"
                                               "SR 511,65535");
    EXPECT_EQ(memory.word(512 + 100), 4660);
    EXPECT_EQ(memory.word(512 + 101), 0x1A2B);
    EXPECT_EQ(memory.word(512 + 102), 7);
    EXPECT_EQ(memory.word(512 + 103), 16);
    EXPECT_EQ(memory.word(12), 8);
    EXPECT_EQ(memory.word(3583), 65535);
}

TEST(ControllerMemory, OfTwoLinesTheLaterCounts) {
    EXPECT_EQ(readMemory("R 0000,255\nR 0000.0,OFF\n").word(0), 254);
}

TEST(ControllerMemory, ABadLineIsNamedWithTheRemedy) {
    EXPECT_EQ(refusal("W 0100,1\nQ 1,5\n"),
              "Line 2: \"Q 1\" is no register. Write its kind and number, as W 0100, and "
              "a bit as R 0012.3, then a comma and the value.");
    EXPECT_EQ(refusal("# x\n\nW 0100,65536\n"),
              "Line 3: \"65536\" is no value for W 0100. Write 0 to 65535, or 0h to "
              "FFFFh.");
    EXPECT_EQ(refusal("R 0012.3,2"), "Line 1: \"2\" is no value for R 0012.3. Write ON or OFF.");
    for (const char* const text :
         {"W 0100", "W 0100,", "W 2048,1", "R 0000.16,ON", ",", "W 0100 4660", "W 0100,-1"}) {
        EXPECT_EQ(refusal(text).substr(0, 8), "Line 1: ") << text;
    }
}

TEST(ControllerMemory, ComesBackFromItsText) {
    constexpr unsigned seed = 16'021;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    for (int round = 0; round < 200; ++round) {
        ControllerMemory memory;
        for (std::size_t words = random() % 200; words > 0; --words) {
            memory.setWord(static_cast<int>(random() % ControllerMemory::wordCount),
                           static_cast<std::uint16_t>(random()));
        }
        ASSERT_EQ(readMemory(memoryText(memory)), memory) << "in round " << round;
    }
    ControllerMemory full;
    for (int address = 0; address < ControllerMemory::wordCount; ++address) {
        full.setWord(address, static_cast<std::uint16_t>(random()));
    }
    EXPECT_EQ(readMemory(memoryText(full)), full);
    EXPECT_EQ(readMemory(memoryText({})), ControllerMemory());
}

/// Bit by bit it is the same memory.
TEST(ControllerMemory, EveryBitByItselfIsItsWord) {
    ControllerMemory memory;
    std::string text;
    for (int bit = 0; bit < ControllerMemory::bitCount; bit += 7) {
        memory.setBit(bit, true);
        text += bitName(bit) + ",on\n";
    }
    EXPECT_EQ(readMemory(text), memory);
}

TEST(ControllerMemory, DamagedTextsAreReadOrRefusedByTheirLine) {
    constexpr unsigned seed = 16'022;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    const std::string whole = "# memory\nW 0100,4660\nR 0012.3,ON\nSV 255,1A2Bh\nTC 200,5\nM 0000.15,OFF\n";
    for (int round = 0; round < 50'000; ++round) {
        std::string text = whole;
        for (std::size_t damages = 1 + random() % 4; damages > 0; --damages) {
            const std::size_t place = random() % text.size();
            switch (random() % 3) {
            case 0:
                text[place] = static_cast<char>(random());
                break;
            case 1:
                text.erase(place, 1 + random() % 5);
                break;
            default:
                text.insert(place, 1, "\n,;\t\"#.h0W\xFF"[random() % 11]);
            }
            text += text.empty() ? " " : "";
        }
        const auto error = raisedBy([&text] { readMemory(text); });
        ASSERT_TRUE(!error || std::string(error->what()).starts_with("Line ")) << text;
    }
}

TEST(Controller, GivesAndTakesItsMemoryAsAValue) {
    Controller controller;
    ControllerMemory memory;
    memory.setWord(600, 7);
    controller.setMemory(memory);
    EXPECT_EQ(controller.word(600), 7);
    controller.setWord(601, 8);
    EXPECT_EQ(controller.memory().word(601), 8);
}

} // namespace
} // namespace varda::test
