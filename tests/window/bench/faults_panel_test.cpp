#include "window/bench/bench_fixture.h"
#include "window/bench/fault_model.h"
#include "window/insight/insight_window.h"

namespace varda::test {
namespace {

class FaultsPanelTest : public BenchTest {
protected:
    FaultsPanelTest() : BenchTest(Faults) {}

    static constexpr const char* table = "faultTable";
    static int rowOf(FaultKind kind) { return static_cast<int>(kind); }
    void tickFault(FaultKind kind, bool isTicked = true) {
        tick(table, rowOf(kind), FaultModel::Name, isTicked);
    }
    QWidget* banner() { return window.find("faultBanner"); }
    QWidget* benchBanner() { return find("faultBanner"); }
    std::string bannerText() { return window.find<QLabel>("faultBannerText")->text().toStdString(); }

    /// Requests of the read page, with whatever is done to them.
    std::vector<Bytes> send(int times) {
        for (int time = 0; time < times; ++time) {
            window.click("cmdRDSend");
            window.advance(2000);
        }
        return written();
    }
    void chooseWord() {
        openPort();
        window.click("optRead_1");
        window.choose("cbRegister", 6); // W
        window.choose("cbRegAddress", 0);
        window.choose("cbRLength", 0);
    }
    const Bytes request = checked({0xFF, 0xFF, 0x23, 0x03, 0x00, 0x02, 0x01});
};

TEST_F(FaultsPanelTest, WhatIsWrongWithOneFieldStaysWhileAnotherIsLeft) {
    enter("faultText", "nonsense");
    const std::string problem = label("faultProblem");
    EXPECT_NE(problem, "");
    enter("faultSeed", "1");
    EXPECT_EQ(label("faultProblem"), problem);
    enter("faultText", "drop@3rd");
    EXPECT_EQ(label("faultProblem"), "");
}

TEST_F(FaultsPanelTest, EverythingIsOffWhenTheProgramStarts) {
    EXPECT_FALSE(find<QAbstractButton>("faultsOn")->isChecked());
    EXPECT_EQ(rows(table), static_cast<int>(faultRules().size()));
    for (int row = 0; row < rows(table); ++row) {
        EXPECT_FALSE(isTicked(table, row, FaultModel::Name)) << row;
    }
    EXPECT_FALSE(banner()->isVisible());
    EXPECT_FALSE(benchBanner()->isVisible());
    EXPECT_EQ(field("faultText"), "");
    chooseWord();
    EXPECT_EQ(send(3), (std::vector<Bytes>{request, request, request}));
}

TEST_F(FaultsPanelTest, WhatIsTickedIsDoneOnceTheSwitchIsOn) {
    chooseWord();
    tickFault(FaultKind::Drop);
    EXPECT_EQ(send(1).size(), 1U) << "ticked, and not on";
    press("faultsOn");
    EXPECT_TRUE(send(2).empty());
    settle();
    EXPECT_EQ(cell(table, rowOf(FaultKind::Drop), FaultModel::Done), "2");
    EXPECT_EQ(label("faultsState"), "2 faults done");
    press("faultsOn");
    EXPECT_EQ(send(1), std::vector<Bytes>{request});
}

TEST_F(FaultsPanelTest, ABannerInBothWindowsEndsThem) {
    const QSize before = window.window().size();
    tickFault(FaultKind::Check);
    EXPECT_FALSE(banner()->isVisible());
    press("faultsOn");
    EXPECT_TRUE(banner()->isVisible());
    EXPECT_TRUE(benchBanner()->isVisible());
    EXPECT_EQ(bannerText(), "Faults on purpose: what this program sends is damaged. check");
    EXPECT_EQ(window.window().size(), before);
    window.click("faultsAllOff");
    EXPECT_FALSE(banner()->isVisible());
    EXPECT_FALSE(benchBanner()->isVisible());
    EXPECT_FALSE(find<QAbstractButton>("faultsOn")->isChecked());
    EXPECT_TRUE(isTicked(table, rowOf(FaultKind::Check), FaultModel::Name)) << "what was chosen stays";
    press("faultsOn");
    press("faultsAllOff");
    EXPECT_FALSE(banner()->isVisible());
    chooseWord();
    EXPECT_EQ(send(1), std::vector<Bytes>{request});
}

TEST_F(FaultsPanelTest, TheBannerStaysWhereTheBenchIsClosed) {
    tickFault(FaultKind::Drop);
    press("faultsOn");
    bench()->close();
    EXPECT_TRUE(banner()->isVisible());
    chooseWord();
    EXPECT_TRUE(send(1).empty());
}

TEST_F(FaultsPanelTest, OnWithoutAFaultSaysThatNoneIsTicked) {
    press("faultsOn");
    EXPECT_EQ(label("faultsState"), "No fault is ticked.");
    EXPECT_FALSE(banner()->isVisible());
    tickFault(FaultKind::Late);
    EXPECT_TRUE(banner()->isVisible());
    EXPECT_EQ(label("faultsState"), "");
}

TEST_F(FaultsPanelTest, TheTextFormAndTheTableShowTheSame) {
    enter("faultText", "Late = 50..200, drop@3rd,flip@1%");
    EXPECT_EQ(field("faultText"), "drop@3rd,flip@1%,late=50..200");
    EXPECT_TRUE(isTicked(table, rowOf(FaultKind::Drop), FaultModel::Name));
    EXPECT_EQ(cell(table, rowOf(FaultKind::Drop), FaultModel::Rate), "3rd");
    EXPECT_EQ(cell(table, rowOf(FaultKind::Late), FaultModel::Number), "50..200 ms");
    EXPECT_EQ(cell(table, rowOf(FaultKind::Late), FaultModel::Rate), "each");
    EXPECT_TRUE(edit(table, rowOf(FaultKind::Late), FaultModel::Number, "70"));
    EXPECT_TRUE(edit(table, rowOf(FaultKind::Flip), FaultModel::Rate, "only20"));
    EXPECT_EQ(field("faultText"), "drop@3rd,flip@only20,late=70");
    tickFault(FaultKind::Drop, false);
    EXPECT_EQ(field("faultText"), "flip@only20,late=70");
    EXPECT_TRUE(edit(table, rowOf(FaultKind::Flip), FaultModel::Rate, "each"));
    EXPECT_EQ(field("faultText"), "flip,late=70");
    enter("faultText", "");
    EXPECT_FALSE(isTicked(table, rowOf(FaultKind::Flip), FaultModel::Name));
}

TEST_F(FaultsPanelTest, WhatIsNotUnderstoodSaysWhatHelpsAndChangesNothing) {
    enter("faultText", "drop@3rd");
    press("faultsOn");
    enter("faultText", "drap");
    EXPECT_EQ(label("faultProblem").find("\"drap\" is no fault. There are: hangup, silence"), 0U);
    EXPECT_TRUE(find("faultProblem")->isVisible());
    EXPECT_EQ(bannerText(), "Faults on purpose: what this program sends is damaged. drop@3rd");
    enter("faultText", "drop");
    EXPECT_FALSE(find("faultProblem")->isVisible());
    EXPECT_FALSE(edit(table, rowOf(FaultKind::Late), FaultModel::Number, "soon"));
    EXPECT_EQ(label("faultProblem").find("\"soon\" does not go with late"), 0U);
    EXPECT_EQ(cell(table, rowOf(FaultKind::Late), FaultModel::Number), "50..500 ms");
    EXPECT_FALSE(edit(table, rowOf(FaultKind::Drop), FaultModel::Rate, "3rd,late"));
    EXPECT_FALSE(edit(table, rowOf(FaultKind::Drop), FaultModel::Rate, "often"));
    EXPECT_EQ(field("faultText"), "drop");
    enter("faultSeed", "eleven");
    EXPECT_EQ(label("faultProblem"), "The seed is a whole number from 0 on. 1 is still in use.");
    enter("faultSeed", "11");
    EXPECT_FALSE(find("faultProblem")->isVisible());
}

TEST_F(FaultsPanelTest, FaultsWithoutANumberHaveNone) {
    const auto isEditable = [this](FaultKind kind) {
        return (model(table)->flags(model(table)->index(rowOf(kind), FaultModel::Number)) &
                Qt::ItemIsEditable) != 0;
    };
    EXPECT_FALSE(isEditable(FaultKind::Drop));
    EXPECT_TRUE(isEditable(FaultKind::Late));
    EXPECT_EQ(cell(table, rowOf(FaultKind::Drop), FaultModel::Number), "");
}

TEST_F(FaultsPanelTest, TheSameSeedDoesTheSameOnceMore) {
    chooseWord();
    enter("faultText", "flip=1..8,noise-behind@50%");
    const auto sentWith = [this](const char* seed) {
        enter("faultSeed", seed);
        press("faultsOn");
        auto sent = send(6);
        press("faultsOn");
        return sent;
    };
    const auto first = sentWith("7");
    EXPECT_NE(first, sentWith("8"));
    EXPECT_EQ(first, sentWith("7"));
}

TEST_F(FaultsPanelTest, UntickingAllEndsEverything) {
    enter("faultText", "drop,late");
    press("faultsOn");
    press("clearFaults");
    EXPECT_FALSE(banner()->isVisible());
    EXPECT_EQ(field("faultText"), "");
    EXPECT_FALSE(find<QAbstractButton>("faultsOn")->isChecked());
}

TEST_F(FaultsPanelTest, EachFaultStandsInTheTraceAsOurOwnDoing) {
    if (window.window().insight().window() == nullptr) {
        window.click("openTrace");
    }
    chooseWord();
    enter("faultText", "check");
    press("faultsOn");
    send(1);
    const auto* const trace =
        window.window().insight().window()->findChild<QTableView*>(QStringLiteral("traceTable"));
    std::string words;
    for (int row = 0; row < trace->model()->rowCount(); ++row) {
        for (int column = 0; column < trace->model()->columnCount(); ++column) {
            words += trace->model()->index(row, column).data().toString().toStdString() + '\n';
        }
    }
    EXPECT_NE(words.find("Our own doing: request 1: check broken."), std::string::npos) << words;
}

TEST_F(FaultsPanelTest, AHangUpOnPurposeIsAHangUp) {
    chooseWord();
    enter("faultText", "hangup");
    press("faultsOn");
    window.click("cmdRDSend");
    window.advance(500);
    EXPECT_FALSE(window.farEnd().isOpen());
    EXPECT_EQ(window.text("cmdPortOpen"), "Open Port");
}

TEST_F(FaultsPanelTest, TheBannerIsToldToScreenReaders) {
    const auto* const text = window.find<QLabel>("faultBannerText");
    EXPECT_FALSE(text->accessibleName().isEmpty());
    EXPECT_EQ(window.find<QAbstractButton>("faultsAllOff")->text(), QStringLiteral("All off"));
}

} // namespace
} // namespace varda::test
