#include "support/driven_window.h"
#include "support/master_pages.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QMessageBox>

#include <gtest/gtest.h>

namespace varda::test {
namespace {

using Texts = std::vector<std::string>;

/// What holds for the send button and for continuous sending of every master page alike.
class SendingRulesTest : public testing::TestWithParam<MasterPage> {
protected:
    SendingRulesTest() {
        window.click("cmdCommTest");
        window.click("cmdPortOpen");
        window.clickTab(static_cast<int>(GetParam().name == "Read"        ? 0
                                         : GetParam().name == "Write"     ? 1
                                         : GetParam().name == "MixedRead" ? 2
                                                                          : 3));
    }

    /// Chooses an option and fills every field that sending or repeating looks at.
    void fill(bool bitOption) {
        const MasterPage& page = GetParam();
        window.click(bitOption ? page.bitOption : page.wordOption);
        window.paste(page.kind, bitOption ? "M" : "W");
        window.paste(page.number, "0001");
        if (bitOption) {
            window.paste(page.bit, "2");
        }
        if (!page.length.empty()) {
            window.paste(page.length, "1");
        }
        for (const std::string& station : page.stations) {
            window.paste(station, "255");
        }
        addPoint();
        window.farEnd().takeWritten();
    }

    /// The mixed pages send what stands in their lists.
    void addPoint() {
        if (GetParam().name.starts_with("Mixed") && !hasPoint_) {
            window.click(GetParam().name == "MixedRead" ? "cmdMRAdd" : "cmdMWAdd");
            hasPoint_ = true;
        }
    }

    std::size_t sent() { return window.farEnd().takeWritten().size(); }
    /// Time enough for a tick, and for an answer or for the end of the wait for it.
    std::size_t sentInOneTick() {
        window.advance(500);
        return sent();
    }
    void stopWaiting() { window.advance(13 * 500); }

    DrivenWindow window;

private:
    bool hasPoint_ = false;
};

INSTANTIATE_TEST_SUITE_P(Pages, SendingRulesTest, testing::ValuesIn(masterPages()), PageName());

TEST_P(SendingRulesTest, MissingFieldShowsOneMessageAndSendsNothing) {
    for (const bool bitOption : {true, false}) {
        for (const std::string& missing : GetParam().neededToSend(bitOption)) {
            fill(bitOption);
            window.paste(missing, "");
            window.click(GetParam().sendButton);
            ASSERT_NE(window.box(), nullptr) << missing;
            EXPECT_EQ(window.box()->text().toStdString(), "Data are missing. Please fill Data !!");
            EXPECT_EQ(window.box()->windowTitle().toStdString(), "Error");
            window.answerBox("OK");
            EXPECT_EQ(window.box(), nullptr);
            EXPECT_EQ(sent(), 0U) << missing;
        }
    }
}

TEST_P(SendingRulesTest, SendEmptiesTheStatusOfThePage) {
    fill(true);
    window.click(GetParam().sendButton);
    EXPECT_EQ(sent(), 1U);
    stopWaiting();
    ASSERT_EQ(window.text(GetParam().silenceStatus), "No Answer From PLC");
    window.find<QLineEdit>(GetParam().status)->setText(QStringLiteral("of the last send"));
    window.click(GetParam().sendButton);
    EXPECT_EQ(window.text(GetParam().status), "");
}

TEST_P(SendingRulesTest, ClosedPortIsToldInTheStatusOfThePage) {
    fill(true);
    const bool canSend = window.find<QWidget>(GetParam().sendButton)->isEnabled();
    ASSERT_TRUE(canSend);
    window.click("cmdPortOpen");
    window.find<QWidget>(GetParam().sendButton)->setEnabled(true);
    window.click(GetParam().sendButton);
    EXPECT_EQ(window.text(GetParam().status), "Port Closed");
    for (const char* const status : {"txtRStatus", "txtWStatus", "txtMRStatus", "txtMWStatus"}) {
        EXPECT_EQ(window.text(status) == "Port Closed", GetParam().status == status) << status;
    }
}

TEST_P(SendingRulesTest, ContinuousSendingNeedsEveryFieldTheStationsAndTheCountIncluded) {
    for (const bool bitOption : {true, false}) {
        for (const std::string& missing : GetParam().neededToRepeat(bitOption)) {
            fill(bitOption);
            window.click(GetParam().continuousBox);
            ASSERT_TRUE(window.find<QCheckBox>(GetParam().continuousBox)->isChecked());
            EXPECT_EQ(sentInOneTick(), 1U) << "with every field filled";
            window.click(GetParam().continuousBox);
            stopWaiting();
            window.paste(missing, "");
            window.click(GetParam().continuousBox);
            EXPECT_EQ(sentInOneTick(), 0U) << missing;
            EXPECT_EQ(window.box(), nullptr) << missing;
            window.click(GetParam().continuousBox);
        }
    }
}

TEST_P(SendingRulesTest, NothingIsRepeatedWhileTheBoxIsNotTicked) {
    fill(true);
    EXPECT_EQ(sentInOneTick(), 0U);
}

TEST_P(SendingRulesTest, BoxesOfOtherPagesSendNothing) {
    fill(true);
    for (const MasterPage& page : masterPages()) {
        window.find<QCheckBox>(page.continuousBox)->setChecked(page.name != GetParam().name);
    }
    EXPECT_EQ(sentInOneTick(), 0U);
}

TEST_P(SendingRulesTest, DisabledSendButtonDoesNotStopTheRepetition) {
    fill(true);
    window.click(GetParam().continuousBox);
    window.find<QWidget>(GetParam().sendButton)->setEnabled(false);
    EXPECT_EQ(sentInOneTick(), 1U);
}

} // namespace
} // namespace varda::test
