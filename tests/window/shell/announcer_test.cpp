#include "window/shell/announcer.h"

#include "support/manual_clock.h"
#include "support/window_test.h"

#include <QAccessible>
#include <QLabel>

#ifndef Q_OS_WIN
namespace {

std::vector<std::string> alerts; ///< names of objects

} // namespace

/// Qt hands events on where a screen reader is connected alone, and has no public way to make believe that
/// one is: calls of this program and of what is linked into it end here instead.
void QAccessible::updateAccessibility(QAccessibleEvent* event) {
    if (event->type() == QAccessible::Alert && event->object() != nullptr) {
        alerts.push_back(event->object()->objectName().toStdString());
    }
}
#endif

namespace varda::test {
namespace {

class AnnouncerTest : public WindowTest {
protected:
    std::size_t spokenTimes(const char* text) {
        spoken.clear();
        announcer.speak(&label, QString::fromLatin1(text));
        return spoken.size();
    }

    ManualClock clock;
    std::vector<std::string> spoken; ///< names of controls
    Announcer announcer{clock,
                        [this](QWidget* control) { spoken.push_back(control->objectName().toStdString()); }};
    QLabel label;
};

TEST_F(AnnouncerTest, SpeaksEveryStatusOfTheWindowWhenItChanges) {
    announcer.listenToStatuses(&driver.window());
    const std::vector<std::string> fields = {"txtRStatus", "txtWStatus", "txtMRStatus", "txtMWStatus",
                                             "txtSimStatus"};
    for (const std::string& field : fields) {
        paste(field.c_str(), "Port Closed");
    }
    EXPECT_EQ(spoken, fields);
}

TEST_F(AnnouncerTest, SpeaksWhatIsOpenButNotWhatIsTyped) {
    announcer.listenToStatuses(&driver.window());
    paste("cbPort", "VIRTUAL");
    EXPECT_TRUE(spoken.empty());
    driver.click("cmdCommTest");
    driver.click("cmdPortOpen");
    EXPECT_EQ(spoken, (std::vector<std::string>{"openPort", "openPort"}));
}

TEST_F(AnnouncerTest, SpeaksWhetherTheMonitorListens) {
    driver.openPort("VIRTUAL");
    driver.click("optMode_5");
    announcer.listenToStatuses(&driver.window());
    driver.click("cmdMonStart");
    driver.click("cmdMonStop");
    EXPECT_EQ(spoken, (std::vector<std::string>{"monitorState", "monitorState"}));
}

TEST_F(AnnouncerTest, SpeaksThatAScenarioWasSaved) {
    announcer.listenToStatuses(&driver.window());
    driver.click("cmdSaveScenario");
    chooseFile(driver.programFolder() + "/Data/saved.scn");
    EXPECT_EQ(std::ranges::count(spoken, "scenarioNote"), 1);
}

TEST_F(AnnouncerTest, SpeaksNoOtherFieldAndNoEmptiedOne) {
    paste("txtRStatus", "Port Closed");
    announcer.listenToStatuses(&driver.window());
    paste("txtRStatus", "");
    paste("txtRDDA", "7");
    paste("txtReceiveRData", "FF FF ");
    EXPECT_TRUE(spoken.empty());
}

TEST_F(AnnouncerTest, SpeaksOnceWhatComesAgainAndAgain) {
    EXPECT_EQ(spokenTimes("Data Receive OK !!"), 1U);
    for (int period = 0; period < 50; ++period) {
        clock.advance(200);
        EXPECT_EQ(spokenTimes(""), 0U);
        EXPECT_EQ(spokenTimes("Data Receive OK !!"), 0U);
    }
}

TEST_F(AnnouncerTest, SpeaksTheSameAgainAfterASilence) {
    EXPECT_EQ(spokenTimes("Data Receive OK !!"), 1U);
    clock.advance(2999);
    EXPECT_EQ(spokenTimes("Data Receive OK !!"), 0U);
    clock.advance(3000);
    EXPECT_EQ(spokenTimes("Data Receive OK !!"), 1U);
}

TEST_F(AnnouncerTest, SpeaksAtOnceWhatIsNew) {
    EXPECT_EQ(spokenTimes("Data Receive OK !!"), 1U);
    EXPECT_EQ(spokenTimes("No Answer From PLC"), 1U);
    EXPECT_EQ(spokenTimes("Data Receive OK !!"), 1U);
}

#ifndef Q_OS_WIN
/// What the program hands to Qt for a screen reader.
class AlertTest : public WindowTest {
protected:
    AlertTest() { alerts.clear(); }
};

TEST_F(AlertTest, IsRaisedByTheStatusOfAClosedPort) {
    driver.find("cmdRDSend")->setEnabled(true);
    driver.choose("cbRegister", "R");
    driver.choose("cbRegAddress", "0000");
    driver.choose("cbRegBit", "0");
    driver.choose("cbRLength", "8");
    alerts.clear();
    driver.click("cmdRDSend");
    EXPECT_EQ(text("txtRStatus"), "Port Closed");
    EXPECT_EQ(alerts, std::vector<std::string>{"txtRStatus"});
}

TEST_F(AlertTest, IsRaisedByWhatIsOpen) {
    driver.openPort("VIRTUAL");
    EXPECT_EQ(alerts, (std::vector<std::string>{"openPort", "openPort"}));
}
#endif

} // namespace
} // namespace varda::test
