#include "core/insight/pair_lint.h"
#include "core/protocol/hex_text.h"
#include "window/bench/bench_fixture.h"
#include "window/bench/finding_model.h"
#include "window/bench/hit_model.h"

namespace varda::test {
namespace {

class PairsPanelTest : public BenchTest {
protected:
    PairsPanelTest() : BenchTest(Pairs) {
        writePairs("good.ini", {read, other}, {answer, answer});
        writePairs("bad.ini", {read, read, other}, {answer, answer, answer + "FF"});
    }

    void writePairs(const std::string& name, const std::vector<std::string>& requests,
                    const std::vector<std::string>& answers) {
        std::string text = "[Information]\nTotal=" + std::to_string(requests.size()) + "\n[Receive]\n";
        for (std::size_t row = 0; row < requests.size(); ++row) {
            text += std::to_string(row) + '=' + requests[row] + '\n';
        }
        text += "[Send]\n";
        for (std::size_t row = 0; row < answers.size(); ++row) {
            text += std::to_string(row) + '=' + answers[row] + '\n';
        }
        writeFile(name, text);
    }
    void load(const char* name) {
        simulate();
        window.click("cmdLoadSimPacket");
        window.chooseFile(name);
        settle();
    }

    static constexpr const char* hits = "hitTable";
    static constexpr const char* found = "findingTable";
    const Bytes readBytes = checked({0xFF, 0xFF, 0x23, 0x03, 0x00, 0x02, 0x01});
    const std::string read = hexRun(readBytes);
    const std::string other = hexRun(checked({0xFF, 0xFF, 0x23, 0x03, 0x01, 0x02, 0x01}));
    const std::string answer = hexRun(checked({0xFF, 0xFF, 0xA3, 0x02, 0x34, 0x12}));
};

TEST_F(PairsPanelTest, HitsOfEachPairAreCounted) {
    load("good.ini");
    ASSERT_EQ(rows(hits), 2);
    EXPECT_EQ(cell(hits, 0, HitModel::Hits), "0");
    EXPECT_EQ(cell(hits, 0, HitModel::Words), "word read, W 0000");
    EXPECT_EQ(cell(hits, 0, HitModel::Request), read);
    EXPECT_EQ(cell(hits, 0, HitModel::Answer), answer);
    ask(readBytes);
    ask(readBytes);
    ask({1, 2, 3});
    settle();
    EXPECT_EQ(cell(hits, 0, HitModel::Hits), "2");
    EXPECT_EQ(cell(hits, 1, HitModel::Hits), "0");
    press("clearHits");
    EXPECT_EQ(cell(hits, 0, HitModel::Hits), "0");
}

TEST_F(PairsPanelTest, HitsGoWithTheirPair) {
    load("good.ini");
    ask(checked({0xFF, 0xFF, 0x23, 0x03, 0x01, 0x02, 0x01}));
    window.clickLine("lstSimReceive", 0);
    window.click("cmdSimDelete");
    settle();
    ASSERT_EQ(rows(hits), 1);
    EXPECT_EQ(cell(hits, 0, HitModel::Hits), "1");
}

TEST_F(PairsPanelTest, WhatIsWrongWithThePairsIsToldWithWhatHelps) {
    EXPECT_FALSE(find("checkPairs")->isEnabled());
    load("bad.ini");
    press("checkPairs");
    ASSERT_GE(rows(found), 2);
    EXPECT_EQ(cell(found, 0, FindingModel::Pair), "2");
    for (int row = 0; row < rows(found); ++row) {
        EXPECT_NE(cell(found, row, FindingModel::Problem), "");
        EXPECT_NE(cell(found, row, FindingModel::Remedy), "");
    }
    EXPECT_EQ(label("pairsState"),
              std::to_string(rows(found)) + " findings in the pairs that are loaded, 3 pairs");
}

TEST_F(PairsPanelTest, ADoubleClickGoesToThePair) {
    load("bad.ini");
    press("checkPairs");
    chooseRow(found, 0);
    emit find<QTableView>(found)->doubleClicked(model(found)->index(0, 0));
    EXPECT_EQ(window.selectedLine("lstSimReceive"), 1);
    EXPECT_EQ(find<QTableView>(hits)->currentIndex().row(), 1);
    chooseRow(found, rows(found) - 1);
    focus(found);
    QTest::keyClick(find(found), Qt::Key_Return);
    EXPECT_EQ(window.selectedLine("lstSimReceive"), 2);
}

TEST_F(PairsPanelTest, FindingsOfPairsThatHaveChangedAreGone) {
    load("bad.ini");
    press("checkPairs");
    ASSERT_GE(rows(found), 2);
    window.clickLine("lstSimReceive", 0);
    window.click("cmdSimDelete");
    chooseRow(found, 0);
    emit find<QTableView>(found)->doubleClicked(model(found)->index(0, 0)); // before anything is shown anew
    EXPECT_NE(window.selectedLine("lstSimReceive"), 1) << "another pair's place by now";
    EXPECT_EQ(rows(found), 0);
    EXPECT_EQ(label("pairsState"), "The pairs have changed: check them again.");
    press("checkPairs");
    const int again = rows(found);
    EXPECT_GE(again, 1);
    settle();
    EXPECT_EQ(rows(found), again);
}

TEST_F(PairsPanelTest, AFileIsCheckedWithoutBeingLoaded) {
    press("checkPairFile");
    chooseFile("bad.ini");
    EXPECT_GE(rows(found), 2);
    EXPECT_NE(label("pairsState").find("in bad.ini, 3 pairs"), std::string::npos);
    EXPECT_EQ(window.entryCount("lstSimReceive"), 0);
    chooseRow(found, 0);
    emit find<QTableView>(found)->doubleClicked(model(found)->index(0, 0));
    EXPECT_TRUE(window.find("pageRead")->isVisible()) << "there is nothing to go to";
    press("checkPairFile");
    chooseFile("good.ini");
    EXPECT_EQ(rows(found), 0) << cell(found, 0, FindingModel::Problem);
    EXPECT_EQ(label("pairsState"), "Nothing wrong in good.ini, 2 pairs");
}

TEST_F(PairsPanelTest, AFileWithoutPairsIsTold) {
    writeFile("none.ini", "nothing");
    press("checkPairFile");
    chooseFile("none.ini");
    ASSERT_NE(box(), nullptr);
    EXPECT_NE(box()->text().toStdString().find("none.ini\" holds no prepared pairs."), std::string::npos);
}

} // namespace
} // namespace varda::test
