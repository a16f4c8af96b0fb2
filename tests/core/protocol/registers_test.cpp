#include "core/protocol/registers.h"

#include "support/raises.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varda {
namespace {

using test::numberRaisedBy;
using Texts = std::vector<std::string>;

struct Row {
    const char* kind;
    bool bitAccess;
    int base;
    int last;
    int highestListed;
    std::size_t width;
};

const std::vector<Row> memoryMap = {
    {"R", true, 0x000, 127, 127, 4},    {"L", true, 0x080, 191, 63, 4},
    {"M", true, 0x0C0, 319, 127, 4},    {"K", true, 0x140, 447, 127, 4},
    {"F", true, 0x1C0, 463, 15, 4},     {"TC", true, 0x1D0, 511, 255, 3},
    {"W", false, 0x200, 2559, 2047, 4}, {"SV", false, 0xA00, 2815, 255, 3},
    {"PV", false, 0xB00, 3071, 255, 3}, {"SR", false, 0xC00, 3583, 511, 3},
};

void expectSplit(int address, const std::string& kind, int number) {
    const SplitAddress split = SplitRegisterAddress(address);
    EXPECT_EQ(split.kind, kind) << address;
    EXPECT_EQ(split.number, number) << address;
}

std::string bitAddressOf(const char* kind, int number, int bit) {
    return bitAddressText(registerAddress(Access::Bit, kind, number), bit);
}

std::string wordAddressOf(const char* kind, int number) {
    return wordAddressText(registerAddress(Access::Word, kind, number));
}

TEST(Registers, TenKindsStandInListOrderWithTheirBlocks) {
    const auto kinds = registerKinds();
    ASSERT_EQ(kinds.size(), memoryMap.size());
    for (std::size_t i = 0; i < memoryMap.size(); ++i) {
        SCOPED_TRACE(memoryMap[i].kind);
        EXPECT_EQ(kinds[i].name, memoryMap[i].kind);
        EXPECT_EQ(kinds[i].bitAccess, memoryMap[i].bitAccess);
        EXPECT_EQ(kinds[i].base, memoryMap[i].base);
        EXPECT_EQ(kinds[i].last, memoryMap[i].last);
        EXPECT_EQ(kinds[i].highestListed, memoryMap[i].highestListed);
        EXPECT_EQ(kinds[i].listWidth, memoryMap[i].width);
    }
}

TEST(Registers, KindIsFoundByItsExactName) {
    ASSERT_NE(findRegisterKind("SV"), nullptr);
    EXPECT_EQ(findRegisterKind("SV")->base, 2560);
    for (const char* name : {"", "r", "tc", "Tc", "T", "S", "RR", " R", "R "}) {
        EXPECT_EQ(findRegisterKind(name), nullptr) << name;
    }
}

TEST(Registers, BasesOfBitAccess) {
    for (const Row& row : memoryMap) {
        EXPECT_EQ(GetRegisterBase("B", row.kind), row.bitAccess ? row.base : 0) << row.kind;
    }
}

TEST(Registers, BasesOfWordAccess) {
    for (const Row& row : memoryMap) {
        EXPECT_EQ(GetRegisterBase("W", row.kind), row.base) << row.kind;
    }
}

TEST(Registers, BaseOfWordOnlyKindWithBitAccessIsZero) {
    EXPECT_EQ(GetRegisterBase("B", "W"), 0);
    EXPECT_EQ(GetRegisterBase("B", "SR"), 0);
    EXPECT_EQ(bitAddressOf("W", 5, 1), "0051"); // the same bit as "R" 5.1
}

TEST(Registers, BaseOfUnknownKindOrAccessIsZero) {
    EXPECT_EQ(GetRegisterBase("B", "m"), 0);
    EXPECT_EQ(GetRegisterBase("W", ""), 0);
    EXPECT_EQ(GetRegisterBase("W", "X"), 0);
    EXPECT_EQ(GetRegisterBase("b", "M"), 0);
    EXPECT_EQ(GetRegisterBase("w", "M"), 0);
    EXPECT_EQ(GetRegisterBase("", "M"), 0);
    EXPECT_EQ(GetRegisterBase("BIT", "M"), 0);
}

TEST(Registers, AddressSplitsIntoTheKindWhoseBlockHoldsIt) {
    for (const Row& row : memoryMap) {
        if (std::string(row.kind) != "SR") {
            expectSplit(row.base, row.kind, 0);
            expectSplit(row.last, row.kind, row.last - row.base);
        }
    }
    expectSplit(2600, "SV", 40);
    expectSplit(564, "W", 52);
}

TEST(Registers, SplitAddressInSrBlockKeepsTheWholeAddress) {
    expectSplit(3072, "SR", 3072);
    expectSplit(3100, "SR", 3100);
    expectSplit(3583, "SR", 3583);
}

TEST(Registers, SplitAddressBehindTheLastBlockIsStillSr) {
    expectSplit(3584, "SR", 3584);
    expectSplit(32767, "SR", 32767);
}

TEST(Registers, SplitAddressBelowZeroHasNoKind) {
    expectSplit(-1, "", 0);
    expectSplit(-32768, "", 0);
}

TEST(Registers, LastAddresses) {
    for (const Row& row : memoryMap) {
        EXPECT_EQ(GetRegisterLastAddress(row.kind), row.last) << row.kind;
    }
    EXPECT_EQ(GetRegisterLastAddress("r"), 0);
    EXPECT_EQ(GetRegisterLastAddress(""), 0);
}

TEST(Registers, HighestNumbersOfTheSimulator) {
    for (const Row& row : memoryMap) {
        if (std::string(row.kind) != "L") {
            EXPECT_EQ(GetRegisterMaxNumber(row.kind), row.highestListed) << row.kind;
        }
    }
    EXPECT_EQ(GetRegisterMaxNumber("X"), 0);
    EXPECT_EQ(GetRegisterMaxNumber(""), 0);
}

TEST(Registers, SimulatorAcceptsOneNumberMoreOfLThanTheListsOffer) {
    EXPECT_EQ(GetRegisterMaxNumber("L"), 64);
    EXPECT_EQ(numberListTexts("L").back(), "0063");
}

TEST(Registers, NextKindFollowsListOrder) {
    for (std::size_t i = 0; i + 1 < memoryMap.size(); ++i) {
        EXPECT_EQ(NextRegisterKind(memoryMap[i].kind), memoryMap[i + 1].kind);
    }
}

TEST(Registers, NoKindFollowsSr) { EXPECT_EQ(NextRegisterKind("SR"), "ERR"); }

TEST(Registers, PreviousKindFollowsListOrderBackwards) {
    for (std::size_t i = 1; i < memoryMap.size(); ++i) {
        if (std::string(memoryMap[i].kind) != "K") {
            EXPECT_EQ(PrevRegisterKind(memoryMap[i].kind), memoryMap[i - 1].kind);
        }
    }
}

TEST(Registers, NoKindPrecedesR) { EXPECT_EQ(PrevRegisterKind("R"), "ERR"); }

TEST(Registers, SteppingBackFromKStaysAtK) { EXPECT_EQ(PrevRegisterKind("K"), "K"); }

TEST(Registers, UnknownKindHasNoNeighbours) {
    for (const char* kind : {"", "r", "ERR", "X"}) {
        EXPECT_EQ(NextRegisterKind(kind), "") << kind;
        EXPECT_EQ(PrevRegisterKind(kind), "") << kind;
    }
}

TEST(Registers, BitModeOffersSixKindsAndAnEmptyLastEntry) {
    EXPECT_EQ(kindListTexts(Access::Bit), (Texts{"R", "L", "M", "K", "F", "TC", ""}));
}

TEST(Registers, WordModeOffersTenKindsAndAnEmptyLastEntry) {
    EXPECT_EQ(kindListTexts(Access::Word), (Texts{"R", "L", "M", "K", "F", "TC", "W", "SV", "PV", "SR", ""}));
}

TEST(Registers, NumberListsRunFromZeroInTheWidthOfTheKind) {
    for (const Row& row : memoryMap) {
        SCOPED_TRACE(row.kind);
        const Texts texts = numberListTexts(row.kind);
        ASSERT_EQ(texts.size(), static_cast<std::size_t>(row.highestListed) + 1);
        for (std::size_t n = 0; n < texts.size(); ++n) {
            EXPECT_EQ(texts[n].size(), row.width);
            EXPECT_EQ(std::stoul(texts[n]), n);
        }
    }
}

TEST(Registers, NumberListEndsReadAsListed) {
    EXPECT_EQ(numberListTexts("W").front(), "0000");
    EXPECT_EQ(numberListTexts("W").back(), "2047");
    EXPECT_EQ(numberListTexts("F").back(), "0015");
    EXPECT_EQ(numberListTexts("SR").front(), "000");
    EXPECT_EQ(numberListTexts("SR").back(), "511");
}

TEST(Registers, EmptyOrUnknownKindOffersNoNumbers) {
    EXPECT_TRUE(numberListTexts("").empty());
    EXPECT_TRUE(numberListTexts("r").empty());
}

TEST(Registers, BitListHoldsZeroToFifteenWithoutPadding) {
    EXPECT_EQ(bitListTexts(),
              (Texts{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12", "13", "14", "15"}));
}

TEST(Registers, CountListsRunFromOneToTheLimitOfTheRequest) {
    EXPECT_EQ(bitReadLimit, 256);
    EXPECT_EQ(wordReadLimit, 128);
    EXPECT_EQ(bitWriteLimit, 253);
    EXPECT_EQ(wordWriteLimit, 126);
    const Texts texts = countListTexts(bitReadLimit);
    ASSERT_EQ(texts.size(), 256U);
    EXPECT_EQ(texts.front(), "1");
    EXPECT_EQ(texts[8], "9");
    EXPECT_EQ(texts.back(), "256");
}

TEST(Registers, WordAddressesAtTheEndsOfTheMemory) {
    EXPECT_EQ(wordAddressOf("R", 0), "0000");
    EXPECT_EQ(wordAddressOf("W", 2047), "09FF");
    EXPECT_EQ(wordAddressOf("SR", 511), "0DFF");
}

TEST(Registers, TcNumbersFrom48UpLieInTheBlockOfW) {
    EXPECT_EQ(registerAddress(Access::Word, "TC", 47), 511);
    EXPECT_EQ(registerAddress(Access::Word, "TC", 48), 512);
    EXPECT_EQ(registerAddress(Access::Word, "TC", 100), 564);
    EXPECT_EQ(registerAddress(Access::Word, "TC", 255), 719);
    EXPECT_EQ(bitAddressOf("TC", 255, 15), "2CFF");
}

TEST(Registers, BitAddressIsWordTimesSixteenPlusBit) {
    EXPECT_EQ(bitAddressOf("K", 5, 10), "145A");
    EXPECT_EQ(bitAddressOf("R", 1, 15), "001F");
    EXPECT_EQ(bitAddressOf("M", 2, 3), "0C23");
    EXPECT_EQ(bitAddressOf("R", 1, 0), "0010");
}

TEST(Registers, BitAddressAboveTwelveBitsLosesTheTopDigit) {
    EXPECT_EQ(bitAddressText(0x1234, 10), "234A");
    EXPECT_EQ(bitAddressText(0x1000, 0), "0000");
}

TEST(Registers, BitsAboveFifteenLengthenTheBitAddressText) {
    EXPECT_EQ(bitAddressText(0, 16), "00010");
    EXPECT_EQ(bitAddressText(0x145, 17), "14511");
    EXPECT_EQ(bitAddressText(0x145, 256), "145100");
}

TEST(Registers, WordAddressTextKeepsFourDigits) {
    EXPECT_EQ(wordAddressText(0x7FFF), "7FFF");
    EXPECT_EQ(wordAddressText(10), "000A");
}

TEST(Registers, AddressAboveSixteenBitsIsOverflow) {
    EXPECT_EQ(registerAddress(Access::Word, "W", 32767 - 512), 32767);
    EXPECT_EQ(numberRaisedBy([] { registerAddress(Access::Word, "W", 32768 - 512); }), 6);
    EXPECT_EQ(registerAddress(Access::Word, "R", 32767), 32767);
    EXPECT_EQ(numberRaisedBy([] { registerAddress(Access::Bit, "L", 32767); }), 6);
}

TEST(RegisterNumberText, IsAsWideAsTheListsOfItsKind) {
    EXPECT_EQ(registerNumberText("W", 57), "0057");
    EXPECT_EQ(registerNumberText("SV", 7), "007");
    EXPECT_EQ(registerNumberText("ERR", 7), "7");
}

} // namespace
} // namespace varda
