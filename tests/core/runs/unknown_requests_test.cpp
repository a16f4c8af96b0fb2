#include "core/runs/unknown_requests.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

Exchange unknown(const Bytes& request, Outcome outcome = Outcome::Unknown) {
    Exchange exchange;
    exchange.request = request;
    exchange.outcome = outcome;
    return exchange;
}

Exchange answered(const Bytes& request) {
    Exchange exchange = unknown(request, Outcome::AnsweredFromMemory);
    exchange.answer = {0xAA};
    return exchange;
}

TEST(UnknownRequests, CountsThoseThatNoPairAnswers) {
    UnknownRequests requests;
    EXPECT_TRUE(requests.note(unknown({1})));
    EXPECT_TRUE(requests.note(answered({2})));
    EXPECT_TRUE(requests.note(unknown({1})));
    EXPECT_FALSE(requests.note(unknown({3}, Outcome::AnsweredByPair)));
    EXPECT_FALSE(requests.note(unknown({3}, Outcome::Answered)));
    EXPECT_EQ(requests.requests(), (std::vector<UnknownRequest>{{{1}, 2, false}, {{2}, 1, true}}));
}

TEST(UnknownRequests, TellsWhetherTheLastOneWasAnswered) {
    UnknownRequests requests;
    requests.note(unknown({1}));
    requests.note(answered({1}));
    EXPECT_TRUE(requests.requests().front().isAnswered);
    requests.note(unknown({1}));
    EXPECT_FALSE(requests.requests().front().isAnswered);
}

TEST(UnknownRequests, CountsTheAnswersThatThePortDidNotTake) {
    UnknownRequests requests;
    requests.note(unknown({1}, Outcome::AnsweredFromMemory));
    requests.note(unknown({1}, Outcome::AnsweredFromMemory));
    EXPECT_EQ(requests.requests(), (std::vector<UnknownRequest>{{{1}, 2, false, 2}}));
    requests.note(answered({1}));
    requests.note(unknown({1}));
    EXPECT_EQ(requests.requests(), (std::vector<UnknownRequest>{{{1}, 4, false, 2}}));
}

TEST(UnknownRequests, ForgetsOne) {
    UnknownRequests requests;
    for (std::uint8_t byte = 0; byte < 4; ++byte) {
        requests.note(unknown({byte}));
    }
    requests.forget(Bytes{1});
    requests.forget(Bytes{9});
    requests.note(unknown({3}));
    requests.note(unknown({1}));
    EXPECT_EQ(requests.requests(), (std::vector<UnknownRequest>{
                                       {{0}, 1, false}, {{2}, 1, false}, {{3}, 2, false}, {{1}, 1, false}}));
    requests.clear();
    EXPECT_TRUE(requests.requests().empty());
    requests.note(unknown({3}));
    EXPECT_EQ(requests.requests().front().count, 1U);
}

TEST(UnknownRequests, KeepsNoMoreThanItMay) {
    UnknownRequests requests;
    for (std::size_t number = 0; number < UnknownRequests::mostKept + 5; ++number) {
        requests.note(unknown({static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(number / 256)}));
    }
    EXPECT_EQ(requests.requests().size(), UnknownRequests::mostKept);
    EXPECT_EQ(requests.others(), 5U);
    requests.note(unknown({0, 0}));
    EXPECT_EQ(requests.requests().front().count, 2U) << "those that are kept are counted on";
}

} // namespace
} // namespace varda::test
