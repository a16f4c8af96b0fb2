#include "core/runs/pair_hits.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

class PairHitsTest : public testing::Test {
protected:
    PairHitsTest() {
        table.setWatcher({.after = [this](const PacketTableChange& change) { hits.follow(change); }});
        for (const char* const request : {"01", "02", "03"}) {
            table.addPair(request, "AA");
        }
    }
    bool answer(std::size_t row, Outcome outcome = Outcome::AnsweredByPair) {
        Exchange exchange;
        exchange.outcome = outcome;
        exchange.pair = row;
        exchange.answer = {0xAA};
        return hits.note(exchange);
    }

    PairHits hits;
    PacketTable table;
};

TEST_F(PairHitsTest, CountsWhatAPairAnswered) {
    EXPECT_TRUE(answer(2));
    EXPECT_TRUE(answer(2));
    EXPECT_TRUE(answer(0));
    EXPECT_FALSE(answer(1, Outcome::NotSent));
    EXPECT_FALSE(hits.note({}));
    Exchange refused;
    refused.outcome = Outcome::AnsweredByPair;
    refused.pair = 1;
    EXPECT_FALSE(hits.note(refused)) << "the port did not take the answer";
    EXPECT_EQ(hits.of(0), 1U);
    EXPECT_EQ(hits.of(1), 0U);
    EXPECT_EQ(hits.of(2), 2U);
    EXPECT_EQ(hits.of(99), 0U);
}

TEST_F(PairHitsTest, GoesAlongWithTheRows) {
    answer(2);
    answer(0);
    table.removeRequest(1);
    EXPECT_EQ(hits.of(1), 1U) << "the third row is the second now";
    table.removeAnswer(1);
    EXPECT_EQ(hits.of(1), 1U) << "an answer alone moves nothing";
    table.addPair("04", "BB");
    EXPECT_EQ(hits.of(2), 0U);
    table.clear();
    EXPECT_EQ(hits.of(0), 0U);
}

} // namespace
} // namespace varda::test
