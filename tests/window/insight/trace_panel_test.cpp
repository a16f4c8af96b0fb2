#include "window/insight/insight_fixture.h"

#include "support/window_test.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QMenu>
#include <QPushButton>
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
    int chosenRow() { return find<QTableView>("traceTable")->currentIndex().row(); }
    bool isTicked(const char* box) { return find<QCheckBox>(box)->isChecked(); }
};

TEST_F(TracePanelTest, EveryBurstIsALineInWords) {
    fill();
    EXPECT_EQ(column(TraceColumn::Direction),
              (std::vector<std::string>{"event", "sent", "received", "sent", "received"}));
    EXPECT_EQ(column(TraceColumn::Kind),
              (std::vector<std::string>{"port opened", "word read", "answer to word read", "word read",
                                        "answer to word read"}));
    EXPECT_EQ(cell(1, TraceColumn::Station), "255 to 255");
    EXPECT_EQ(cell(1, TraceColumn::Registers), "W 0057");
    EXPECT_EQ(cell(2, TraceColumn::Registers), "W 0057");
    EXPECT_EQ(cell(2, TraceColumn::Hex).substr(0, 17), "FF FF A3 02 34 12");
    EXPECT_EQ(cell(2, TraceColumn::Verdict), "Taken: it has the 8 bytes that were awaited.");
    EXPECT_EQ(cell(4, TraceColumn::Verdict).substr(0, 10), "! Dropped:");
    EXPECT_EQ(cell(1, TraceColumn::Time).size(), std::string("00:00:00.000").size());
}

TEST_F(TracePanelTest, FilterWorksAsOneTypesAndKeepsTheChosenLine) {
    fill();
    choose(2);
    const std::string explained = label("explanationTitle");
    type("traceFilter", "rec");
    EXPECT_EQ(rows(), 0) << "a kind that no line has";
    type("traceFilter", "received");
    EXPECT_EQ(chosenRow(), 0);
    EXPECT_EQ(column(TraceColumn::Direction), (std::vector<std::string>{"received", "received"}));
    EXPECT_EQ(label("traceState"), "2 of 5 lines");
    type("traceFilter", "wrong");
    EXPECT_EQ(rows(), 2) << "a request whose answer was dropped, and that answer";
    EXPECT_EQ(chosenRow(), -1);
    EXPECT_EQ(label("explanationTitle"), explained);
    type("traceFilter", "W 0100");
    EXPECT_EQ(rows(), 1);
    type("traceFilter", "hex a3 02");
    EXPECT_EQ(cell(0, TraceColumn::Registers), "W 0057");
    type("traceFilter", "");
    EXPECT_EQ(rows(), 5);
    EXPECT_EQ(chosenRow(), 2);
    EXPECT_FALSE(isTicked("followTrace"));
}

TEST_F(TracePanelTest, AFilterKeepsFollowingAndAChoiceThatWasTakenBackStaysSo) {
    fill();
    type("traceFilter", "received");
    EXPECT_TRUE(isTicked("followTrace"));
    EXPECT_EQ(chosenRow(), -1);
    choose(0);
    find<QTableView>("traceTable")->clearSelection();
    type("traceFilter", "");
    EXPECT_FALSE(find<QTableView>("traceTable")->selectionModel()->hasSelection());
}

TEST_F(TracePanelTest, APartnerThatTheFilterKeepsBackIsNotOffered) {
    fill();
    choose(1);
    auto* const partner = find<QAbstractButton>("goToPartner");
    EXPECT_TRUE(partner->isVisible());
    type("traceFilter", "sent");
    EXPECT_EQ(chosenRow(), 0);
    EXPECT_FALSE(partner->isVisible());
    type("traceFilter", "");
    EXPECT_TRUE(partner->isVisible());
    press("clearTrace");
    EXPECT_FALSE(partner->isVisible());
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
    strike(trace(), Qt::Key_F3);
    auto* const table = find<QTableView>("traceTable");
    EXPECT_EQ(table->currentIndex().row(), 2);
    strike(find("traceFind"), Qt::Key_F3);
    EXPECT_EQ(table->currentIndex().row(), 4);
    strike(find("traceFind"), Qt::Key_F3);
    EXPECT_EQ(table->currentIndex().row(), 2);
    EXPECT_NE(label("traceState").find("Went on from the first line"), std::string::npos);
    strike(find("traceFind"), Qt::Key_F3, Qt::ShiftModifier);
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
    EXPECT_EQ(cell(1, TraceColumn::Time).substr(0, 4), "\u25CF ");
    type("traceFilter", "marked");
    EXPECT_EQ(rows(), 1);
    type("traceFilter", "");
    choose(1);
    run("markLine");
    EXPECT_NE(cell(1, TraceColumn::Time).substr(0, 4), "\u25CF ");
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
    EXPECT_EQ(clipboard(), cell(2, TraceColumn::Hex));
    find<QTableView>("traceTable")->selectAll();
    QTest::keyClick(find<QTableView>("traceTable"), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(std::ranges::count(clipboard(), '\n'), 3) << "four bursts; the event has no bytes";
    run("copyText");
    EXPECT_NE(clipboard().find("answer to word read"), std::string::npos);
}

TEST_F(TracePanelTest, CopyingNothingLeavesTheClipboardAlone) {
    fill();
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    for (const char* const action : {"copyHex", "copyText"}) {
        run(action);
        EXPECT_EQ(clipboard(), "before") << action;
        EXPECT_NE(label("traceState").find("Choose lines to copy them"), std::string::npos);
    }
    choose(0); // an event
    run("copyHex");
    EXPECT_EQ(clipboard(), "before");
    EXPECT_NE(label("traceState").find("These lines have no bytes"), std::string::npos);
    run("copyText");
    EXPECT_NE(clipboard().find("port opened"), std::string::npos);
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
    EXPECT_NE(label("traceState").find("4 lines written to all.pcapng"), std::string::npos)
        << "the event is no part of a capture: " << label("traceState");
}

TEST_F(TracePanelTest, AllLinesAreThoseThatPassTheFilter) {
    fill();
    type("traceFilter", "received");
    run("exportAllCsv");
    chooseFile(window.folder().file("received.csv"));
    EXPECT_EQ(std::ranges::count(fileText("received.csv"), '\n'), 3);
}

TEST_F(TracePanelTest, TheMenuSaysWhatIsExported) {
    fill();
    auto* const menu = find<QPushButton>("exportTrace")->menu();
    const auto captions = [menu] {
        emit menu->aboutToShow();
        std::vector<std::string> texts;
        for (const QAction* const entry : menu->actions()) {
            texts.push_back(entry->text().toStdString() + (entry->isEnabled() ? "" : " (off)"));
        }
        return texts;
    };
    EXPECT_EQ(captions(), (std::vector<std::string>{"Selected: 0 lines (off)", "All: 5 lines"}));
    choose(2);
    type("traceFilter", "received");
    EXPECT_EQ(captions(), (std::vector<std::string>{"Selected: 1 line", "Filtered: 2 of 5 lines"}));
    run("exportAllCsv");
    EXPECT_EQ(find<QFileDialog>("QFileDialog")->windowTitle(), QStringLiteral("Export 2 lines"));
}

TEST_F(TracePanelTest, LongLinesAreCutInTheTableAndWholeInTheTip) {
    openPort();
    window.click("optMode_5");
    window.click("cmdMonStart");
    window.farEnd().deliver(Bytes(1000, 0xA5));
    window.advance(300);
    const auto* const model = find<QTableView>("traceTable")->model();
    EXPECT_TRUE(cell(1, TraceColumn::Hex).ends_with(".. 1000 bytes"));
    EXPECT_LT(cell(1, TraceColumn::Hex).size(), 300U);
    EXPECT_GT(model->index(1, static_cast<int>(TraceColumn::Hex)).data(Qt::ToolTipRole).toString().size(),
              1500);
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
    ASSERT_TRUE(runUntil([this] { return cellText(table(), 2, TraceColumn::Verdict).starts_with("Taken"); }));
    EXPECT_EQ(cellText(table(), 1, TraceColumn::Kind), "word read");
    EXPECT_EQ(cellText(table(), 2, TraceColumn::Kind), "answer to word read");
    EXPECT_EQ(cellText(table(), 2, TraceColumn::Registers), "SR 000");
}

TEST_F(TraceOnALine, SplitsBurstsOfATerminalBySilenceAndSaysWhatBecameOfThem) {
    openLine();
    readWord("W", "0057");
    ASSERT_EQ(sent(9).size(), 9U);
    line.write({0xFF, 0xFF, 0xA3, 0x02});
    runFor(std::chrono::milliseconds(300));
    line.write({0x34, 0x12, 0x00, 0x00});
    ASSERT_TRUE(hasSoon(4));
    ASSERT_TRUE(runUntil(
        [this] { return cellText(table(), 3, TraceColumn::Verdict).find("Dropped") != std::string::npos; }));
    EXPECT_EQ(cellText(table(), 2, TraceColumn::Hex), "FF FF A3 02");
    EXPECT_EQ(cellText(table(), 3, TraceColumn::Hex), "34 12 00 00");
    EXPECT_NE(cellText(table(), 2, TraceColumn::Verdict).find("4 of 8 bytes"), std::string::npos)
        << cellText(table(), 2, TraceColumn::Verdict);
}

TEST_F(TraceOnALine, AHangUpIsALineOfItsOwn) {
    openLine();
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] {
        const int last = table()->model()->rowCount() - 1;
        return last > 0 && cellText(table(), last, TraceColumn::Kind) != "port opened";
    }));
    const int rows = table()->model()->rowCount();
    bool isTold = false;
    for (int row = 0; row < rows; ++row) {
        isTold = isTold || cellText(table(), row, TraceColumn::Kind) == "hang-up";
    }
    EXPECT_TRUE(isTold);
    driver.closeBox();
}

} // namespace
} // namespace varda::test
