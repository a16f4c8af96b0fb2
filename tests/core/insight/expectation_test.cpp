#include "core/insight/expectation.h"

#include "core/base/runtime_error.h"
#include "core/files/profile_file.h"
#include "core/protocol/independent_check.h"

#include <gtest/gtest.h>

namespace varda {
namespace {

using test::checked;

using namespace std::chrono_literals;

/// W 0100 and W 0101 are asked for, and are 1234h and 5.
Exchange answered() {
    Exchange exchange;
    exchange.outcome = Outcome::Answered;
    exchange.request = checked({1, 0, 0x23, 3, 0x64, 0x02, 2});
    exchange.answer = checked({0, 1, 0xA3, 4, 0x34, 0x12, 5, 0});
    exchange.expected = 10;
    exchange.received.last = exchange.sent.first + 120ms;
    return exchange;
}

Exchange ended(Outcome outcome) {
    Exchange exchange = answered();
    exchange.outcome = outcome;
    exchange.answer.clear();
    return exchange;
}

std::string judged(const char* wanted, const Exchange& exchange = answered()) {
    return Expectation::parse(wanted).judge(exchange);
}

std::string adviceOn(const char* text) {
    try {
        Expectation::parse(text);
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), run_time_error::typeMismatch);
        return error.advice();
    }
    return "";
}

TEST(ExpectationTest, OfBytesIsMetByEachOfThem) {
    EXPECT_EQ(judged("00 01 A3 04 34 12 05 00 .. .."), "");
    EXPECT_EQ(judged("00 01 A3 04 34 12 06 00 .. .."), "Byte 7 is 05, and 06 was wanted.");
    EXPECT_EQ(judged("00 01 .."), "10 bytes came, and 3 were wanted.");
}

TEST(ExpectationTest, OfBytesLooksAtAnAnswerOfAnotherLengthToo) {
    Exchange shorter = answered();
    shorter.outcome = Outcome::WrongLength;
    shorter.answer = {0, 1, 0xA3};
    EXPECT_EQ(judged("00 01 ..", shorter), "");
    EXPECT_EQ(judged("W 0100 = 1", shorter), "3 bytes came where 10 were awaited.");
}

TEST(ExpectationTest, OfValuesComparesThem) {
    for (const char* const holds : {"W 0100 = 1234h", "W 0100 != 1", "W 0101 > 4", "W 0101 >= 5",
                                    "W 0101 < 6", "W 0101 <= 5", "w100=0x1234; W 0101 = 5"}) {
        EXPECT_EQ(judged(holds), "") << holds;
    }
    for (const char* const fails :
         {"W 0100 = 1", "W 0100 != 1234h", "W 0101 > 5", "W 0101 >= 6", "W 0101 < 5", "W 0101 <= 4"}) {
        EXPECT_NE(judged(fails), "") << fails;
    }
    EXPECT_EQ(judged("W 0101 > 5"), "W 0101 > 5 was wanted, and it is W 0101 = 0005h = 5.");
    EXPECT_EQ(judged("W 0102 = 5"), "W 0102 = 5: the answer does not bring this register.");
}

TEST(ExpectationTest, OfABitTakesOnAndOff) {
    Exchange bit = answered();
    bit.request = checked({1, 0, 0x21, 3, 0xC3, 0x00, 1});
    bit.answer = checked({0, 1, 0xA1, 1, 0xFF});
    EXPECT_EQ(judged("R 0012.3 = ON", bit), "");
    EXPECT_EQ(judged("R 0012.3 = OFF", bit), "R 0012.3 = OFF was wanted, and it is ON.");
}

TEST(ExpectationTest, OfValuesIsNotMetByADamagedAnswer) {
    Exchange damaged = answered();
    damaged.answer.back() ^= 1U;
    EXPECT_EQ(judged("W 0101 = 5", damaged), "The answer has a flaw, so its values mean nothing.");
}

TEST(ExpectationTest, OfSilenceIsMetWhereNothingComes) {
    EXPECT_EQ(judged("silence", ended(Outcome::Silent)), "");
    EXPECT_EQ(judged("silence", ended(Outcome::Overtaken)), "");
    EXPECT_EQ(judged("silence"), "Silence was wanted, and an answer came.");
    EXPECT_EQ(judged("silence", ended(Outcome::WrongLength)), "Silence was wanted, and an answer came.");
    EXPECT_EQ(judged("silence", ended(Outcome::NotSent)), "The request was not sent.");
    EXPECT_EQ(judged("silence", ended(Outcome::HungUp)), "The line went away.");
    EXPECT_EQ(judged("silence", ended(Outcome::NothingToRead)),
              "The port told of bytes, and none were there.");
}

TEST(ExpectationTest, SaysWhyThereIsNoAnswer) {
    EXPECT_EQ(judged("..", ended(Outcome::Silent)), "No answer came.");
    EXPECT_EQ(judged("..", ended(Outcome::NotSent)), "The request was not sent.");
    EXPECT_EQ(judged("..", ended(Outcome::HungUp)), "The line went away.");
    EXPECT_EQ(judged("..", ended(Outcome::NothingToRead)), "The port told of bytes, and none were there.");
    EXPECT_EQ(judged("..", ended(Outcome::Overtaken)), "The next request went out before an answer came.");
}

TEST(ExpectationTest, LimitsTheTime) {
    Expectation wanted = Expectation::parse("W 0101 = 5");
    wanted.setLimit(120ms);
    EXPECT_EQ(wanted.judge(answered()), "");
    wanted.setLimit(119ms);
    EXPECT_EQ(wanted.judge(answered()), "The answer took 120 ms, where 119 ms were allowed.");
}

TEST(ExpectationTest, NamesWhatItDoesNotUnderstand) {
    for (const char* const text :
         {"", "maybe", "0 1", "GG", "W 0100 =", "W 0100 = x", "Q 1 = 1", "R 0.0 = 2", "=", "W 0100 ! 1"}) {
        EXPECT_NE(adviceOn(text), "") << text;
    }
    EXPECT_TRUE(adviceOn("R 0.0 = 2").starts_with("\"R 0.0 = 2\" is no expectation"));
}

TEST(ExpectationTest, AreReadForTheLinesThatHaveOne) {
    const ProfileFile file = ProfileFile::parse(
        "[Expect]\nExpect0=silence\nExpect2=W 0101 = 5\nExpect3=..\n[Limit]\nLimit2=100\n");
    const auto wanted = loadExpectations(file, 3);
    ASSERT_EQ(wanted.size(), 3U);
    ASSERT_TRUE(wanted[0]);
    EXPECT_FALSE(wanted[1]);
    ASSERT_TRUE(wanted[2]);
    EXPECT_EQ(wanted[2]->judge(answered()), "The answer took 120 ms, where 100 ms were allowed.");
    EXPECT_THROW(loadExpectations(ProfileFile::parse("[Expect]\nExpect0=maybe\n"), 1), RuntimeError);
}

} // namespace
} // namespace varda
