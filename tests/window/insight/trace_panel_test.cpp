#include "window/insight/insight_fixture.h"

#include "support/window_test.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QMenu>
#include <QScrollBar>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace varda::test {
namespace {

class TracePanelTest : public InsightTest {
protected:
    /// Three exchanges of one word each: a good answer, one of the wrong length, none.
    void fill() {
        openPort();
        chooseWord(57);
        exchange(wordOne);
        chooseWord(100);
        exchange({0xFF, 0xFF, 0xA3});
        settle();
    }
    std::string fileText(const std::string& name) {
        std::ifstream file(window.folder().file(name), std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
    QScrollBar* bar() { return find<QTableView>("traceTable")->verticalScrollBar(); }
    bool isTicked(const char* box) { return find<QCheckBox>(box)->isChecked(); }
};

TEST_F(TracePanelTest, EveryBurstIsALineInWords) {
    fill();
    EXPECT_EQ(column(Way), (std::vector<std::string>{"event", "sent", "received", "sent", "received"}));
    EXPECT_EQ(column(Kind), (std::vector<std::string>{"port opened", "word read", "answer to word read",
                                                      "word read", "answer to word read"}));
    EXPECT_EQ(cell(1, Station), "255 to 255");
    EXPECT_EQ(cell(1, Registers), "W 0057");
    EXPECT_EQ(cell(2, Registers), "W 0057");
    EXPECT_EQ(cell(2, Hex).substr(0, 17), "FF FF A3 02 34 12");
    EXPECT_EQ(cell(2, Verdict), "Taken: it has the 8 bytes that were awaited.");
    EXPECT_EQ(cell(4, Verdict).substr(0, 10), "! Dropped:");
    EXPECT_EQ(cell(1, Time).size(), std::string("00:00:00.000").size());
}

TEST_F(TracePanelTest, FilterWorksAsOneTypesAndKeepsTheChosenLine) {
    fill();
    choose(2);
    type("traceFilter", "rec");
    EXPECT_EQ(rows(), 0) << "a kind that no line has";
    type("traceFilter", "received");
    EXPECT_EQ(column(Way), (std::vector<std::string>{"received", "received"}));
    EXPECT_EQ(label("traceState"), "2 of 5 lines");
    type("traceFilter", "wrong");
    EXPECT_EQ(rows(), 2) << "a request whose answer was dropped, and that answer";
    type("traceFilter", "W 0100");
    EXPECT_EQ(rows(), 1);
    type("traceFilter", "hex a3 02");
    EXPECT_EQ(cell(0, Registers), "W 0057");
    type("traceFilter", "");
    EXPECT_EQ(rows(), 5);
}

TEST_F(TracePanelTest, NewLinesPassTheFilterOrNot) {
    fill();
    type("traceFilter", "sent");
    EXPECT_EQ(rows(), 2);
    exchange(wordOne);
    settle();
    EXPECT_EQ(rows(), 3);
}

TEST_F(TracePanelTest, FindGoesOnAndRoundInBothDirections) {
    fill();
    type("traceFind", "received");
    QTest::keyClick(trace(), Qt::Key_F3);
    auto* const table = find<QTableView>("traceTable");
    EXPECT_EQ(table->currentIndex().row(), 2);
    QTest::keyClick(find("traceFind"), Qt::Key_F3);
    EXPECT_EQ(table->currentIndex().row(), 4);
    QTest::keyClick(find("traceFind"), Qt::Key_F3);
    EXPECT_EQ(table->currentIndex().row(), 2);
    EXPECT_NE(label("traceState").find("Went on from the first line"), std::string::npos);
    QTest::keyClick(find("traceFind"), Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(table->currentIndex().row(), 4);
    EXPECT_NE(label("traceState").find("Went on from the last line"), std::string::npos);
    type("traceFind", "bit write");
    press("findNext");
    EXPECT_NE(label("traceState").find("No such line"), std::string::npos);
    EXPECT_EQ(table->currentIndex().row(), 4);
}

TEST_F(TracePanelTest, MarksStayWithTheirLinesAndCanBeFound) {
    fill();
    choose(1);
    press("markLines");
    EXPECT_EQ(cell(1, Time).substr(0, 4), "\u25CF ");
    type("traceFilter", "marked");
    EXPECT_EQ(rows(), 1);
    type("traceFilter", "");
    choose(1);
    run("markLine");
    EXPECT_NE(cell(1, Time).substr(0, 4), "\u25CF ");
    type("traceFilter", "marked");
    EXPECT_EQ(rows(), 0);
}

TEST_F(TracePanelTest, PausedItShowsNothingNewAndMissesNothing) {
    fill();
    find<QCheckBox>("pauseTrace")->click();
    EXPECT_NE(label("traceState").find("paused"), std::string::npos);
    exchange(wordOne);
    settle();
    EXPECT_EQ(rows(), 5);
    find<QCheckBox>("pauseTrace")->click();
    EXPECT_EQ(rows(), 7);
}

TEST_F(TracePanelTest, FollowsTheLatestLineUntilOneIsChosen) {
    openPort();
    chooseWord(57);
    for (int count = 0; count < 40; ++count) {
        exchange(wordOne);
    }
    settle();
    EXPECT_TRUE(isTicked("followTrace"));
    EXPECT_EQ(bar()->value(), bar()->maximum());
    EXPECT_GT(bar()->maximum(), 0);
    choose(10);
    EXPECT_FALSE(isTicked("followTrace"));
    const int before = bar()->value();
    exchange(wordOne);
    settle();
    EXPECT_EQ(bar()->value(), before);
    find<QCheckBox>("followTrace")->click();
    EXPECT_EQ(bar()->value(), bar()->maximum());
    bar()->setValue(3); // as the wheel does
    EXPECT_FALSE(isTicked("followTrace"));
    bar()->setValue(bar()->maximum());
    EXPECT_TRUE(isTicked("followTrace"));
}

TEST_F(TracePanelTest, ClearForgetsTheLines) {
    fill();
    press("clearTrace");
    EXPECT_EQ(rows(), 0);
    exchange(wordOne);
    settle();
    EXPECT_EQ(rows(), 2);
}

TEST_F(TracePanelTest, CopiesSelectedLinesAsHexAndAsText) {
    fill();
    choose(2);
    run("copyHex");
    EXPECT_EQ(clipboard(), cell(2, Hex));
    find<QTableView>("traceTable")->selectAll();
    QTest::keyClick(find<QTableView>("traceTable"), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(std::ranges::count(clipboard(), '\n'), 3) << "four bursts; the event has no bytes";
    run("copyText");
    EXPECT_NE(clipboard().find("answer to word read"), std::string::npos);
}

TEST_F(TracePanelTest, ExportsTheSelectionOrAllInFourForms) {
    fill();
    choose(2);
    run("exportSelectedCsv");
    chooseFile(window.folder().file("one.csv"));
    const std::string csv = fileText("one.csv");
    EXPECT_EQ(std::ranges::count(csv, '\n'), 2) << csv;
    EXPECT_NE(csv.find("answer to word read"), std::string::npos);
    run("exportAllText");
    chooseFile(window.folder().file("all.txt"));
    EXPECT_EQ(std::ranges::count(fileText("all.txt"), '\n'), 6);
    run("exportAllJson");
    chooseFile(window.folder().file("all.jsonl"));
    EXPECT_EQ(std::ranges::count(fileText("all.jsonl"), '\n'), 5);
    run("exportAllPcapng");
    chooseFile(window.folder().file("all")); // gets its extension
    EXPECT_EQ(fileText("all.pcapng").substr(0, 4), "\x0A\x0D\x0D\x0A");
    EXPECT_NE(label("traceState").find("5 lines written to all.pcapng"), std::string::npos);
}

TEST_F(TracePanelTest, AllLinesAreThoseThatPassTheFilter) {
    fill();
    type("traceFilter", "received");
    run("exportAllCsv");
    chooseFile(window.folder().file("received.csv"));
    EXPECT_EQ(std::ranges::count(fileText("received.csv"), '\n'), 3);
}

TEST_F(TracePanelTest, AnExportThatFailsIsToldAsOtherFilesAre) {
    fill();
    run("exportAllCsv");
    chooseFile(pipe("pipe.csv"));
    EXPECT_NE(boxText().find("pipe.csv"), std::string::npos);
}

TEST_F(TracePanelTest, LongLinesAreCutInTheTableAndWholeInTheTip) {
    openPort();
    window.click("optMode_5");
    window.click("cmdMonStart");
    window.farEnd().deliver(Bytes(1000, 0xA5));
    window.advance(300);
    const auto* const model = find<QTableView>("traceTable")->model();
    EXPECT_TRUE(cell(1, Hex).ends_with(".. 1000 bytes"));
    EXPECT_LT(cell(1, Hex).size(), 300U);
    EXPECT_GT(model->index(1, Hex).data(Qt::ToolTipRole).toString().size(), 1500);
}

/// Over the real clock and the real lines.
class TraceOnALine : public WindowTest {
protected:
    TraceOnALine() { driver.click("openTrace"); }
    InsightWindow* trace() { return driver.window().insight().window(); }
    QTableView* table() { return findIn<QTableView>(trace(), "traceTable"); }
    bool hasSoon(int lines) {
        return runUntil([&] { return table()->model()->rowCount() >= lines; });
    }
    void readWord(const char* kind, const char* number) {
        driver.click("optRead_1");
        driver.choose("cbRegister", kind);
        driver.choose("cbRegAddress", number);
        driver.choose("cbRLength", "1");
        driver.click("cmdRDSend");
    }
};

TEST_F(TraceOnALine, ShowsWhatTheEmbeddedControllerAnswers) {
    driver.openPort("VIRTUAL");
    readWord("SR", "000");
    ASSERT_TRUE(showsSoon("txtRStatus", "Data Receive OK !!"));
    ASSERT_TRUE(hasSoon(3));
    ASSERT_TRUE(runUntil([this] { return cellText(table(), 2, Verdict).starts_with("Taken"); }));
    EXPECT_EQ(cellText(table(), 1, Kind), "word read");
    EXPECT_EQ(cellText(table(), 2, Kind), "answer to word read");
    EXPECT_EQ(cellText(table(), 2, Registers), "SR 000");
}

TEST_F(TraceOnALine, SplitsBurstsOfATerminalBySilenceAndSaysWhatBecameOfThem) {
    openLine();
    readWord("W", "0057");
    ASSERT_EQ(sent(9).size(), 9U);
    line.write({0xFF, 0xFF, 0xA3, 0x02});
    runFor(std::chrono::milliseconds(300));
    line.write({0x34, 0x12, 0x00, 0x00});
    ASSERT_TRUE(hasSoon(4));
    ASSERT_TRUE(
        runUntil([this] { return cellText(table(), 3, Verdict).find("Dropped") != std::string::npos; }));
    EXPECT_EQ(cellText(table(), 2, Hex), "FF FF A3 02");
    EXPECT_EQ(cellText(table(), 3, Hex), "34 12 00 00");
    EXPECT_NE(cellText(table(), 2, Verdict).find("4 of 8 bytes"), std::string::npos)
        << cellText(table(), 2, Verdict);
}

TEST_F(TraceOnALine, AHangUpIsALineOfItsOwn) {
    openLine();
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] {
        const int last = table()->model()->rowCount() - 1;
        return last > 0 && cellText(table(), last, Kind) != "port opened";
    }));
    const int rows = table()->model()->rowCount();
    bool isTold = false;
    for (int row = 0; row < rows; ++row) {
        isTold = isTold || cellText(table(), row, Kind) == "hang-up";
    }
    EXPECT_TRUE(isTold);
    driver.closeBox();
}

} // namespace
} // namespace varda::test
