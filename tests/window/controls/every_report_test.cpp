#include "support/window_test.h"

#include <QListView>
#include <QListWidget>

#include <array>
#include <initializer_list>
#include <set>

namespace varda::test {
namespace {

constexpr std::array badTexts = {"x", "", "40000", "32000", "-1", "99999999999", "&H", "1e5", "FFFFF", "1,2"};

using Names = std::initializer_list<const char*>;

/// Whatever text stands in whatever field: a report names the field or the point, and says what helps.
class EveryReportTest : public WindowTest {
protected:
    void TearDown() override {
        EXPECT_GE(reports_.size(), 2U) << "too few kinds of reports were met for the test to say much";
    }

    void takeReports(const std::string& story) {
        while (driver.box() != nullptr) {
            const std::string text = driver.boxText();
            const std::string advice = driver.box()->informativeText().toStdString();
            if (text.starts_with("Run-time error '") || text.starts_with("380 ")) {
                EXPECT_NE(advice, "") << story << ": " << text;
                EXPECT_FALSE(advice.starts_with("A field of this page")) << story << ": " << text;
                reports_.insert(advice.substr(0, advice.find('"')));
            }
            driver.closeBox();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    void set(const char* field, const std::string& value) {
        paste(field, value);
        takeReports(std::string(field) + " \"" + value + '"');
    }

    void press(Names buttons, const std::string& story) {
        for (const char* const button : buttons) {
            driver.find(button)->setEnabled(true);
            driver.click(button);
            takeReports(story + ", then " + button);
        }
    }

    /// Puts every bad text into every field, the others filled, and presses the buttons after each.
    template <typename Fill>
    void tryAll(Names fields, Names buttons, Fill fill) {
        for (const char* const field : fields) {
            for (const char* const bad : badTexts) {
                fill();
                set(field, bad);
                press(buttons, std::string(field) + " \"" + bad + '"');
            }
        }
    }

private:
    std::set<std::string> reports_; ///< up to what was typed
};

TEST_F(EveryReportTest, OfThePagesOfSingleRequests) {
    openLine();
    for (const char* const option : {"optRead_0", "optRead_1"}) {
        driver.click(option);
        tryAll({"cbRegister", "cbRegAddress", "cbRegBit", "cbRLength", "txtRDDA"}, {"cmdRDSend"}, [this] {
            set("cbRegister", "M");
            set("cbRegAddress", "0001");
            set("cbRegBit", "3");
        });
    }
    driver.click("optMode_1");
    for (const char* const option : {"optWrite_0", "optWrite_1"}) {
        driver.click(option);
        tryAll({"cbWRegister", "cbWRegAddress", "cbWRegBit", "cbWLength", "txtWDDA"}, {"cmdWDSend"}, [this] {
            set("cbWRegister", "M");
            set("cbWRegAddress", "0001");
            set("cbWRegBit", "3");
        });
    }
}

class EveryReportOfMixedPagesTest : public EveryReportTest {
protected:
    void emptyList(const char* list) { driver.find<QListWidget>(list)->clear(); }
};

TEST_F(EveryReportOfMixedPagesTest, OfMixedReads) {
    openLine();
    driver.click("optMode_2");
    for (const char* const option : {"optMRead_0", "optMRead_1"}) {
        driver.click(option);
        for (const char* const kind : {"M", "TC", "SR"}) {
            tryAll({"cbMRegister", "cbMRegAddress", "cbMRegBit", "cbMRLength"},
                   {"cmdMRAdd", "cmdMRAdd", "cmdMRDSend"}, [this, kind] {
                       emptyList("lstMRReadReg");
                       set("cbMRegister", kind);
                       set("cbMRegAddress", "0001");
                       set("cbMRegBit", "3");
                       set("cbMRLength", "120");
                   });
        }
    }
}

TEST_F(EveryReportOfMixedPagesTest, OfMixedWrites) {
    openLine();
    driver.click("optMode_3");
    for (const char* const option : {"optMWrite_0", "optMWrite_1"}) {
        driver.click(option);
        for (const char* const kind : {"M", "TC", "SR"}) {
            tryAll({"cbMWRegister", "cbMWRegAddress", "cbMWRegBit", "txtMWData"},
                   {"chkHexDec", "cmdMWAdd", "cmdMWDSend"}, [this, kind] {
                       emptyList("lstMWWriteReg");
                       set("cbMWRegister", kind);
                       set("cbMWRegAddress", "0001");
                       set("cbMWRegBit", "3");
                       set("txtMWData", "1");
                   });
        }
    }
}

TEST_F(EveryReportTest, OfTheSimulation) {
    driver.click("optMode_4");
    for (const char* const mode : {"Bit Read", "Word Read", "Bit Write", "Word Write"}) {
        driver.choose("cbSimMode", mode);
        if (driver.box() != nullptr) {
            answerQuestion(false);
        }
        tryAll({"cbSimDA", "cbSimReg", "cbSimAddress", "cbSimBit", "cbSimLength", "txtSimData",
                "txtSimSendData"},
               {"optSimOnOff_0", "chkSimHexDec", "cmdSimAddListBox", "cmdSimSendDataInputOK", "cmdSimInputOK",
                "cmdSimDelListBox"},
               [this] {
                   set("cbSimReg", "M");
                   set("cbSimAddress", "0012");
                   set("cbSimBit", "3");
                   set("cbSimLength", "2");
                   set("txtSimData", "12");
               });
    }
}

TEST_F(EveryReportTest, OfScenarios) {
    openLine();
    for (const char* const bad : badTexts) {
        auto* const lines = driver.find<QListWidget>("lstSchedule");
        lines->clear();
        lines->addItem(QString::fromLatin1(bad));
        set("txtScnPeriod", "1");
        press({"cmdRunScenario"}, bad);
        runUntil([this] { return driver.box() != nullptr; }, std::chrono::milliseconds(100));
        takeReports(bad);
        set("txtScnPeriod", bad);
        press({"cmdRunScenario", "cmdStopScenario"}, std::string("period ") + bad);
    }
}

TEST_F(EveryReportTest, OfTheSettingsOfAPort) {
    driver.openPort(line.path());
    driver.click("cmdPortOpen");
    for (const char* const field : {"cbBaudRate", "cbDataBit", "cbStopBit", "cbParityBit"}) {
        for (const char* const bad : badTexts) {
            const std::string before = text(field);
            set(field, bad);
            driver.click("cmdPortOpen");
            takeReports(std::string(field) + " \"" + bad + '"');
            if (text("cmdPortOpen") == "Close Port") { // an empty one got its start value
                driver.click("cmdPortOpen");
            }
            set(field, before);
        }
    }
}

} // namespace
} // namespace varda::test
