#include "window/master/write_page_fixture.h"

namespace varda::test {
namespace {

/// Texts that are no numbers, and what is completed all the same.
class WritePageTextsTest : public WritePageTest {
protected:
    /// The next frame on the line. Its length and its check are right, and the page shows it.
    Bytes wholeFrame() {
        driver.click("cmdWDSend");
        Bytes frame = sent(1);
        for (int part = 0; part < 3 && (frame.size() < 6 || frame.size() != frame[3] + 6U); ++part) {
            const Bytes more = sent(1);
            frame.insert(frame.end(), more.begin(), more.end());
        }
        if (frame.size() < 6 || frame.size() != frame[3] + 6U) {
            ADD_FAILURE() << "no whole frame but " << frame.size() << " bytes";
            return frame;
        }
        const std::size_t covered = frame.size() - 2;
        EXPECT_EQ(frame[covered] + 256 * frame[covered + 1], crc16(std::span(frame).first(covered)));
        EXPECT_EQ(text("txtSendWData"), groups(frame));
        return frame;
    }

    static std::string groups(const Bytes& frame) {
        return QByteArray(reinterpret_cast<const char*>(frame.data()), static_cast<qsizetype>(frame.size()))
                   .toHex(' ')
                   .toUpper()
                   .toStdString() +
               " ";
    }

    void pasteUnreadable(const char* list, const char* typed) {
        paste(list, typed);
        EXPECT_NE(driver.box(), nullptr) << typed;
        driver.closeBox();
    }
};

TEST_F(WritePageTextsTest, NumberThatIsNoneCostsTheHeadingsButNeverTheFrame) {
    openLine();
    driver.click("optWrite_1");
    driver.choose("cbWRegister", "W");
    for (const char* const typed : {"x", "40000"}) {
        pasteUnreadable("cbWRegAddress", typed);
        driver.choose("cbWLength", "40");
        EXPECT_EQ(driver.box(), nullptr) << typed;
        EXPECT_EQ(grid()->verticalHeaderItem(0)->text().trimmed(), QString()) << typed;
        EXPECT_EQ(wholeFrame().size(), 88U) << typed;
    }
}

TEST_F(WritePageTextsTest, NumberThatIsNoneCostsNoFrameOfBitsEither) {
    openLine();
    driver.choose("cbWRegister", "M");
    pasteUnreadable("cbWRegAddress", "x");
    driver.choose("cbWLength", "40"); // the row rule chooses a bit, whose address needs the number again
    driver.closeBox();
    EXPECT_EQ(text("cbWRegBit"), "1");
    EXPECT_EQ(wholeFrame().size(), 48U);
}

TEST_F(WritePageTextsTest, CountOfZeroNeedsNoBit) {
    paste("cbWLength", "0");
    driver.choose("cbWRegister", "R");
    driver.choose("cbWRegAddress", "0000");
    EXPECT_EQ(text("cbWRegBit"), "");
    EXPECT_EQ(grid()->rowCount(), 17);
}

TEST_F(WritePageTextsTest, BitThatIsNoneCostsTheRuleItsBitButNeverTheFrame) {
    openLine();
    chooseBits("R", "0001", "2", "8");
    pasteUnreadable("cbWRegBit", "x");
    driver.choose("cbWLength", "32");
    EXPECT_EQ(driver.box(), nullptr);
    EXPECT_EQ(grid()->rowCount(), 3);
    const Bytes frame = wholeFrame();
    EXPECT_EQ(frame.size(), 40U);
    EXPECT_EQ(frame.at(4), 0x12); // the bit that was chosen last
}

TEST_F(WritePageTextsTest, EverySendCompletesTheRequestAlsoAfterAnEmptiedCount) {
    openLine();
    chooseBits("R", "0001", "2", "8");
    clickCell(1, 3);
    driver.type("cbWLength", "");
    EXPECT_EQ(text("txtSendWData"), "");
    EXPECT_EQ(wholeFrame(), (Bytes{0xFF, 0xFF, 0x22, 0x03, 0x12, 0x00, 0x00, 0x58, 0x46}));
    EXPECT_EQ(text("cbWLength"), "1");
}

TEST_F(WritePageTextsTest, EverySendShowsTheRequestAlsoWhereThePortIsClosed) {
    chooseBits("R", "0001", "2", "8");
    driver.find("cmdWDSend")->setEnabled(true);
    pasteUnreadable("cbWRegBit", "x");
    EXPECT_EQ(text("txtSendWData"), "");
    driver.click("cmdWDSend");
    EXPECT_EQ(text("txtSendWData").size(), 16U * 3);
    EXPECT_EQ(text("txtWStatus"), "Port Closed");
}

TEST_F(WritePageTextsTest, KeysThatLeaveTheNumberLeaveTheBit) {
    chooseBits("M", "0002", "14", "4");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Delete}) {
        driver.find("cbWRegAddress")->setFocus();
        QTest::keyClick(driver.find("cbWRegAddress"), Qt::Key_End);
        QTest::keyClick(driver.find("cbWRegAddress"), key);
        EXPECT_EQ(text("cbWRegBit"), "14") << key;
        EXPECT_EQ(imageByte(4), 0x2E) << key;
    }
    driver.choose("cbWRegAddress", "0002");
    EXPECT_EQ(text("cbWRegBit"), "14");
    EXPECT_EQ(imageByte(4), 0x2E);
    driver.choose("cbWRegAddress", "0003");
    EXPECT_EQ(text("cbWRegBit"), "1");
    EXPECT_EQ(imageByte(4), 0x31);
}

TEST_F(WritePageTextsTest, NewKindPutsTheBitBackForTheSameNumberToo) {
    chooseBits("M", "0002", "14", "4");
    driver.choose("cbWRegister", "R");
    driver.choose("cbWRegAddress", "0002");
    EXPECT_EQ(text("cbWRegBit"), "1");
    EXPECT_EQ(imageByte(4), 0x21);
}

TEST_F(WritePageTextsTest, CountOf2000LeftStandingStopsNoOtherField) {
    openLine();
    chooseBits("R", "0000", "0", "8");
    paste("cbWLength", "2000");
    driver.choose("cbWRegBit", "3");
    EXPECT_EQ(driver.box(), nullptr);
    const Bytes frame = wholeFrame();
    EXPECT_EQ(frame.at(3), 10); // the last count that was one
    EXPECT_EQ(frame.at(4), 0x03);
}

TEST_F(WritePageTextsTest, CellClickWithAnEmptiedCountIsOutOfRange) {
    chooseBits("R", "0000", "0", "8");
    driver.type("cbWLength", "");
    clickCell(1, 1);
    EXPECT_EQ(text("txtWStatus"), "Invalid Range !!");
    EXPECT_EQ(cell(1, 1), "");
    EXPECT_EQ(imageByte(6), 0);
}

TEST_F(WritePageTextsTest, GridLaidAnewAfterARandomSendShowsTheImagesWords) {
    openLine();
    chooseWords("W", "0000", "3");
    enterWord(1, 1, "1A", true);
    driver.click("chkRandomWrite");
    const Bytes frame = wholeFrame();
    driver.click("chkCounter");
    driver.choose("cbWRegAddress", "0001");
    for (std::size_t word = 0; word < 3; ++word) {
        const std::size_t low = 6 + 2 * word;
        EXPECT_EQ(cell(1, static_cast<int>(word) + 1),
                  std::to_string(frame.at(low) + 256 * frame.at(low + 1)));
    }
}

TEST_F(WritePageTextsTest, GridLaidAnewShowsNoCheckAsAWord) {
    chooseWords("M", "0045", "88");
    driver.choose("cbWRegAddress", "0046");
    EXPECT_EQ(cell(6, 8), "");
    EXPECT_EQ(cell(6, 9), "");
}

TEST_F(WritePageTextsTest, GridLaidAnewKeepsWhatWasTyped) {
    chooseWords("W", "0000", "3");
    enterWord(1, 1, "1A", true);
    enterWord(1, 2, "0", false);
    enterWord(1, 3, "007", false);
    driver.choose("cbWRegAddress", "0001");
    EXPECT_EQ(cell(1, 1), "1A");
    EXPECT_EQ(cell(1, 2), "0");
    EXPECT_EQ(cell(1, 3), "007");
}

TEST_F(WritePageTextsTest, GridLaidAnewShowsNoWordThatTheImageHasLost) {
    openLine();
    chooseWords("K", "0046", "37"); // the first word to edit lies behind the 37 of the frame
    enterWord(3, 15, "5", false);
    driver.choose("cbWRegAddress", "0045");
    EXPECT_EQ(cell(3, 15), "5");
    driver.click("chkRandomWrite"); // draws words far behind the frame
    wholeFrame();
    driver.click("chkCounter");
    driver.choose("cbWRegAddress", "0046");
    EXPECT_EQ(cell(3, 15), "");
}

} // namespace
} // namespace varda::test
