#include "window/scenario/scenario_panel_fixture.h"

#include <QLabel>

namespace varda::test {
namespace {

/// Where the focus goes, and what is told in the panel itself.
class ScenarioPanelStateTest : public ScenarioPanelTest {
protected:
    QLabel* note() { return driver.find<QLabel>("scenarioNote"); }

    void save(const char* name) {
        driver.click("cmdSaveScenario");
        chooseFile(folder.file(name));
    }
};

TEST_F(ScenarioPanelStateTest, RunPutsTheFocusOnStop) {
    addLines({bitRead, wordRead});
    openLine();
    driver.click("cmdRunScenario");
    EXPECT_TRUE(driver.find("cmdStopScenario")->hasFocus());
    QTest::keyClick(driver.find("cmdStopScenario"), Qt::Key_Space);
    EXPECT_TRUE(driver.isEnabled("cmdRunScenario"));
    EXPECT_TRUE(driver.find("cmdRunScenario")->hasFocus());
}

TEST_F(ScenarioPanelStateTest, FocusStaysWhereTheUserPutItWhenARunEnds) {
    addLines({bitRead});
    openLine();
    driver.click("cmdRunScenario");
    driver.find("txtScnPeriod")->setFocus();
    line.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    driver.closeBox();
    EXPECT_FALSE(driver.find("cmdRunScenario")->hasFocus());
}

TEST_F(ScenarioPanelStateTest, RefusedRunLeavesTheFocusOnRun) {
    addLines({bitRead});
    driver.click("cmdRunScenario");
    driver.closeBox();
    EXPECT_TRUE(driver.isEnabled("cmdRunScenario"));
    EXPECT_FALSE(driver.find("cmdStopScenario")->hasFocus());
}

TEST_F(ScenarioPanelStateTest, SavingIsConfirmedInThePanel) {
    addLines({bitRead});
    EXPECT_EQ(note()->text().toStdString(), "");
    save("mix.scn");
    EXPECT_EQ(note()->text().toStdString(), "Saved: mix.scn");
    EXPECT_EQ(note()->toolTip().toStdString(), folder.file("mix.scn"));
    EXPECT_EQ(text("txtSimStatus"), "Saved Scenario Data completely !!!");
}

TEST_F(ScenarioPanelStateTest, LongNamesAreCutAndStandWholeInTheToolTip) {
    const std::string name(100, 'n');
    const int width = note()->width();
    addLines({bitRead});
    save((name + ".scn").c_str());
    EXPECT_EQ(note()->width(), width);
    EXPECT_LE(note()->fontMetrics().horizontalAdvance(note()->text()), width);
    EXPECT_EQ(note()->toolTip().toStdString(), folder.file(name + ".scn"));
}

TEST_F(ScenarioPanelStateTest, ConfirmationEndsWithTheNextChange) {
    addLines({bitRead});
    save("mix.scn");
    addLines({wordRead});
    EXPECT_EQ(note()->text().toStdString(), "");
    save("mix2.scn");
    schedule()->setCurrentRow(0);
    driver.click("cmdDelScenario");
    EXPECT_EQ(note()->text().toStdString(), "");
    save("mix3.scn");
    load(folder.file("mix3.scn"));
    EXPECT_EQ(note()->text().toStdString(), "");
}

TEST_F(ScenarioPanelStateTest, FailedSaveIsNotConfirmed) {
    addLines({bitRead});
    save("mix.scn");
    save("no/such/folder.scn");
    EXPECT_EQ(note()->text().toStdString(), "");
}

} // namespace
} // namespace varda::test
