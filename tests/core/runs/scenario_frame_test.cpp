#include "core/runs/scenario_frame.h"
#include "support/raises.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

TEST(ScenarioFrame, NineGroupsWithTheirLastSpaceAreNineBytes) { EXPECT_EQ(groupCount(27), 9); }

TEST(ScenarioFrame, NineGroupsWithoutTheirLastSpaceAreNineBytesToo) { EXPECT_EQ(groupCount(26), 9); }

TEST(ScenarioFrame, EveryLengthOfWholeGroupsIsCounted) {
    for (int groups = 1; groups <= 2000; ++groups) {
        EXPECT_EQ(groupCount(static_cast<std::size_t>(3 * groups)), groups);
        EXPECT_EQ(groupCount(static_cast<std::size_t>(3 * groups - 1)), groups);
    }
}

TEST(ScenarioFrame, EmptyTextHasNoGroup) { EXPECT_EQ(groupCount(0), 0); }

TEST(ScenarioFrame, BytesStandInStepsOfThreePlaces) {
    EXPECT_EQ(scenarioFrame("01 00 21 03 23 0C 10 AB CD "),
              (Bytes{0x01, 0x00, 0x21, 0x03, 0x23, 0x0C, 0x10, 0xAB, 0xCD}));
    EXPECT_EQ(scenarioFrame("01 00 21"), (Bytes{0x01, 0x00, 0x21}));
}

TEST(ScenarioFrame, LowerCaseDigitsAreRead) { EXPECT_EQ(scenarioFrame("ab cd "), (Bytes{0xAB, 0xCD})); }

TEST(ScenarioFrame, OneDigitStationShiftsWhatIsRead) {
    // 26 characters, nine groups: every place holds one digit of a group and a blank
    EXPECT_EQ(scenarioFrame("5 FF 21 03 10 00 08 AB CD "),
              (Bytes{0x05, 0x0F, 0x01, 0x03, 0x00, 0x00, 0x08, 0x0B, 0x0D}));
}

TEST(ScenarioFrame, TextThatIsNoHexadecimalIsAnError) {
    EXPECT_EQ(numberRaisedBy([] { scenarioFrame("01 xx 21 "); }), 13);
    EXPECT_EQ(numberRaisedBy([] { scenarioFrame("0102030405060708"); }), 0); // pairs at places 0, 3, 6 ..
    EXPECT_EQ(numberRaisedBy([] { scenarioFrame("hello"); }), 13);
    EXPECT_EQ(numberRaisedBy([] { HexTextToBytes("01 ", 2); }), 13);
}

TEST(ScenarioFrame, LineOfTenThousandCharactersIsRead) {
    std::string line;
    for (int group = 0; group < 3333; ++group) {
        line += "5A ";
    }
    EXPECT_EQ(scenarioFrame(line), Bytes(3333, 0x5A));
}

TEST(ScenarioAnswerLength, FollowsTheCommandByte) {
    EXPECT_EQ(scenarioAnswerLength({1, 0, 0x21, 3, 0, 0, 16}), 22);
    EXPECT_EQ(scenarioAnswerLength({1, 0, 0x22, 3, 0, 0, 16}), 7);
    EXPECT_EQ(scenarioAnswerLength({1, 0, 0x23, 3, 0, 0, 16}), 38);
    EXPECT_EQ(scenarioAnswerLength({1, 0, 0x24, 3, 0, 0, 16}), 7);
}

TEST(ScenarioAnswerLength, CountOfZeroExpectsAnAnswerWithoutData) {
    EXPECT_EQ(scenarioAnswerLength({1, 0, 0x21, 3, 0, 0, 0}), 6);
    EXPECT_EQ(scenarioAnswerLength({1, 0, 0x23, 3, 0, 0, 0}), 6);
}

TEST(ScenarioAnswerLength, MixedFrameLeavesWhatWasExpectedBefore) {
    EXPECT_FALSE(scenarioAnswerLength({1, 0, 0x25, 0}).has_value());
    EXPECT_FALSE(scenarioAnswerLength({1, 0, 0x26, 0}).has_value());
}

TEST(ScenarioAnswerLength, FrameThatEndsBeforeItsCountIsAnError) {
    EXPECT_EQ(numberRaisedBy([] { scenarioAnswerLength({1, 0}); }), 9);
    EXPECT_EQ(numberRaisedBy([] { scenarioAnswerLength({1, 0, 0x21, 3}); }), 9);
}

} // namespace
} // namespace varda::test
