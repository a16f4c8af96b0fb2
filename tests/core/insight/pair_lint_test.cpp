#include "core/insight/pair_lint.h"

#include "core/pairs/packet_table.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/independent_check.h"

#include <gtest/gtest.h>

namespace varda {
namespace {

/// The text of a frame with its check.
std::string framed(const Bytes& frame) { return hexRun(test::checked(frame)); }

class PairLintTest : public testing::Test {
protected:
    /// What is found about one pair.
    static std::vector<std::string> problemsOf(const std::string& request, const std::string& answer) {
        PacketTable table;
        table.addPair(request, answer);
        std::vector<std::string> problems;
        for (const PairFinding& finding : lintPairs(table)) {
            EXPECT_EQ(finding.pair, 0U);
            EXPECT_FALSE(finding.remedy.empty());
            problems.push_back(finding.problem);
        }
        return problems;
    }

    const std::string wordRead = framed({1, 0, 0x23, 3, 0x64, 0x02, 1});
    const std::string wordAnswer = framed({0, 1, 0xA3, 2, 0x34, 0x12});
    const std::string mixedRead = framed({1, 0, 0x25, 2, 0x64, 0x42});
    const std::string mixedAnswer = framed({0, 1, 0xA5, 2, 0x34, 0x12});
};

using Texts = std::vector<std::string>;

TEST_F(PairLintTest, FindsNothingAboutPairsThatAreRight) {
    EXPECT_EQ(problemsOf(wordRead, wordAnswer), Texts());
    EXPECT_EQ(problemsOf(mixedRead + "00", mixedAnswer), Texts());
    EXPECT_TRUE(lintPairs(PacketTable()).empty());
}

TEST_F(PairLintTest, FindsTheSecondOfTwoEqualRequests) {
    PacketTable table;
    table.addPair(wordRead, wordAnswer);
    table.addPair(mixedRead + "00", mixedAnswer);
    table.addPair(wordRead, wordAnswer);
    EXPECT_EQ(lintPairs(table), (std::vector<PairFinding>{
                                    {2, "It is never reached: pair 1 has the same request, and comes first.",
                                     "Remove one of the two."}}));
}

TEST_F(PairLintTest, FindsWhatNothingEverEquals) {
    EXPECT_EQ(problemsOf("01 00", wordAnswer), Texts{"The request is no frame, so nothing ever equals it."});
    EXPECT_EQ(problemsOf("", wordAnswer), Texts{"The request is no frame, so nothing ever equals it."});
    std::string small = wordRead;
    small.replace(small.find("23"), 2, "2b");
    EXPECT_EQ(problemsOf(small, wordAnswer).front(),
              "The request is written in small letters, which what comes in never equals.");
}

TEST_F(PairLintTest, FindsFramesWithAFlaw) {
    std::string damaged = wordRead;
    damaged.back() = damaged.back() == '0' ? '1' : '0';
    const Texts ofRequest = problemsOf(damaged, wordAnswer);
    ASSERT_EQ(ofRequest.size(), 1U);
    EXPECT_TRUE(ofRequest.front().starts_with("The request: ")) << ofRequest.front();
    const Texts ofAnswer = problemsOf(wordRead, wordAnswer.substr(0, wordAnswer.size() - 2));
    ASSERT_EQ(ofAnswer.size(), 1U);
    EXPECT_TRUE(ofAnswer.front().starts_with("The answer: ")) << ofAnswer.front();
    EXPECT_FALSE(problemsOf(framed({1, 0, 0x23, 4, 0x64, 0x02, 1}), wordAnswer).empty()) << "LEN";
}

TEST_F(PairLintTest, NamesTheDigitsThatMakeAFrameSound) {
    PacketTable table;
    table.addPair(wordRead, wordAnswer.substr(0, wordAnswer.size() - 4) + "0000");
    table.addPair(mixedRead + "00", framed({0, 1, 0xA5, 1, 0x34, 0x12}));
    const std::vector<PairFinding> findings = lintPairs(table);
    ASSERT_GE(findings.size(), 2U);
    EXPECT_EQ(findings[0].remedy,
              "Write " + wordAnswer.substr(wordAnswer.size() - 4) + " as its last two bytes.");
    EXPECT_EQ(findings[1].remedy, "Write 02 as its fourth byte, and the check anew.");
}

TEST_F(PairLintTest, FindsAnAnswerOfAnotherKindOrLength) {
    EXPECT_EQ(problemsOf(wordRead, framed({0, 1, 0xA1, 1, 0xFF})),
              Texts{"The answer is of another kind, answer to bit read, than the request, word read."});
    EXPECT_EQ(problemsOf(wordRead, wordRead),
              Texts{"The answer is of another kind, word read, than the request, word read."});
    EXPECT_EQ(problemsOf(wordRead, framed({0, 1, 0xA3, 4, 1, 2, 3, 4})).size(), 1U);
    EXPECT_EQ(problemsOf(wordRead, ""), Texts{"The answer is no frame, so nothing is sent."});
}

TEST_F(PairLintTest, FindsAMixedRequestThatNoPageSends) {
    EXPECT_EQ(problemsOf(mixedRead, mixedAnswer),
              Texts{"The mixed pages of this program send one byte more behind such a request."});
}

TEST_F(PairLintTest, FindsAnAnswerInTheRequestsPlace) {
    EXPECT_EQ(problemsOf(wordAnswer, wordAnswer).front(), "What stands as the request is an answer.");
}

} // namespace
} // namespace varda
