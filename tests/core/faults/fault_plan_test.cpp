#include "core/faults/fault_plan.h"

#include "core/base/runtime_error.h"
#include "support/raises.h"

#include <gtest/gtest.h>

#include <iostream>
#include <random>
#include <set>

namespace varda::test {
namespace {

std::string roundTrip(const char* text) { return faultText(parseFaults(text)); }

std::string refusal(const char* text) {
    const auto error = raisedBy([text] { parseFaults(text); });
    return error && error->number() == run_time_error::typeMismatch ? error->what() : "";
}

TEST(FaultPlan, ReadsAndPrintsFaults) {
    EXPECT_EQ(roundTrip(""), "");
    EXPECT_EQ(roundTrip("drop@3rd,late=50..200,flip@1%"), "drop@3rd,flip@1%,late=50..200");
    EXPECT_EQ(roundTrip(" Late = 100 , DROP @ 2nd "), "drop@2nd,late=100");
    EXPECT_EQ(roundTrip("hangup@only20"), "hangup@only20");
    EXPECT_EQ(roundTrip("check@0.25%"), "check@0.25%");
    EXPECT_EQ(roundTrip("check@100%"), "check@100%");
    EXPECT_EQ(roundTrip("drop@1st,flip=1"), "drop,flip") << "what is preset is left away";
    EXPECT_EQ(roundTrip("drop@11th,check@21st,cut@112th"), "drop@11th,check@21st,cut@112th");
}

TEST(FaultPlan, EveryRuleHasItsNameAndItsWords) {
    std::set<std::string_view> names;
    for (const FaultRule& rule : faultRules()) {
        EXPECT_EQ(&ruleOf(rule.kind), &rule);
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
        EXPECT_FALSE(rule.help.empty());
        EXPECT_FALSE(rule.done.empty());
        EXPECT_EQ(parseFaults(rule.name), FaultPlan{presetFault(rule.kind)});
        EXPECT_NE(faultHelp().find("  " + std::string(rule.name)), std::string::npos);
    }
    EXPECT_EQ(names.size(), 13U);
}

TEST(FaultPlan, WhatIsNotUnderstoodIsNamedWithTheRemedy) {
    EXPECT_NE(refusal("drop,flop").find("\"flop\" is no fault. There are: hangup, silence, drop"),
              std::string::npos);
    EXPECT_EQ(refusal("late=0"),
              "\"0\" does not go with late: ms, 1..600000, one number or two of them with .. between.");
    EXPECT_NE(refusal("late=200..50").find("\"200..50\" does not go with late"), std::string::npos);
    EXPECT_NE(refusal("late=").find("does not go with late"), std::string::npos);
    EXPECT_NE(refusal("late=50..").find("does not go with late"), std::string::npos);
    EXPECT_EQ(refusal("drop=3"), "drop has no number: leave \"=3\" away.");
    for (const char* const rate :
         {"drop@", "drop@3", "drop@0th", "drop@3th", "drop@101%", "drop@0%", "drop@1.23456%", "drop@%",
          "drop@only", "drop@only0", "drop@-1st", "drop@99999999999th"}) {
        EXPECT_NE(refusal(rate).find("does not say how often"), std::string::npos) << rate;
    }
    EXPECT_EQ(refusal("drop,late,drop"), "drop stands there twice. Leave one of them away.");
    EXPECT_NE(refusal("drop,,late").find("\"\" is no fault"), std::string::npos);
}

PlannedFault drawnFault(FaultKind kind, std::mt19937& random) {
    PlannedFault fault = presetFault(kind);
    const FaultRule& rule = ruleOf(kind);
    if (!rule.parameter.empty() && random() % 2 == 0) {
        const auto drawn = [&] {
            return rule.allowed.low + random() % (rule.allowed.high - rule.allowed.low + 1);
        };
        fault.number.low = static_cast<std::uint32_t>(drawn());
        fault.number.high = static_cast<std::uint32_t>(drawn());
        if (fault.number.low > fault.number.high) {
            std::swap(fault.number.low, fault.number.high);
        }
    }
    const auto rate = static_cast<FaultRate::Kind>(random() % 3);
    fault.rate = {rate, static_cast<std::uint32_t>(1 + random() % FaultRate::million)};
    return fault;
}

TEST(FaultPlan, EveryPlanComesBackAsItWas) {
    constexpr unsigned seed = 16'001;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    for (int round = 0; round < 5000; ++round) {
        FaultPlan plan;
        for (const FaultRule& rule : faultRules()) {
            if (random() % 3 == 0) {
                plan.push_back(drawnFault(rule.kind, random));
            }
        }
        ASSERT_EQ(parseFaults(faultText(plan)), plan) << faultText(plan);
    }
}

TEST(FaultPlan, AnyTextIsReadOrRefused) {
    constexpr unsigned seed = 16'002;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    const std::string letters = "latedropck=@%.,0123rdthonly \xFF-";
    for (int round = 0; round < 20'000; ++round) {
        std::string text;
        for (std::size_t length = random() % 24; text.size() < length;) {
            text += letters[random() % letters.size()];
        }
        const auto error = raisedBy([&text] { parseFaults(text); });
        ASSERT_TRUE(!error || error->number() == run_time_error::typeMismatch) << text;
    }
}

} // namespace
} // namespace varda::test
