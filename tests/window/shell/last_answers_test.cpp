#include "window/shell/last_answers.h"

#include "support/driven_window.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <gtest/gtest.h>

namespace varda::test {
namespace {

const Bytes answer = {0xFF, 0xFF, 0xA3, 0x02, 0x41, 0x00, 0xB3, 0xD4};
const Bytes laterAnswer = {0xFF, 0xFF, 0xA3, 0x02, 0x42, 0x00, 0xB3, 0x24};
constexpr const char* answerText = "FF FF A3 02 41 00 B3 D4 ";
constexpr int period = 200;

/// A word read that repeats every 200 ms.
class LastAnswersTest : public testing::Test {
protected:
    LastAnswersTest() {
        window.paste("txtReadTimerValue", std::to_string(period));
        window.click("cmdCommTest");
        window.click("cmdPortOpen");
        window.click("optRead_1");
        for (const auto& [list, entry] :
             {std::pair("cbRegister", "SR"), std::pair("cbRegAddress", "000"), std::pair("cbRLength", "1")}) {
            window.choose(list, window.find<QComboBox>(list)->findText(QString::fromLatin1(entry)));
        }
        window.click("chkRTimer");
    }

    /// To the next send, at which the fields are emptied.
    void send() {
        window.farEnd().takeWritten();
        for (int waited = 0; window.farEnd().takeWritten().empty() && waited <= period; waited += 10) {
            window.advance(10);
        }
    }

    void sendAndAnswer(const Bytes& bytes) {
        send();
        window.farEnd().deliver(bytes);
        window.advance(100);
    }

    std::string greyAnswer() {
        return window.find<QPlainTextEdit>("txtReceiveRData")->placeholderText().toStdString();
    }
    std::string greyStatus() { return window.find<QLineEdit>("txtRStatus")->placeholderText().toStdString(); }

    DrivenWindow window;
};

TEST_F(LastAnswersTest, NothingIsGreyBeforeTheFirstAnswer) {
    send();
    EXPECT_EQ(greyAnswer(), "");
    EXPECT_EQ(greyStatus(), "");
}

TEST_F(LastAnswersTest, TheLastAnswerStandsInGreyWhileTheNextIsAwaited) {
    sendAndAnswer(answer);
    EXPECT_EQ(window.text("txtReceiveRData"), answerText);
    send();
    EXPECT_EQ(window.text("txtReceiveRData"), "");
    EXPECT_EQ(window.text("txtRStatus"), "");
    EXPECT_EQ(greyAnswer(), answerText);
    EXPECT_EQ(greyStatus(), "Data Receive OK !!");
    window.farEnd().deliver(laterAnswer);
    window.advance(100);
    send();
    EXPECT_EQ(greyAnswer(), "FF FF A3 02 42 00 B3 24 ");
}

TEST_F(LastAnswersTest, AnswerAndStatusAreInSightAllTheTimeOnceOneCame) {
    sendAndAnswer(answer);
    int blank = 0;
    int textsOnly = 0;
    for (int time = 0; time < 20 * period; time += 10) {
        if (!window.farEnd().takeWritten().empty()) {
            window.farEnd().deliver(answer);
        }
        window.advance(10);
        const bool empty = window.text("txtReceiveRData").empty();
        textsOnly += empty ? 1 : 0;
        blank += empty && greyAnswer().empty() ? 1 : 0;
    }
    EXPECT_GT(textsOnly, 0);
    EXPECT_EQ(blank, 0);
}

TEST_F(LastAnswersTest, AnAnswerOfTheWrongLengthLeavesTheOneBefore) {
    sendAndAnswer(answer);
    sendAndAnswer({0x01, 0x02});
    EXPECT_EQ(window.text("txtReceiveRData"), "");
    EXPECT_EQ(greyAnswer(), answerText);
}

TEST_F(LastAnswersTest, NothingStaysGreyOnceThirteenAnswersInARowHadTheWrongLength) {
    sendAndAnswer(answer);
    for (int request = 0; request < 12; ++request) {
        sendAndAnswer({0x01, 0x02});
    }
    EXPECT_EQ(greyAnswer(), answerText);
    sendAndAnswer({0x01, 0x02});
    EXPECT_EQ(greyAnswer(), "");
    EXPECT_EQ(greyStatus(), "");
}

TEST_F(LastAnswersTest, TheAnswerToAnotherRequestIsNotShownInGrey) {
    sendAndAnswer(answer);
    window.click("chkRTimer");
    window.choose("cbRegAddress", 1);
    window.click("cmdRDSend");
    EXPECT_EQ(window.text("txtReceiveRData"), "");
    EXPECT_EQ(greyAnswer(), "");
    EXPECT_EQ(greyStatus(), "");
}

TEST_F(LastAnswersTest, NothingStaysGreyOnceThirteenRequestsInARowHadNoAnswer) {
    sendAndAnswer(answer);
    for (int request = 0; request < 13; ++request) {
        send();
        EXPECT_EQ(greyAnswer(), answerText) << request;
    }
    send();
    EXPECT_EQ(greyAnswer(), "");
    EXPECT_EQ(greyStatus(), "");
}

TEST_F(LastAnswersTest, NothingStaysGreyOnceTheControllerIsSilent) {
    sendAndAnswer(answer);
    send();
    window.click("chkRTimer");
    window.advance(14 * period);
    EXPECT_EQ(window.text("txtRStatus"), "No Answer From PLC");
    EXPECT_EQ(greyAnswer(), "");
    EXPECT_EQ(greyStatus(), "");
}

TEST_F(LastAnswersTest, NothingStaysGreyOnceTheLineIsGone) {
    sendAndAnswer(answer);
    send();
    window.farEnd().hangUp("gone");
    EXPECT_EQ(greyAnswer(), "");
}

TEST_F(LastAnswersTest, EachPageKeepsItsOwn) {
    sendAndAnswer(answer);
    window.click("optMode_1");
    EXPECT_EQ(window.find<QPlainTextEdit>("txtReceiveWData")->placeholderText().toStdString(), "");
    EXPECT_EQ(greyAnswer(), answerText);
}

/// What pages are told of their requests. @return what stands in grey once `differently` is asked
std::string greyAfter(Mode mode, const char* field, const Bytes& request, const Bytes& differently) {
    DrivenWindow window;
    LastAnswers answers(window.window().form());
    Exchange exchange;
    exchange.mode = mode;
    exchange.request = request;
    exchange.answer = {0xFF, 0xFF, 0xA4, 0x01, 0x00, 0x00, 0x00};
    exchange.outcome = Outcome::Answered;
    answers.told(exchange);
    exchange.outcome = Outcome::Sent;
    exchange.request = differently;
    answers.told(exchange);
    return window.find<QPlainTextEdit>(field)->placeholderText().toStdString();
}

/// As a page that writes words drawn anew at each send.
TEST(LastAnswersToWrites, StayInGreyThoughOtherDataAreWritten) {
    const Bytes request = {0xFF, 0xFF, 0x24, 0x04, 0x2C, 0x00, 0x12, 0x34, 0x00, 0x00};
    Bytes otherData = request;
    otherData[6] = 0x56; // the first byte of the first word
    Bytes elsewhere = request;
    elsewhere[5] = 0x01; // in the address
    for (const Mode mode : {Mode::BitWrite, Mode::WordWrite}) {
        EXPECT_EQ(greyAfter(mode, "txtReceiveWData", request, otherData), "FF FF A4 01 00 00 00 ");
        EXPECT_EQ(greyAfter(mode, "txtReceiveWData", request, elsewhere), "");
    }
}

/// Its points stand where a single write has its data.
TEST(LastAnswersToMixedReads, AreNotShownInGreyWhereAnotherPointIsAskedFor) {
    const Bytes request = {0xFF, 0xFF, 0x25, 0x04, 0x2C, 0x00, 0x12, 0x34, 0x00, 0x00, 0x00};
    Bytes another = request;
    another[7] = 0x35;
    EXPECT_EQ(greyAfter(Mode::MixedRead, "txtReceiveMRData", request, request), "FF FF A4 01 00 00 00 ");
    EXPECT_EQ(greyAfter(Mode::MixedRead, "txtReceiveMRData", request, another), "");
}

} // namespace
} // namespace varda::test
