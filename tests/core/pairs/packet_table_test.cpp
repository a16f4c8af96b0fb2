#include "core/pairs/packet_table.h"

#include "support/raises.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <random>

namespace varda {

void PrintTo(const PacketTableChange& change, std::ostream* out) {
    *out << "list " << static_cast<int>(change.list) << " kind " << static_cast<int>(change.kind) << " row "
         << change.row;
}

namespace {

using test::numberRaisedBy;
using Texts = std::vector<std::string>;
using List = PacketTableChange::List;
using Kind = PacketTableChange::Kind;

PacketTable tableOf(const Texts& requests, const Texts& answers) {
    PacketTable table;
    table.replace(requests, answers);
    return table;
}

std::optional<std::size_t> row(std::size_t index) { return index; }

std::optional<std::size_t> linearScan(const Texts& requests, const std::string& request) {
    const auto found = std::find(requests.begin(), requests.end(), request);
    return found == requests.end() ? std::nullopt : row(static_cast<std::size_t>(found - requests.begin()));
}

TEST(PacketTableTest, PairsStandAtTheSameRow) {
    PacketTable table;
    table.addPair("AA", "01");
    table.addPair("BB", "02");
    EXPECT_EQ(table.requests(), (Texts{"AA", "BB"}));
    EXPECT_EQ(table.answers(), (Texts{"01", "02"}));
    EXPECT_EQ(table.find("BB"), row(1));
}

TEST(PacketTableTest, EmptyTableFindsNothing) {
    const PacketTable table;
    EXPECT_EQ(table.find("AA"), std::nullopt);
    EXPECT_EQ(table.find(""), std::nullopt);
}

TEST(PacketTableTest, OnlyTheWholeTextInItsOwnCaseIsFound) {
    const PacketTable table = tableOf({"AABB"}, {"01"});
    EXPECT_EQ(table.find("AABB"), row(0));
    for (const char* const other : {"aabb", "AAB", "AABBC", "AABB00", "", " AABB"}) {
        EXPECT_EQ(table.find(other), std::nullopt) << other;
    }
}

TEST(PacketTableTest, LowestRowOfEqualRequestsIsFound) {
    PacketTable table = tableOf({"AA", "BB", "BB"}, {"1", "2", "3"});
    table.addPair("BB", "4");
    EXPECT_EQ(table.find("BB"), row(1));
}

TEST(PacketTableTest, LowestRowIsFoundAfterEqualRequestsBeforeItWentAway) {
    PacketTable table = tableOf({"AA", "BB", "CC", "BB", "BB"}, {});
    table.removeRequest(1);
    EXPECT_EQ(table.find("BB"), row(2));
    table.removeRequest(0);
    EXPECT_EQ(table.find("BB"), row(1));
    table.removeRequest(2);
    EXPECT_EQ(table.find("BB"), row(1));
    table.removeRequest(1);
    EXPECT_EQ(table.find("BB"), std::nullopt);
    table.addPair("BB", "");
    EXPECT_EQ(table.find("BB"), row(1));
}

TEST(PacketTableTest, ListsShortenSeparately) {
    PacketTable table = tableOf({"AA", "BB"}, {"1", "2"});
    table.removeRequest(0);
    EXPECT_EQ(table.requests(), Texts{"BB"});
    EXPECT_EQ(table.answers(), (Texts{"1", "2"}));
    table.removeAnswer(1);
    EXPECT_EQ(table.answers(), Texts{"1"});
}

TEST(PacketTableTest, RowThatDoesNotExistIsOutOfRangeAndChangesNothing) {
    PacketTable table = tableOf({"AA", "BB"}, {"1"});
    EXPECT_EQ(numberRaisedBy([&] { table.removeRequest(2); }), 9);
    EXPECT_EQ(numberRaisedBy([&] { table.removeAnswer(1); }), 9);
    EXPECT_EQ(table.requests().size(), 2U);
    EXPECT_EQ(table.answers().size(), 1U);
}

TEST(PacketTableTest, ReplacingForgetsTheOldRequests) {
    PacketTable table = tableOf({"AA"}, {"1"});
    table.replace({"BB", "AA"}, {"2"});
    EXPECT_EQ(table.find("AA"), row(1));
    table.clear();
    EXPECT_EQ(table.find("AA"), std::nullopt);
    EXPECT_TRUE(table.requests().empty());
    EXPECT_TRUE(table.answers().empty());
}

struct Told {
    PacketTableChange change;
    std::size_t requestsBefore;
    std::size_t answersBefore;
    std::size_t requestsAfter;
    std::size_t answersAfter;
};

std::vector<Told> toldBy(PacketTable& table, const std::function<void()>& edit) {
    std::vector<Told> told;
    PacketTableWatcher watcher;
    watcher.before = [&](const PacketTableChange& change) {
        told.push_back({change, table.requests().size(), table.answers().size(), 0, 0});
    };
    watcher.after = [&](const PacketTableChange& change) {
        EXPECT_EQ(told.back().change, change);
        told.back().requestsAfter = table.requests().size();
        told.back().answersAfter = table.answers().size();
    };
    table.setWatcher(watcher);
    edit();
    table.setWatcher({});
    return told;
}

TEST(PacketTableTest, WatcherIsToldAroundEveryEditOfEachList) {
    PacketTable table = tableOf({"AA"}, {});
    const auto added = toldBy(table, [&] { table.addPair("BB", "2"); });
    ASSERT_EQ(added.size(), 2U);
    EXPECT_EQ(added[0].change, (PacketTableChange{List::Requests, Kind::Added, 1}));
    EXPECT_EQ(added[0].requestsBefore, 1U);
    EXPECT_EQ(added[0].requestsAfter, 2U);
    EXPECT_EQ(added[1].change, (PacketTableChange{List::Answers, Kind::Added, 0}));
    EXPECT_EQ(added[1].answersBefore, 0U);
    EXPECT_EQ(added[1].answersAfter, 1U);

    const auto removed = toldBy(table, [&] { table.removeRequest(0); });
    ASSERT_EQ(removed.size(), 1U);
    EXPECT_EQ(removed[0].change, (PacketTableChange{List::Requests, Kind::Removed, 0}));
    EXPECT_EQ(removed[0].requestsBefore, 2U);
    EXPECT_EQ(removed[0].requestsAfter, 1U);

    const auto removedAnswer = toldBy(table, [&] { table.removeAnswer(0); });
    ASSERT_EQ(removedAnswer.size(), 1U);
    EXPECT_EQ(removedAnswer[0].change, (PacketTableChange{List::Answers, Kind::Removed, 0}));

    const auto cleared = toldBy(table, [&] { table.clear(); });
    ASSERT_EQ(cleared.size(), 2U);
    EXPECT_EQ(cleared[0].change, (PacketTableChange{List::Requests, Kind::Reset}));
    EXPECT_EQ(cleared[1].change, (PacketTableChange{List::Answers, Kind::Reset}));
}

TEST(PacketTableTest, WatcherIsNotToldOfARefusedEdit) {
    PacketTable table;
    EXPECT_TRUE(toldBy(table, [&] { numberRaisedBy([&] { table.removeRequest(0); }); }).empty());
}

/// Edits a table and plain lists alike; few different requests, so that equal ones are common.
class RandomEdits {
public:
    explicit RandomEdits(unsigned seed) : random_(seed) {}

    void editOnce() {
        const unsigned choice = below(100);
        if (choice < 55) {
            const std::string request = anyRequest();
            table.addPair(request, "answer");
            requests.push_back(request);
        } else if (choice < 99) {
            removeOne();
        } else {
            requests = Texts(below(20), anyRequest());
            table.replace(requests, {});
        }
    }
    std::string anyRequest() { return std::to_string(below(30)); }

    PacketTable table;
    Texts requests;

private:
    void removeOne() {
        if (!requests.empty()) {
            const std::size_t index = below(static_cast<unsigned>(requests.size()));
            table.removeRequest(index);
            requests.erase(requests.begin() + static_cast<std::ptrdiff_t>(index));
        }
    }
    unsigned below(unsigned limit) { return std::uniform_int_distribution<unsigned>(0, limit - 1)(random_); }

    std::mt19937 random_;
};

TEST(PacketTableTest, FindsWhatALinearScanFindsAfterRandomEdits) {
    const unsigned seed = std::random_device{}();
    std::cout << "seed " << seed << '\n';
    RandomEdits edits(seed);
    for (int edit = 0; edit < 20000; ++edit) {
        edits.editOnce();
        const std::string request = edits.anyRequest();
        ASSERT_EQ(edits.table.find(request), linearScan(edits.requests, request)) << "edit " << edit;
    }
    EXPECT_EQ(edits.table.requests(), edits.requests);
}

} // namespace
} // namespace varda
