#include "window/simulator/simulation_page_fixture.h"

#include <QPlainTextEdit>

namespace varda::test {
namespace {

class ResponderOnALineTest : public SimulationPageTest {
protected:
    ResponderOnALineTest() {
        openLine();
        addBitRead("0002", "2");
        addBitRead("0003", "1");
    }

    Bytes requestBytes(int row) { return bytesOfFrameText(request(row)); }
    std::string sentText(std::size_t count) {
        std::string digits;
        for (const std::uint8_t byte : sent(count)) {
            digits += QString::asprintf("%02X", byte).toStdString();
        }
        return digits;
    }
};

TEST_F(ResponderOnALineTest, RequestInOnePieceIsAnswered) {
    line.write(requestBytes(1));
    EXPECT_EQ(sentText(7), answer(1));
    EXPECT_EQ(text("txtSimRP"), request(1));
    EXPECT_EQ(text("txtSimSP"), answer(1));
    EXPECT_EQ(selectedRequest(), 1);
    EXPECT_EQ(selectedAnswer(), 1);
    EXPECT_FALSE(driver.link().InReceive);
    EXPECT_EQ(text("txtCurrentData"), "0");
}

TEST_F(ResponderOnALineTest, SentIsGreyWhileItAnswersAnEarlierRequest) {
    const auto isGrey = [this] {
        const auto* const answered = driver.find<QPlainTextEdit>("txtSimSP");
        const auto marked = answered->extraSelections();
        return !marked.isEmpty() && marked.first().format.foreground().color() ==
                                        answered->palette().color(QPalette::PlaceholderText);
    };
    line.write(requestBytes(1));
    EXPECT_EQ(sentText(7), answer(1));
    EXPECT_FALSE(isGrey());
    line.write({0x01, 0x02});
    ASSERT_TRUE(showsSoon("txtSimRP", "0102"));
    EXPECT_EQ(text("txtSimSP"), answer(1)); // its text stays
    EXPECT_TRUE(isGrey());
    line.write(requestBytes(0));
    EXPECT_EQ(sentText(8), answer(0));
    EXPECT_FALSE(isGrey());
}

TEST_F(ResponderOnALineTest, MatchEnablesDeleteAndClearWithoutTheFocus) {
    for (const char* const button : {"cmdSimDelete", "cmdSimClear"}) {
        driver.find(button)->setEnabled(false);
    }
    for (int time = 0; time < 2; ++time) { // the second time the pair is selected already
        driver.find("cbSimDA")->setFocus();
        driver.find("cmdSimDelete")->setEnabled(false);
        line.write(requestBytes(0));
        ASSERT_TRUE(runUntil([this] { return driver.isEnabled("cmdSimDelete"); }));
        EXPECT_TRUE(driver.isEnabled("cmdSimClear"));
        EXPECT_EQ(selectedAnswer(), 0);
    }
}

TEST_F(ResponderOnALineTest, RequestInTwoClosePiecesIsAnswered) {
    const Bytes whole = requestBytes(0);
    line.write(Bytes(whole.begin(), whole.begin() + 4));
    runFor(std::chrono::milliseconds(80));
    line.write(Bytes(whole.begin() + 4, whole.end()));
    EXPECT_EQ(sentText(8), answer(0));
}

TEST_F(ResponderOnALineTest, RequestSplitByALongPauseIsDiscardedPieceByPiece) {
    const Bytes whole = requestBytes(0);
    line.write(Bytes(whole.begin(), whole.begin() + 4));
    runFor(std::chrono::milliseconds(400));
    line.write(Bytes(whole.begin() + 4, whole.end()));
    runFor(std::chrono::milliseconds(400));
    EXPECT_TRUE(line.readAvailable().empty());
    EXPECT_EQ(selectedRequest(), -1);
    EXPECT_EQ(selectedAnswer(), -1);
}

TEST_F(ResponderOnALineTest, UnknownRequestLeavesInReceiveSetUntilAKnownOne) {
    Bytes longer = requestBytes(0);
    longer.push_back(0);
    line.write(longer);
    runFor(std::chrono::milliseconds(400));
    EXPECT_TRUE(line.readAvailable().empty());
    EXPECT_TRUE(driver.link().InReceive);
    EXPECT_EQ(text("txtSimRP"), request(0) + "00");
    line.write(requestBytes(0));
    EXPECT_EQ(sentText(8), answer(0));
    EXPECT_FALSE(driver.link().InReceive);
}

TEST_F(ResponderOnALineTest, LowestOfEqualRequestsAnswersAlsoAfterEdits) {
    load(write("equal.ini",
               "[Information]\nTotal=3\n[Receive]\n0=AA\n1=BB\n2=BB\n[Send]\n0=01\n1=02\n2=03\n"));
    line.write({0xBB});
    EXPECT_EQ(sentText(1), "02");
    clickRow("lstSimReceive", 0);
    driver.click("cmdSimDelete");
    line.write({0xBB});
    EXPECT_EQ(sentText(1), "02");
    clickRow("lstSimReceive", 0);
    driver.click("cmdSimDelete");
    line.write({0xBB});
    EXPECT_EQ(sentText(1), "03");
}

TEST_F(ResponderOnALineTest, LowerCaseRequestOfAFileNeverMatches) {
    load(write("lower.ini", "[Information]\nTotal=1\n[Receive]\n0=aa\n[Send]\n0=01\n"));
    line.write({0xAA});
    runFor(std::chrono::milliseconds(400));
    EXPECT_TRUE(line.readAvailable().empty());
    EXPECT_EQ(text("txtSimRP"), "AA");
}

TEST_F(ResponderOnALineTest, EmptyTableDiscardsEveryRequest) {
    const Bytes known = requestBytes(0);
    clickRow("lstSimReceive", 0);
    driver.click("cmdSimClear");
    answerQuestion(true);
    line.write(known);
    runFor(std::chrono::milliseconds(400));
    EXPECT_TRUE(line.readAvailable().empty());
}

} // namespace
} // namespace varda::test
