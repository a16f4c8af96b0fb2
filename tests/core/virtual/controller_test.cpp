#include "core/virtual/controller.h"

#include "core/base/runtime_error.h"
#include "core/virtual/whole_memory.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace varda {
namespace {

/// Word addresses of the registers used here.
constexpr int registerM2 = 194;
constexpr int registerF0 = 448;
constexpr int registerW1 = 513;
constexpr int registerSR0 = 3072;
constexpr int registerSR511 = 3583;

Bytes fromHex(const std::string& text) {
    std::istringstream in(text);
    Bytes bytes;
    for (unsigned value = 0; in >> std::hex >> value;) {
        bytes.push_back(static_cast<std::uint8_t>(value));
    }
    return bytes;
}

/// Frames of many equal body bytes: header, body, CRC.
Bytes longFrame(const std::string& header, std::size_t count, std::uint8_t value, const std::string& crc) {
    Bytes frame = fromHex(header);
    frame.insert(frame.end(), count, value);
    const Bytes end = fromHex(crc);
    frame.insert(frame.end(), end.begin(), end.end());
    return frame;
}

struct WordValue {
    int address;
    std::uint16_t value;
};

struct Exchange {
    std::string name;
    std::string request;
    std::string answer;
    std::vector<WordValue> before = {}; ///< words set before the request
    std::vector<WordValue> after = {};  ///< words to be found after it
};

struct Silence {
    std::string name;
    std::string request;
};

std::ostream& operator<<(std::ostream& out, const Exchange& row) { return out << row.request; }
std::ostream& operator<<(std::ostream& out, const Silence& row) { return out << row.request; }

std::string exchangeName(const testing::TestParamInfo<Exchange>& info) { return info.param.name; }
std::string silenceName(const testing::TestParamInfo<Silence>& info) { return info.param.name; }

void set(Controller& controller, const std::vector<WordValue>& words) {
    for (const auto& [address, value] : words) {
        controller.setWord(address, value);
    }
}

class ControllerAnswers : public testing::TestWithParam<Exchange> {};

TEST_P(ControllerAnswers, ByteForByte) {
    Controller controller;
    set(controller, GetParam().before);
    EXPECT_EQ(controller.answer(fromHex(GetParam().request)), fromHex(GetParam().answer));
    for (const auto& [address, value] : GetParam().after) {
        EXPECT_EQ(controller.word(address), value) << "word " << address;
    }
}

const std::vector<Exchange> reads{
    {"BitReadGivesOneByteForEachBit",
     "01 00 21 03 23 0C 04 42 8A",
     "00 01 A1 04 FF 00 FF FF 89 DE",
     {{registerM2, 0b0110'1000}},
     {{registerM2, 0b0110'1000}}},
    {"BitReadGoesOnInTheNextWord",
     "01 00 21 03 2E 0C 04 D3 49",
     "00 01 A1 04 00 FF FF 00 C9 BA",
     {{registerM2, 0x8000}, {registerM2 + 1, 0x0001}}},
    {"BitReadOfTheLastBit", "01 00 21 03 FF DF 01 1E 43", "00 01 A1 01 FF 35 CE", {{registerSR511, 0x8000}}},
    {"WordReadGivesTheLowByteFirst",
     "05 07 23 03 01 02 02 5B 55",
     "07 05 A3 04 34 12 CD AB 06 A4",
     {{registerW1, 0x1234}, {registerW1 + 1, 0xABCD}}},
    {"WordReadOfTheLastWord",
     "FF FF 23 03 FF 0D 01 30 E3",
     "FF FF A3 02 EF BE 4F C4",
     {{registerSR511, 0xBEEF}}},
    {"WordReadGoesOnInTheNextRegisterKind",
     "01 00 23 03 7F 00 02 7E 5A",
     "00 01 A3 04 01 00 02 00 B9 04",
     {{127, 1}, {128, 2}}},
};
INSTANTIATE_TEST_SUITE_P(Reads, ControllerAnswers, testing::ValuesIn(reads), exchangeName);

const std::vector<Exchange> writes{
    {"BitWriteTurnsBitsOnAndOff",
     "01 00 22 05 23 0C FF 00 FF B3 D0",
     "00 01 A2 01 00 85 8E",
     {{registerM2, 0b1001'0000}},
     {{registerM2, 0b1010'1000}}},
    {"BitWriteGoesOnInTheNextWord",
     "01 00 22 06 2E 0C FF FF FF 00 93 98",
     "00 01 A2 01 00 85 8E",
     {{registerM2 + 1, 0xFFFF}},
     {{registerM2, 0xC000}, {registerM2 + 1, 0xFFFD}}},
    {"BitWriteTakesEveryValueButZeroAsOn",
     "01 00 22 05 20 0C 01 00 80 D7 C0",
     "00 01 A2 01 00 85 8E",
     {},
     {{registerM2, 0b101}}},
    {"BitWriteOfTheLastBit",
     "01 00 22 03 FF DF FF DB C3",
     "00 01 A2 01 00 85 8E",
     {},
     {{registerSR511, 0x8000}}},
    {"WordWriteTakesTheLowByteFirst",
     "05 07 24 06 01 02 34 12 CD AB E0 C7",
     "07 05 A4 01 00 D1 7F",
     {},
     {{registerW1 - 1, 0}, {registerW1, 0x1234}, {registerW1 + 1, 0xABCD}, {registerW1 + 2, 0}}},
    {"WordWriteOfTheLastWord",
     "01 00 24 04 FF 0D EF BE 1B 74",
     "00 01 A4 01 00 65 8F",
     {},
     {{registerSR511, 0xBEEF}}},
};
INSTANTIATE_TEST_SUITE_P(Writes, ControllerAnswers, testing::ValuesIn(writes), exchangeName);

const std::vector<Exchange> mixed{
    {"MixedReadAnswersInTheOrderOfTheRequest",
     "01 00 25 08 01 42 23 0C FF 4D 22 0C E3 47",
     "00 01 A5 06 2B 1A FF EF BE 00 FE 48",
     {{registerW1, 0x1A2B}, {registerM2, 0b1000}, {registerSR511, 0xBEEF}}},
    {"MixedReadTakesOneByteMoreThanTheFrame",
     "01 00 25 02 01 42 2A A7 00",
     "00 01 A5 02 2B 1A 21 EC",
     {{registerW1, 0x1A2B}}},
    {"MixedReadTakesAnyValueOfTheByteTooMany",
     "01 00 25 02 23 0C B2 33 9F",
     "00 01 A5 01 FF 74 0F",
     {{registerM2, 0b1000}}},
    {"MixedReadGivesAPointAsOftenAsItIsNamed",
     "01 00 25 04 23 0C 23 0C A5 80",
     "00 01 A5 02 FF FF BF 67",
     {{registerM2, 0b1000}}},
    {"MixedReadOfNoPointHasAnEmptyAnswer", "01 00 25 00 1B 48 00", "00 01 A5 00 2A B4"},
    {"MixedWriteStoresBitsAndWords",
     "01 00 26 0A 23 0C FF 01 42 2B 1A 24 0C 00 91 39",
     "00 01 A6 01 00 C4 4F",
     {{registerM2, 0b1'0000}},
     {{registerM2, 0b1000}, {registerW1, 0x1A2B}}},
    {"MixedWriteTakesOneByteMoreThanTheFrame",
     "01 00 26 03 03 00 FF B2 03 00",
     "00 01 A6 01 00 C4 4F",
     {},
     {{0, 0b1000}}},
    {"MixedWriteTakesAnyValueOfTheByteTooMany",
     "01 00 26 04 01 42 2B 1A 49 D2 FF",
     "00 01 A6 01 00 C4 4F",
     {},
     {{registerW1, 0x1A2B}}},
    {"MixedWriteStoresInTheOrderOfTheRequest",
     "01 00 26 07 01 42 2B 1A 10 20 00 D5 66",
     "00 01 A6 01 00 C4 4F",
     {},
     {{registerW1, 0x1A2A}}},
    {"MixedWriteOfNoPointIsAcknowledged", "01 00 26 00 1B B8 00", "00 01 A6 01 00 C4 4F"},
};
INSTANTIATE_TEST_SUITE_P(Mixed, ControllerAnswers, testing::ValuesIn(mixed), exchangeName);

class ControllerStaysSilent : public testing::TestWithParam<Silence> {};

TEST_P(ControllerStaysSilent, AndChangesNothing) {
    Controller controller;
    set(controller, {{0, 0x5555}, {registerM2, 0x5555}, {registerW1, 0x5555}, {registerSR511, 0x5555}});
    const auto before = wholeMemory(controller);
    EXPECT_EQ(controller.answer(fromHex(GetParam().request)), std::nullopt);
    EXPECT_EQ(wholeMemory(controller), before);
}

const std::vector<Silence> damaged{
    {"OnNoByteAtAll", ""},
    {"OnAHeaderAlone", "01 00 21 03"},
    {"OnOneByteLessThanTheShortestFrame", "01 00 25 00 00"},
    {"OnAWrongLowByteOfTheCrc", "01 00 21 03 23 0C 10 43 85"},
    {"OnAWrongHighByteOfTheCrc", "01 00 21 03 23 0C 10 42 05"},
    {"OnACrcWithItsBytesExchanged", "01 00 21 03 23 0C 10 85 42"},
    {"OnAChangedStation", "02 00 21 03 23 0C 10 42 85"},
    {"OnAWrongCrcOfAMixedRequest", "01 00 25 02 01 42 3A A7 00"},
    {"OnASingleReadOneByteTooLong", "01 00 21 03 23 0C 10 42 85 00"},
    {"OnASingleReadOneByteTooShort", "01 00 21 03 23 0C E2 C3"},
    {"OnABitWriteOneByteTooLong", "01 00 22 03 00 00 FF B3 C3 00"},
    {"OnAWordWriteOneByteTooLong", "01 00 24 04 01 02 34 12 40 12 00"},
    {"OnAMixedReadTwoBytesTooLong", "01 00 25 02 01 42 2A A7 00 00"},
    {"OnAMixedWriteTwoBytesTooLong", "01 00 26 03 03 00 FF B2 03 00 00"},
    {"OnAMixedReadOneByteTooShort", "01 00 25 04 01 42 23 67 8E"},
};
INSTANTIATE_TEST_SUITE_P(DamagedFrame, ControllerStaysSilent, testing::ValuesIn(damaged), silenceName);

const std::vector<Silence> unknown{
    {"OnCommand00", "01 00 00 03 23 0C 10 FE 82"},
    {"OnCommand20", "01 00 20 03 23 0C 10 7F 45"},
    {"OnCommand27", "01 00 27 03 23 0C 10 CA 85"},
    {"OnAnAnswer", "01 00 A1 03 FF 00 FF C6 2D"},
    {"OnAReadWithoutCount", "01 00 21 02 23 0C B3 03"},
    {"OnAReadWithAByteTooManyInItsBody", "01 00 23 04 01 02 02 00 D6 08"},
    {"OnABitWriteWithoutAddress", "01 00 22 00 19 78"},
    {"OnABitWriteWithHalfAnAddress", "01 00 22 01 00 B8 5A"},
    {"OnABitWriteWithoutValue", "01 00 22 02 00 00 AA 72"},
    {"OnAWordWriteWithoutValue", "01 00 24 02 01 02 2A AB"},
    {"OnAWordWriteWithHalfAValue", "01 00 24 05 01 02 34 12 CD D3 B4"},
    {"OnAMixedReadWithHalfAnAddress", "01 00 25 03 01 42 23 66 FA 00"},
    {"OnAMixedWriteWithHalfAnAddress", "01 00 26 04 03 00 FF 01 F7 75 00"},
    {"OnAMixedWriteWithoutTheLastBitsValue", "01 00 26 05 03 00 FF 04 00 36 07 00"},
    {"OnAMixedWriteWithHalfTheLastWordsValue", "01 00 26 06 03 00 FF 01 42 2B D4 A8 00"},
};
INSTANTIATE_TEST_SUITE_P(UnknownCommandOrBody, ControllerStaysSilent, testing::ValuesIn(unknown),
                         silenceName);

const std::vector<Silence> outside{
    {"OnABitReadBehindTheLastBit", "01 00 21 03 00 E0 01 3F 83"},
    {"OnABitReadThatRunsOutOfTheMemory", "01 00 21 03 FF DF 02 5E 42"},
    {"OnABitReadBehindTheHighestAddress", "01 00 21 03 FF FF 02 47 82"},
    {"OnABitReadOfCountZeroWith255BitsLeft", "01 00 21 03 01 DF 00 BE 73"},
    {"OnAWordReadBehindTheLastWord", "01 00 23 03 00 0E 01 0B E3"},
    {"OnAWordReadThatRunsOutOfTheMemory", "01 00 23 03 FF 0D 02 7B 22"},
    {"OnAWordReadBehindTheHighestAddress", "01 00 23 03 FF FF 02 3E 42"},
    {"OnAWordReadOfCountZeroWith255WordsLeft", "01 00 23 03 01 0D 00 9B 13"},
    {"OnABitWriteThatRunsOutOfTheMemory", "01 00 22 05 FE DF FF FF FF 26 B7"},
    {"OnAWordWriteThatRunsOutOfTheMemory", "01 00 24 06 FF 0D 34 12 CD AB C6 FD"},
    {"OnAMixedReadWithAWordOutside", "01 00 25 04 23 0C 00 4E 3C 81 00"},
    {"OnAMixedReadWithAWordAddressBeyondTheMark", "01 00 25 02 01 C2 2B 07 00"},
    {"OnAMixedWriteWithItsLastWordOutside", "01 00 26 07 03 00 FF 00 4E 2B 1A 29 A7 00"},
    {"OnAMixedWriteWithItsFirstWordOutside", "01 00 26 07 00 4E 2B 1A 03 00 FF 6D 2F 00"},
};
INSTANTIATE_TEST_SUITE_P(OutsideTheMemory, ControllerStaysSilent, testing::ValuesIn(outside), silenceName);

TEST(Controller, CountZeroReads256BitsAndLenIsTheLowByte) {
    Controller controller;
    for (int address = 0; address < 16; ++address) {
        controller.setWord(address, 0xFFFF);
    }
    const auto answer = controller.answer(fromHex("01 00 21 03 00 00 00 B7 83"));
    EXPECT_EQ(answer, longFrame("00 01 A1 00", 256, 0xFF, "7D F0"));
    EXPECT_EQ(answer->size(), 262U);
}

TEST(Controller, CountZeroReads256WordsAndLenIsTheLowByte) {
    Controller controller;
    for (int address = 512; address < 768; ++address) {
        controller.setWord(address, 0x5A5A);
    }
    const auto answer = controller.answer(fromHex("01 00 23 03 00 02 00 CF 23"));
    EXPECT_EQ(answer, longFrame("00 01 A3 00", 512, 0x5A, "B3 74"));
    EXPECT_EQ(answer->size(), 518U);
}

TEST(Controller, CountZeroReachesTheLastBitAndTheLastWord) {
    Controller controller;
    EXPECT_EQ(controller.answer(fromHex("01 00 21 03 00 DF 00 EF B3"))->size(), 262U);
    EXPECT_EQ(controller.answer(fromHex("01 00 23 03 00 0D 00 CA D3"))->size(), 518U);
}

TEST(Controller, LenOfALongAnswerIsItsLowByte) {
    Controller controller;
    EXPECT_EQ(controller.answer(fromHex("01 00 23 03 00 02 80 CE 83")),
              longFrame("00 01 A3 00", 256, 0x00, "9C 46"));
    EXPECT_EQ(controller.answer(fromHex("01 00 23 03 00 02 81 0F 43")),
              longFrame("00 01 A3 02", 258, 0x00, "CB 4A"));
    EXPECT_EQ(controller.answer(fromHex("01 00 21 03 00 00 FF F7 C3")),
              longFrame("00 01 A1 FF", 255, 0x00, "FF 28"));
}

TEST(Controller, TakesTheLongestBitWriteOf253Bits) {
    Controller controller;
    const Bytes request = longFrame("01 00 22 FF 00 00", 253, 0xFF, "25 14");
    EXPECT_EQ(controller.answer(request), fromHex("00 01 A2 01 00 85 8E"));
    EXPECT_EQ(controller.word(14), 0xFFFF);
    EXPECT_EQ(controller.word(15), 0x1FFF);
}

TEST(Controller, TakesTheLongestWordWriteOf126Words) {
    Controller controller;
    const Bytes request = longFrame("01 00 24 FE 00 02", 252, 0x5A, "92 28");
    EXPECT_EQ(controller.answer(request), fromHex("00 01 A4 01 00 65 8F"));
    EXPECT_EQ(controller.word(512 + 125), 0x5A5A);
    EXPECT_EQ(controller.word(512 + 126), 0x0000);
}

TEST(Controller, CountsTheAnsweredRequestsInRegisterSR0) {
    Controller controller;
    const Bytes readCounter = fromHex("01 00 23 03 00 0C 01 0A 83");
    EXPECT_EQ(controller.answer(readCounter), fromHex("00 01 A3 02 00 00 BE 5F"));
    EXPECT_EQ(controller.answer(readCounter), fromHex("00 01 A3 02 01 00 BF CF"));
    EXPECT_EQ(controller.answer(readCounter), fromHex("00 01 A3 02 02 00 BF 3F"));
}

TEST(Controller, CountsWritesAndMixedRequestsToo) {
    Controller controller;
    for (const auto* request : {"01 00 22 03 00 00 FF B3 C3", "01 00 24 04 01 02 34 12 40 12",
                                "01 00 25 00 1B 48", "01 00 26 00 1B B8"}) {
        controller.answer(fromHex(request));
    }
    EXPECT_EQ(controller.word(registerSR0), 4);
}

TEST(Controller, TheCounterWrapsToZero) {
    Controller controller;
    controller.setWord(registerSR0, 0xFFFF);
    controller.answer(fromHex("01 00 25 00 1B 48"));
    EXPECT_EQ(controller.word(registerSR0), 0);
    EXPECT_EQ(controller.word(registerSR0 + 1), 0);
}

TEST(Controller, TogglesBitZeroOfRegisterF0WithEachAnswer) {
    Controller controller;
    controller.setWord(registerF0, 0xAAAA);
    const Bytes readBit = fromHex("01 00 21 03 00 1C 01 7E 83");
    EXPECT_EQ(controller.answer(readBit), fromHex("00 01 A1 01 00 75 8E"));
    EXPECT_EQ(controller.answer(readBit), fromHex("00 01 A1 01 FF 35 CE"));
    EXPECT_EQ(controller.answer(readBit), fromHex("00 01 A1 01 00 75 8E"));
    EXPECT_EQ(controller.word(registerF0), 0xAAAB);
}

TEST(Controller, TheCounterGoesOnFromAWrittenValue) {
    Controller controller;
    controller.answer(fromHex("01 00 24 04 00 0C 34 12 20 2D"));
    EXPECT_EQ(controller.word(registerSR0), 0x1235);
}

TEST(Controller, MovesNothingButItsTwoRegisters) {
    Controller controller;
    auto expected = wholeMemory(controller);
    controller.answer(fromHex("01 00 25 00 1B 48"));
    expected[registerSR0] = 1;
    expected[registerF0] = 1;
    EXPECT_EQ(wholeMemory(controller), expected);
}

TEST(Controller, StartsWithAnEmptyMemory) {
    EXPECT_EQ(wholeMemory(Controller{}), std::vector<std::uint16_t>(3584, 0));
}

int errorNumber(void (*touch)(Controller& controller)) {
    Controller controller;
    try {
        touch(controller);
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return 0;
}

TEST(Controller, RefusesWordAddressesOutsideTheMemory) {
    EXPECT_EQ(errorNumber([](Controller& controller) { controller.setWord(3583, 1); }), 0);
    EXPECT_EQ(errorNumber([](Controller& controller) { controller.setWord(3584, 1); }), 9);
    EXPECT_EQ(errorNumber([](Controller& controller) { controller.setWord(-1, 1); }), 9);
    EXPECT_EQ(errorNumber([](Controller& controller) { controller.word(3584); }), 9);
    EXPECT_EQ(errorNumber([](Controller& controller) { controller.word(-1); }), 9);
}

TEST(Controller, HasOneSocket) {
    Controller controller;
    EXPECT_TRUE(controller.plugIn());
    EXPECT_FALSE(controller.plugIn());
    controller.unplug();
    EXPECT_TRUE(controller.plugIn());
}

} // namespace
} // namespace varda
