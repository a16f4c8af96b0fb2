#include "cli/operands.h"

#include "cli/failure.h"

#include <gtest/gtest.h>

namespace varda {

using namespace cli;

namespace {

constexpr int wordBase = 512;

const Operand hundredth = {.first = {Access::Word, wordBase + 100}, .count = std::nullopt, .values = {}};

std::string refusalOf(const std::vector<std::string>& words) {
    try {
        readOperands(words);
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), ExitCode::Usage);
        return failure.what();
    }
    return "";
}

TEST(Operands, AreReadFromOneWordOfTheCommandLineOrFromSeveral) {
    const std::vector<Operand> wanted = {hundredth};
    EXPECT_EQ(readOperands({"W 0100"}), wanted);
    EXPECT_EQ(readOperands({"W", "0100"}), wanted);
    EXPECT_EQ(readOperands({"w100"}), wanted);
}

TEST(Operands, HaveACountBehindThem) {
    Operand four = hundredth;
    four.count = 4;
    const Operand bit = {.first = {Access::Bit, 12 * 16 + 3}, .count = std::nullopt, .values = {}};
    EXPECT_EQ(readOperands({"W 0100 4 R 0012.3"}), (std::vector<Operand>{four, bit}));
    EXPECT_EQ(readOperands({"W", "0100", "4", "R0012.3"}), (std::vector<Operand>{four, bit}));
}

TEST(Operands, HaveValuesBehindAnEqualsSign) {
    Operand words = hundredth;
    words.values = {0x1A2B, 7, 65535};
    EXPECT_EQ(readOperands({"W 0100=1A2Bh,7,0xFFFF"}), std::vector<Operand>{words});
    EXPECT_EQ(readOperands({"W", "0100", "=", "1A2Bh,7,0xFFFF"}), std::vector<Operand>{words});
    const Operand bits = {.first = {Access::Bit, 192 * 16}, .count = std::nullopt, .values = {1, 0, 1, 0}};
    EXPECT_EQ(readOperands({"M 0000.0=ON,off,1,0"}), std::vector<Operand>{bits});
}

TEST(Operands, AreRefusedByNameAndRemedy) {
    EXPECT_NE(refusalOf({""}).find("No register is named."), std::string::npos);
    EXPECT_NE(refusalOf({" ", ""}).find("No register is named."), std::string::npos);
    EXPECT_NE(refusalOf({"Q 5"}).find("\"Q 5\" is no register."), std::string::npos);
    EXPECT_NE(refusalOf({"W"}).find("\"W\" is no register."), std::string::npos);
    EXPECT_NE(refusalOf({"W 99999"}).find("\"W 99999\" is no register."), std::string::npos);
    EXPECT_NE(refusalOf({"R 0.16"}).find("\"R 0.16\" is no register."), std::string::npos);
    EXPECT_NE(refusalOf({"W 0=1A2B"}).find("\"1A2B\" is no word."), std::string::npos);
    EXPECT_NE(refusalOf({"W 0=65536"}).find("\"65536\" is no word."), std::string::npos);
    EXPECT_EQ(refusalOf({"R 0.1=2"}), "\"2\" is no bit's value. Write ON or OFF.");
    EXPECT_EQ(refusalOf({"W 0="}), "A value is missing behind the \"=\".");
    EXPECT_EQ(refusalOf({"W 0=7,"}), "A value is missing behind the \",\" at the end of \"7,\".");
    EXPECT_EQ(refusalOf({"W 0 0"}), "\"0\" is no count: one or more.");
    EXPECT_EQ(refusalOf({"W 0 99999999999"}), "\"99999999999\" is no count: one or more.");
}

} // namespace
} // namespace varda
