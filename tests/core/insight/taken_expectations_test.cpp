#include "core/insight/taken_expectations.h"

#include "core/files/profile_file.h"
#include "core/insight/expectation.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

using Texts = std::vector<std::string>;

Exchange ended(Outcome outcome, const Bytes& answer = {}) {
    Exchange exchange;
    exchange.outcome = outcome;
    exchange.answer = answer;
    return exchange;
}

TEST(TakenExpectations, TakesBytesAndSilence) {
    TakenExpectations taken(4);
    taken.take(0, ended(Outcome::Answered, {0x00, 0xFF, 0xA3}));
    taken.take(1, ended(Outcome::Silent));
    taken.take(2, ended(Outcome::NotSent));
    taken.take(3, ended(Outcome::WrongLength, {0x0A}));
    EXPECT_EQ(taken.texts(), (Texts{"00 FF A3", "silence", "", "0A"}));
}

TEST(TakenExpectations, WhatDiffersFromRoundToRoundIsAnyByte) {
    TakenExpectations taken(1);
    taken.take(0, ended(Outcome::Answered, {1, 2, 3}));
    taken.take(0, ended(Outcome::Answered, {1, 9, 3}));
    taken.take(0, ended(Outcome::Answered, {1, 2, 4}));
    EXPECT_EQ(taken.texts(), (Texts{"01 .. .."}));
}

TEST(TakenExpectations, NothingIsExpectedOfALineThatAnswersNowAndThen) {
    TakenExpectations taken(2);
    taken.take(0, ended(Outcome::Answered, {1, 2}));
    taken.take(0, ended(Outcome::Overtaken));
    taken.take(1, ended(Outcome::Silent));
    taken.take(1, ended(Outcome::Answered, {1, 2}));
    EXPECT_EQ(taken.texts(), (Texts{"", ""}));
}

TEST(TakenExpectations, WhatWasTakenIsMetByTheSameOnceMore) {
    TakenExpectations taken(2);
    const Exchange answered = ended(Outcome::Answered, {0x00, 0xFF, 0xA4, 0x01, 0x00, 0x12, 0x34});
    taken.take(0, answered);
    taken.take(1, ended(Outcome::Silent));
    ProfileFile file = ProfileFile::parse("[Expect]\nExpect1=01\n[Limit]\nLimit0=100\n");
    storeExpectations(taken.texts(), file);
    const auto wanted = loadExpectations(ProfileFile::parse(file.text()), 2);
    EXPECT_EQ(wanted.at(0)->judge(answered), "");
    EXPECT_EQ(wanted.at(1)->judge(ended(Outcome::Silent)), "");
    EXPECT_NE(wanted.at(1)->judge(answered), "");
    EXPECT_EQ(file.value("Limit", "Limit0", "", 10), "100");
}

TEST(TakenExpectations, OfALineThatWasNotAskedStayAsTheyWere) {
    TakenExpectations taken(2);
    taken.take(0, ended(Outcome::Answered, {1}));
    ProfileFile file = ProfileFile::parse("[Expect]\nExpect0=02\nExpect1=W 0000 = 7\n");
    storeExpectations(taken.texts(), file);
    EXPECT_EQ(file.value("Expect", "Expect0", "", 100), "01");
    EXPECT_EQ(file.value("Expect", "Expect1", "", 100), "W 0000 = 7");
}

} // namespace
} // namespace varda::test
