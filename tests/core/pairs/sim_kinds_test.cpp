#include "core/pairs/sim_kinds.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

using Texts = std::vector<std::string>;

TEST(SimKinds, ModesAreFourPreparedKindsAndTwoMixedOnes) {
    EXPECT_EQ(simModeTexts(),
              (Texts{"Bit Read", "Word Read", "Bit Write", "Word Write", "Mixed Read", "Mixed Write"}));
}

TEST(SimKinds, AnswerModesBearAns) {
    EXPECT_EQ(simAnswerModeTexts(), (Texts{"Bit Read ANS", "Word Read ANS", "Bit Write ANS", "Word Write ANS",
                                           "Mixed Read ANS", "Mixed Write ANS"}));
}

TEST(SimKinds, StationsAre0To255) {
    const Texts stations = simStationTexts();
    ASSERT_EQ(stations.size(), 256U);
    EXPECT_EQ(stations.front(), "0");
    EXPECT_EQ(stations.back(), "255");
}

TEST(SimKinds, RegistersHaveNoEmptyLastEntry) {
    EXPECT_EQ(simRegisterTexts(Access::Bit), (Texts{"R", "L", "M", "K", "F", "TC"}));
    EXPECT_EQ(simRegisterTexts(Access::Word), (Texts{"R", "L", "M", "K", "F", "TC", "W", "SV", "PV", "SR"}));
}

TEST(SimKinds, KindsAreFoundByTheirTexts) {
    for (const SimKind& kind : simKinds) {
        EXPECT_EQ(findSimKind(kind.mode), &kind);
        EXPECT_EQ(findSimAnswerKind(kind.answerMode), &kind);
    }
    EXPECT_EQ(findSimKind("Mixed Read"), nullptr);
    EXPECT_EQ(findSimAnswerKind("Mixed Read ANS"), nullptr);
}

} // namespace
} // namespace varda::test
