#include "core/pairs/send_data_check.h"

#include <gtest/gtest.h>

#include <ostream>

namespace varda {

void PrintTo(SendDataVerdict verdict, std::ostream* out) { *out << static_cast<int>(verdict); }

namespace {

using Messages = std::vector<std::string>;
constexpr auto accepted = SendDataVerdict::Accepted;
constexpr auto lengthDiffers = SendDataVerdict::LengthDiffers;
constexpr auto valueRefused = SendDataVerdict::ValueRefused;

struct Row {
    const char* kind;
    const char* text;
    SendDataVerdict verdict;
};

const std::vector<Row> rows = {
    {"BIT_READ", "", accepted},           {"BIT_READ", "00", accepted},
    {"BIT_READ", "FF00FF", accepted},     {"BIT_READ", "0F", valueRefused},
    {"BIT_READ", "F0", valueRefused},     {"BIT_READ", "ff", valueRefused},
    {"BIT_READ", "FF0", lengthDiffers},   {"BIT_READ", "0F0", lengthDiffers},
    {"BIT_READ", "FF0FF0", valueRefused}, {"BIT_READ", "FF01", valueRefused},
    {"WORD_READ", "", accepted},          {"WORD_READ", "0000", accepted},
    {"WORD_READ", "FFFF", accepted},      {"WORD_READ", "12345678", accepted},
    {"WORD_READ", "abcd", accepted},      {"WORD_READ", "123456789", lengthDiffers},
    {"WORD_READ", "12", lengthDiffers},   {"WORD_READ", "1234XYZW", valueRefused},
    {"WORD_READ", "12 4", valueRefused},  {"WORD_READ", "-001", valueRefused},
    {"BIT_WRITE", "", accepted},          {"BIT_WRITE", "0", accepted},
    {"WORD_WRITE", "", accepted},         {"WORD_WRITE", "XYZ", accepted},
    {"MIXED_READ", "", valueRefused},     {"", "00", valueRefused},
};

TEST(CheckSimSendData, EveryKindHasItsOwnRule) {
    for (const Row& row : rows) {
        EXPECT_EQ(CheckSimSendData(row.kind, row.text), row.verdict) << row.kind << " \"" << row.text << '"';
    }
}

TEST(CheckSimSendData, NineDigitsOfWordDataFailTheLengthRule) {
    EXPECT_EQ(CheckSimSendData("WORD_READ", "123456789"), lengthDiffers);
}

TEST(SendDataMessages, AcceptedDataHaveNone) {
    EXPECT_EQ(sendDataMessages("BIT_READ", accepted), Messages{});
    EXPECT_EQ(sendDataMessages("WORD_WRITE", accepted), Messages{});
}

TEST(SendDataMessages, RefusedValueTellsTheMessageOfItsKind) {
    EXPECT_EQ(sendDataMessages("BIT_READ", valueRefused),
              Messages{"In BIT_READ Mode,Only possible to enter 00 or FF"});
    EXPECT_EQ(sendDataMessages("WORD_READ", valueRefused),
              Messages{"In WORD_READ Mode,Only possible to enter 0000 to FFFF"});
}

TEST(SendDataMessages, WritesTellTheMessagesOfTheReads) {
    EXPECT_EQ(sendDataMessages("BIT_WRITE", valueRefused), sendDataMessages("BIT_READ", valueRefused));
    EXPECT_EQ(sendDataMessages("WORD_WRITE", valueRefused), sendDataMessages("WORD_READ", valueRefused));
}

TEST(SendDataMessages, LengthFailureTellsItsOwnMessageThenThatOfTheKind) {
    EXPECT_EQ(sendDataMessages("BIT_READ", lengthDiffers),
              (Messages{"Data Length is different !!", "In BIT_READ Mode,Only possible to enter 00 or FF"}));
    EXPECT_EQ(
        sendDataMessages("WORD_READ", lengthDiffers),
        (Messages{"Data Length is different !!", "In WORD_READ Mode,Only possible to enter 0000 to FFFF"}));
}

/// All characters of one byte that a key filter lets through as they are.
std::string passing(const char* answerKind) {
    std::string keys;
    for (int code = 0; code < 256; ++code) {
        const char key = static_cast<char>(code);
        if (filterSendDataKey(answerKind, key) == key) {
            keys += key;
        }
    }
    return keys;
}

TEST(SendDataKeys, WordDataTakeHexadecimalDigits) {
    EXPECT_EQ(passing("Word Read ANS"), "\x08\x09%'0123456789ABCDEF");
}

TEST(SendDataKeys, BitDataTakeZeroAndF) { EXPECT_EQ(passing("Bit Read ANS"), "\x08\x09%'0F"); }

TEST(SendDataKeys, PercentAndApostrophePassAsIfTheyWereCursorKeys) {
    for (const char* const kind : {"Bit Read ANS", "Word Read ANS"}) {
        EXPECT_EQ(filterSendDataKey(kind, '%'), '%');
        EXPECT_EQ(filterSendDataKey(kind, '\''), '\'');
        EXPECT_EQ(filterSendDataKey(kind, '&'), std::nullopt);
    }
}

TEST(SendDataKeys, LowerCaseDigitsBecomeUpperCase) {
    EXPECT_EQ(filterSendDataKey("Word Read ANS", 'a'), 'A');
    EXPECT_EQ(filterSendDataKey("Word Read ANS", 'f'), 'F');
    EXPECT_EQ(filterSendDataKey("Word Read ANS", 'g'), std::nullopt);
    EXPECT_EQ(filterSendDataKey("Bit Read ANS", 'f'), 'F');
    EXPECT_EQ(filterSendDataKey("Bit Read ANS", 'a'), std::nullopt);
    EXPECT_EQ(filterSendDataKey("Bit Write ANS", 'a'), 'A');
}

TEST(SendDataKeys, OtherAnswerKindsDropNothing) {
    EXPECT_EQ(filterSendDataKey("Bit Write ANS", 'z'), 'z');
    EXPECT_EQ(filterSendDataKey("", '!'), '!');
    EXPECT_EQ(passing("Word Write ANS").size(), 250U); // the six letters that become upper case
}

} // namespace
} // namespace varda
