#include "window/bench/bench_fixture.h"
#include "window/bench/expectation_model.h"

#include <filesystem>

namespace varda::test {
namespace {

/// A scenario of two reads, W 0000 and W 0001, loaded on the read page.
class ExpectationsPanelTest : public BenchTest {
protected:
    ExpectationsPanelTest() : BenchTest(Expectations) {
        writeFile("two.scn", "[Information]\nTotal=2\n[Scenario]\nScenario0=FF FF 23 03 00 02 01 05 23 \n"
                             "Scenario1=FF FF 23 03 01 02 01 54 E3 \n");
    }

    static constexpr const char* table = "expectationTable";
    void load(const char* scenario = "two.scn") {
        window.click("cmdLoadScenario");
        window.chooseFile(scenario);
    }
    void run() {
        openPort();
        window.paste("txtScnPeriod", "1000");
        window.click("cmdRunScenario");
        window.advance(900);
    }
    /// The first line goes out, and nothing comes until the wait for its answer has ended.
    void runSlowly() {
        openPort();
        window.paste("txtScnPeriod", "65535");
        window.click("cmdRunScenario");
        window.advance(65535);
        window.advance(20000);
    }
    /// One period: the line that is due goes out, and is answered with a word, below 0 with none.
    void round(int word, int after = 100) {
        window.advance(100 + after);
        if (word >= 0) {
            window.farEnd().deliver(checked({0xFF, 0xFF, 0xA3, 0x02, static_cast<std::uint8_t>(word), 0}));
        }
        window.advance(900 - after);
    }
    std::string result(int row) { return cell(table, row, ExpectationModel::Result); }
    std::string why(int row) { return cell(table, row, ExpectationModel::Why); }
};

TEST_F(ExpectationsPanelTest, WithoutAScenarioThereIsNothingToExpect) {
    EXPECT_EQ(rows(table), 0);
    EXPECT_EQ(label("expectationsState"), "No scenario is loaded.");
    EXPECT_FALSE(find("takeFromRun")->isEnabled());
}

TEST_F(ExpectationsPanelTest, EachLineGetsAMarkAndAReasonWhileItRuns) {
    load();
    ASSERT_EQ(rows(table), 2);
    EXPECT_EQ(cell(table, 0, ExpectationModel::Request), "word read, W 0000");
    EXPECT_TRUE(edit(table, 0, ExpectationModel::Wanted, "W 0000 = 5"));
    EXPECT_TRUE(edit(table, 1, ExpectationModel::Wanted, "W 0001 >= 10"));
    run();
    round(5);
    settle();
    EXPECT_EQ(result(0), "\u2713 right");
    EXPECT_EQ(result(1), "");
    round(7);
    settle();
    EXPECT_EQ(result(1), "\u2717 wrong");
    EXPECT_EQ(why(1), "W 0001 >= 10 was wanted, and it is W 0001 = 0007h = 7.");
    EXPECT_EQ(label("expectationsState"), "1 right, 1 wrong");
    round(6);
    round(12);
    settle();
    EXPECT_EQ(result(0), "\u2717 wrong");
    EXPECT_EQ(result(1), "\u2713 right");
    EXPECT_EQ(cell(table, 1, ExpectationModel::Right), "1");
    EXPECT_EQ(cell(table, 1, ExpectationModel::Wrong), "1");
    window.click("cmdStopScenario");
    window.click("cmdRunScenario");
    EXPECT_EQ(result(0), "") << "judged anew";
    EXPECT_EQ(cell(table, 1, ExpectationModel::Wrong), "");
}

TEST_F(ExpectationsPanelTest, WhatComesTooLateOrNotAtAllIsWrong) {
    load();
    edit(table, 0, ExpectationModel::Wanted, "FF FF A3 02 .. .. .. ..");
    edit(table, 0, ExpectationModel::Limit, "100");
    edit(table, 1, ExpectationModel::Wanted, "W 0001 = 0");
    run();
    round(1, 300); // a burst that comes settles for 100 ms
    EXPECT_EQ(why(0), "The answer took 400 ms, where 100 ms were allowed.");
    round(-1);
    round(-1);
    EXPECT_EQ(why(1), "The next request went out before an answer came.");
}

TEST_F(ExpectationsPanelTest, WhatIsNotUnderstoodSaysWhatHelps) {
    load();
    EXPECT_TRUE(edit(table, 0, ExpectationModel::Wanted, "W 0000 is 5"));
    EXPECT_EQ(result(0), "not understood");
    EXPECT_NE(why(0).find("is no expectation: silence, the bytes of an answer"), std::string::npos);
    edit(table, 0, ExpectationModel::Wanted, "silence");
    EXPECT_EQ(result(0), "");
    edit(table, 0, ExpectationModel::Limit, "soon");
    EXPECT_EQ(result(0), "not understood");
}

TEST_F(ExpectationsPanelTest, TheFileBesideTheScenarioIsTakenAlong) {
    writeFile("two.expect", "[Expect]\nExpect1=silence\n[Limit]\nLimit1=200\n");
    load();
    EXPECT_EQ(cell(table, 1, ExpectationModel::Wanted), "silence");
    EXPECT_EQ(cell(table, 1, ExpectationModel::Limit), "200");
    EXPECT_EQ(label("expectationsState"), "two.expect");
    writeFile("other.scn", "[Information]\nTotal=1\n[Scenario]\nScenario0=FF FF 23 03 00 02 01 05 23 \n");
    load("other.scn");
    EXPECT_EQ(cell(table, 0, ExpectationModel::Wanted), "");
    EXPECT_EQ(label("expectationsState"), "");
}

TEST_F(ExpectationsPanelTest, TakesWhatCameSavesAndLoadsIt) {
    load();
    press("takeFromRun");
    EXPECT_EQ(label("expectationsState"), "Run the scenario first: nothing is known of its answers.");
    run();
    for (const int word : {5, 7, 6, 7}) {
        round(word);
    }
    press("takeFromRun");
    const std::string wanted = cell(table, 0, ExpectationModel::Wanted);
    EXPECT_EQ(wanted.substr(0, 17), "FF FF A3 02 .. 00");
    EXPECT_EQ(cell(table, 1, ExpectationModel::Wanted).substr(0, 17), "FF FF A3 02 07 00");
    EXPECT_EQ(label("expectationsState"), "taken for 2 lines");
    edit(table, 1, ExpectationModel::Limit, "250");
    press("saveExpectations");
    chooseFile("two.expect");
    EXPECT_EQ(label("expectationsState"), "two.expect \u2013 saved");
    EXPECT_NE(readFile("two.expect").find("Limit1=250"), std::string::npos);
    edit(table, 0, ExpectationModel::Wanted, "silence");
    press("loadExpectations");
    chooseFile("two.expect");
    EXPECT_EQ(cell(table, 0, ExpectationModel::Wanted), wanted);
    EXPECT_EQ(cell(table, 1, ExpectationModel::Limit), "250");
}

TEST_F(ExpectationsPanelTest, WhatIsExpectedGoesWithItsLine) {
    load();
    edit(table, 1, ExpectationModel::Wanted, "silence");
    window.clickLine("lstSchedule", 0);
    window.click("cmdDelScenario");
    ASSERT_EQ(rows(table), 1);
    EXPECT_EQ(cell(table, 0, ExpectationModel::Wanted), "silence");
}

TEST_F(ExpectationsPanelTest, ASilenceEndsTheRunAsEver) {
    load();
    edit(table, 0, ExpectationModel::Wanted, "W 0000 = 5");
    runSlowly();
    EXPECT_FALSE(window.find("cmdStopScenario")->isEnabled());
    EXPECT_EQ(result(0), "\u2717 wrong");
    edit(table, 0, ExpectationModel::Wanted, "");
    window.click("cmdRunScenario");
    window.advance(65535 + 20000);
    EXPECT_FALSE(window.find("cmdStopScenario")->isEnabled()) << "nothing is expected";
}

TEST_F(ExpectationsPanelTest, AfterAnExpectedSilenceTheRunGoesOn) {
    load();
    edit(table, 0, ExpectationModel::Wanted, "silence");
    runSlowly();
    EXPECT_TRUE(window.find("cmdStopScenario")->isEnabled());
    EXPECT_EQ(result(0), "\u2713 right");
    EXPECT_EQ(written().size(), 1U);
    window.advance(50'000);
    EXPECT_EQ(written().size(), 1U) << "the line behind it";
    window.advance(20'000);
    EXPECT_FALSE(window.find("cmdStopScenario")->isEnabled()) << "of which no silence is expected";
    EXPECT_TRUE(window.find("tabMode")->isEnabled());
}

TEST_F(ExpectationsPanelTest, AFileWithoutExpectationsIsToldAndChangesNothing) {
    load();
    edit(table, 0, ExpectationModel::Wanted, "silence");
    press("loadExpectations");
    chooseFile("two.scn");
    ASSERT_NE(box(), nullptr);
    EXPECT_NE(box()->text().toStdString().find("two.scn\" holds no expectation of these lines."),
              std::string::npos);
    EXPECT_EQ(cell(table, 0, ExpectationModel::Wanted), "silence");
}

TEST_F(ExpectationsPanelTest, TellsOfAFileBesideThatCannotBeRead) {
    std::filesystem::create_directory(window.folder().file("two.expect"));
    EXPECT_FALSE(find("expectationsProblem")->isVisible());
    load();
    EXPECT_TRUE(find("expectationsProblem")->isVisible());
    const std::string told = label("expectationsProblem");
    EXPECT_NE(told.find("What is expected was not taken along."), std::string::npos);
    EXPECT_NE(told.find("two.expect\" is no regular file. A folder, a device or a pipe"), std::string::npos)
        << told;
    EXPECT_EQ(window.box(), nullptr) << "the scenario itself is whole";
    std::filesystem::remove(window.folder().file("two.expect"));
    load();
    EXPECT_FALSE(find("expectationsProblem")->isVisible());
}

} // namespace
} // namespace varda::test
