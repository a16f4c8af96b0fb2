#include "core/pairs/sim_registers.h"

#include "support/raises.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

namespace varda {

void PrintTo(const SimPosition& position, std::ostream* out) {
    *out << position.kind << ' ' << position.number << '.' << position.bit;
}

namespace {

using test::numberRaisedBy;

struct TableRow {
    const char* reg;
    int maxAddress;
    const char* next;
    const char* previous;
};

const std::vector<TableRow> table = {
    {"R", 127, "L", "ERR"},  {"L", 64, "M", "R"},      {"M", 127, "K", "L"},    {"K", 127, "F", "K"},
    {"F", 15, "TC", "K"},    {"TC", 255, "W", "F"},    {"W", 2047, "SV", "TC"}, {"SV", 255, "PV", "W"},
    {"PV", 255, "SR", "SV"}, {"SR", 511, "ERR", "PV"}, {"", 0, "", ""},         {"ERR", 0, "", ""},
    {"r", 0, "", ""},        {"TC ", 0, "", ""},
};

TEST(SimRegisters, EveryRowOfTheTable) {
    for (const TableRow& row : table) {
        SCOPED_TRACE(row.reg);
        EXPECT_EQ(GetSimRegisterMaxAddress(row.reg), row.maxAddress);
        EXPECT_EQ(GetNextSimRegister(row.reg), row.next);
        EXPECT_EQ(GetPrevSimRegister(row.reg), row.previous);
    }
}

struct Step {
    SimPosition from;
    SimPosition to;
};

void expectForward(const std::vector<Step>& steps, Access access) {
    for (const Step& step : steps) {
        EXPECT_EQ(stepForward(step.from, access), step.to) << testing::PrintToString(step.from);
    }
}

TEST(StepForward, BitPointsTakeTheNextBitAndLeaveTheNumberAsItIsWritten) {
    expectForward({{{"R", "0000", "0"}, {"R", "0000", "1"}},
                   {{"TC", "007", "9"}, {"TC", "007", "10"}},
                   {{"K", "00000", "14"}, {"K", "00000", "15"}}},
                  Access::Bit);
}

TEST(StepForward, BehindBitFifteenComesTheNextNumberInFourDigits) {
    expectForward({{{"R", "0000", "15"}, {"R", "0001", "0"}},
                   {{"TC", "009", "15"}, {"TC", "0010", "0"}},
                   {{"K", "00000", "15"}, {"K", "0001", "0"}},
                   {{"L", "0063", "15"}, {"L", "0064", "0"}}},
                  Access::Bit);
}

TEST(StepForward, BehindTheLastNumberComesTheNextRegisterWithFiveZeros) {
    expectForward({{{"F", "0015", "15"}, {"TC", "00000", "0"}},
                   {{"L", "0064", "15"}, {"M", "00000", "0"}},
                   {{"M", "0127", "15"}, {"K", "00000", "0"}},
                   {{"TC", "255", "15"}, {"W", "00000", "0"}}},
                  Access::Bit);
}

TEST(StepForward, BitPointsMayStepToAKindThatTheirListDoesNotOffer) {
    EXPECT_EQ(stepForward({"TC", "255", "15"}, Access::Bit).kind, "W");
}

TEST(StepForward, WordPointsTakeTheNextNumberWhateverTheBitSays) {
    expectForward({{{"W", "0000", ""}, {"W", "0001", "0"}},
                   {{"PV", "254", "nonsense"}, {"PV", "0255", "0"}},
                   {{"PV", "0255", ""}, {"SR", "00000", "0"}}},
                  Access::Word);
}

TEST(StepForward, BehindTheLastRegisterThePageDoesNotStepAtAll) {
    expectForward({{{"SR", "511", ""}, {"SR", "511", ""}}, {{"SR", "3100", "7"}, {"SR", "3100", "7"}}},
                  Access::Word);
    expectForward({{{"SR", "0511", "15"}, {"SR", "0511", "15"}}}, Access::Bit);
}

TEST(StepForward, UnknownRegisterStepsToTheEmptyOne) {
    expectForward({{{"X", "0000", "15"}, {"", "00000", "0"}}}, Access::Bit);
}

TEST(StepForward, FieldThatIsNoNumberIsATypeMismatch) {
    EXPECT_EQ(numberRaisedBy([] { stepForward({"R", "0000", ""}, Access::Bit); }), 13);
    EXPECT_EQ(numberRaisedBy([] { stepForward({"R", "x", "15"}, Access::Bit); }), 13);
    EXPECT_EQ(numberRaisedBy([] { stepForward({"R", "", ""}, Access::Word); }), 13);
    EXPECT_EQ(numberRaisedBy([] { stepForward({"R", "99999", ""}, Access::Word); }), 6);
}

TEST(StepBack, NoPointLeavesThePositionAsItIsWritten) {
    const SimPosition position{"TC", "007", "x"};
    EXPECT_EQ(stepBack(position, 0, Access::Bit), position);
}

TEST(StepBack, SixteenBitsMakeOneNumber) {
    EXPECT_EQ(stepBack({"R", "0006", "12"}, 18, Access::Bit), (SimPosition{"R", "0005", "10"}));
    EXPECT_EQ(stepBack({"R", "0006", "0"}, 1, Access::Bit), (SimPosition{"R", "0005", "15"}));
}

TEST(StepBack, WordPointsLeaveTheBitAsItIs) {
    EXPECT_EQ(stepBack({"W", "0006", ""}, 6, Access::Word), (SimPosition{"W", "0000", ""}));
}

TEST(StepBack, BelowNumberZeroLiesTheEndOfThePreviousRegister) {
    EXPECT_EQ(stepBack({"TC", "00000", "0"}, 1, Access::Bit), (SimPosition{"F", "0015", "15"}));
    EXPECT_EQ(stepBack({"SR", "00000", "0"}, 2, Access::Word), (SimPosition{"PV", "0254", "0"}));
    EXPECT_EQ(stepBack({"M", "00000", "0"}, 1, Access::Word), (SimPosition{"L", "0064", "0"}));
}

TEST(StepBack, RegisterKGoesBackToItsOwnEndForEver) {
    EXPECT_EQ(stepBack({"K", "00000", "0"}, 1, Access::Word), (SimPosition{"K", "0127", "0"}));
    EXPECT_EQ(stepBack({"K", "00000", "0"}, 1 + 10 * 128, Access::Word), (SimPosition{"K", "0127", "0"}));
    EXPECT_EQ(stepBack({"F", "0000", "0"}, 129, Access::Word), (SimPosition{"K", "0127", "0"}));
}

TEST(StepBack, EndsAtTheVeryFirstPoint) {
    EXPECT_EQ(stepBack({"R", "0000", "3"}, 5, Access::Bit), (SimPosition{"R", "0000", "0"}));
    EXPECT_EQ(stepBack({"L", "0000", "0"}, 5000, Access::Bit), (SimPosition{"R", "0000", "0"}));
}

TEST(StepBack, EndsForEveryRegisterHoweverManyPointsThereAre) {
    for (const TableRow& row : table) {
        const SimPosition end = stepBack({row.reg, "0003", "3"}, 200000, Access::Bit);
        EXPECT_LE(std::stoi(end.number), GetSimRegisterMaxAddress(end.kind)) << row.reg;
    }
}

TEST(StepBack, UnknownRegisterStaysAtItsFirstPoint) {
    EXPECT_EQ(stepBack({"ERR", "0001", "1"}, 50, Access::Bit), (SimPosition{"ERR", "0000", "0"}));
    EXPECT_EQ(stepBack({"", "0000", "0"}, 1, Access::Bit), (SimPosition{"", "0000", "0"}));
}

TEST(StepBack, TakesBackAsManyStepsForward) {
    for (const char* const reg : {"R", "L", "M", "F", "TC", "W", "SV", "PV"}) {
        for (const Access access : {Access::Bit, Access::Word}) {
            const SimPosition start{reg, "0003", "0"};
            SimPosition position = start;
            for (std::size_t points = 1; points <= 12; ++points) {
                position = stepForward(position, access);
                EXPECT_EQ(stepBack(position, points, access), start) << reg << " behind " << points;
            }
        }
    }
}

TEST(StepBack, FieldThatIsNoNumberIsATypeMismatch) {
    EXPECT_EQ(numberRaisedBy([] { stepBack({"R", "0001", ""}, 1, Access::Bit); }), 13);
    EXPECT_EQ(numberRaisedBy([] { stepBack({"R", "", "0"}, 1, Access::Word); }), 13);
}

} // namespace
} // namespace varda
