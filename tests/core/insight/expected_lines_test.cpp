#include "core/insight/expected_lines.h"

#include "core/files/profile_file.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

Exchange became(Outcome outcome, const Bytes& answer = {}) {
    Exchange exchange;
    exchange.mode = Mode::Scenario;
    exchange.outcome = outcome;
    exchange.answer = answer;
    return exchange;
}

/// Three lines, of which something is wanted of the first two.
class ExpectedLinesTest : public testing::Test {
protected:
    ExpectedLinesTest() {
        expected.insert(0, 3);
        expected.setText(0, {"AA ..", ""});
        expected.setText(1, {"silence", ""});
    }
    void send(std::size_t line) { expected.told(became(Outcome::Sent), line); }
    void end(const Exchange& exchange) { expected.told(exchange, std::nullopt); }
    const ExpectedLines::Line& line(std::size_t index) const { return expected.lines()[index]; }

    ExpectedLines expected;
};

TEST_F(ExpectedLinesTest, EachLineIsJudgedByWhatBecomesOfIt) {
    send(0);
    EXPECT_FALSE(line(0).isJudged);
    end(became(Outcome::Answered, {0xAA, 0x01}));
    send(1);
    end(became(Outcome::Answered, {0xAA, 0x01}));
    send(2);
    end(became(Outcome::Answered, {0xAA, 0x01}));
    EXPECT_TRUE(line(0).isJudged);
    EXPECT_EQ(line(0).why, "");
    EXPECT_EQ(line(1).why, "Silence was wanted, and an answer came.");
    EXPECT_FALSE(line(2).isJudged) << "nothing is wanted of it";
    EXPECT_EQ(expected.right(), 1U);
    EXPECT_EQ(expected.wrong(), 1U);
}

TEST_F(ExpectedLinesTest, KnowsWhichLineIsToStaySilent) {
    EXPECT_FALSE(expected.isSilenceExpected(0));
    EXPECT_TRUE(expected.isSilenceExpected(1));
    EXPECT_FALSE(expected.isSilenceExpected(2));
    EXPECT_FALSE(expected.isSilenceExpected(3)) << "there is none";
    expected.setText(1, {"silence", "soon"});
    EXPECT_FALSE(expected.isSilenceExpected(1)) << "not understood";
}

TEST_F(ExpectedLinesTest, ALineIsOvertakenBeforeTheNextIsSent) {
    send(0);
    expected.told(became(Outcome::Overtaken), 1);
    send(1);
    EXPECT_EQ(line(0).why, "The next request went out before an answer came.");
    EXPECT_FALSE(line(1).isJudged);
}

TEST_F(ExpectedLinesTest, ALineThatDoesNotGoOutIsWrong) {
    expected.told(became(Outcome::NotSent), 0);
    EXPECT_EQ(line(0).why, "The request was not sent.");
}

TEST_F(ExpectedLinesTest, FurtherBurstsAndOtherRequestsJudgeNothing) {
    send(0);
    end(became(Outcome::Answered, {0xAA, 0x01}));
    end(became(Outcome::WrongLength, {0x01}));
    expected.told(became(Outcome::Sent), std::nullopt);
    end(became(Outcome::Answered, {0x02}));
    EXPECT_EQ(line(0).right, 1U);
    EXPECT_EQ(line(0).wrong, 0U);
}

TEST_F(ExpectedLinesTest, RoundsAreCountedAndARunBeginsAnew) {
    for (const std::uint8_t first : Bytes{0xAA, 0xBB, 0xAA}) {
        send(0);
        end(became(Outcome::Answered, {first, 0x01}));
    }
    EXPECT_EQ(line(0).right, 2U);
    EXPECT_EQ(line(0).wrong, 1U);
    EXPECT_EQ(line(0).why, "") << "the last one";
    expected.begin();
    EXPECT_FALSE(line(0).isJudged);
    EXPECT_EQ(line(0).right + line(0).wrong, 0U);
    EXPECT_EQ(line(0).text.wanted, "AA ..");
}

TEST_F(ExpectedLinesTest, WhatIsNotUnderstoodSaysSoAndWantsNothing) {
    expected.setText(2, {"GG", ""});
    EXPECT_NE(line(2).flaw.find("\"GG\" is no expectation"), std::string::npos);
    EXPECT_FALSE(line(2).wanted);
    expected.setText(2, {"AA", "soon"});
    EXPECT_NE(line(2).flaw, "");
    expected.setText(2, {"AA", "100"});
    EXPECT_EQ(line(2).flaw, "");
}

TEST_F(ExpectedLinesTest, WhatCameIsTakenAndLimitsStay) {
    expected.setText(0, {"AA ..", "250"});
    for (const std::uint8_t last : Bytes{0x01, 0x02}) {
        send(0);
        end(became(Outcome::Answered, {0xBB, last}));
    }
    send(2);
    end(became(Outcome::Silent));
    EXPECT_EQ(expected.takeFromRun(), 2U);
    EXPECT_EQ(line(0).text, (ExpectationText{"BB ..", "250"}));
    EXPECT_EQ(line(1).text.wanted, "silence") << "was not asked";
    EXPECT_EQ(line(2).text.wanted, "silence");
}

TEST_F(ExpectedLinesTest, LinesThatStayKeepWhatIsWantedOfThem) {
    expected.insert(0, 1);
    EXPECT_EQ(line(1).text.wanted, "AA ..");
    expected.remove(1, 1);
    EXPECT_EQ(line(1).text.wanted, "silence");
    expected.clear();
    EXPECT_TRUE(expected.lines().empty());
    send(0);
    end(became(Outcome::Answered));
}

TEST_F(ExpectedLinesTest, AFileHasThemAndKeepsWhatElseStandsThere) {
    ProfileFile file = ProfileFile::parse("[Expect]\nExpect0=old\nExpect7=of another\n[Limit]\nLimit0=20\n");
    expected.setText(1, {"silence", "300"});
    expected.store(file);
    EXPECT_EQ(file.value("Expect", "Expect7", "", 100), "of another");
    EXPECT_EQ(file.text().find("Expect2"), std::string::npos) << "nothing is wanted of it";
    ExpectedLines other;
    other.insert(0, 3);
    other.load(file);
    for (const std::size_t index : {0U, 1U, 2U}) {
        EXPECT_EQ(other.lines()[index].text, line(index).text) << index;
    }
}

} // namespace
} // namespace varda::test
