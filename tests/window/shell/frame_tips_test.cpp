#include "support/tool_tip.h"
#include "support/window_test.h"

#include <QPlainTextEdit>
#include <QToolTip>

namespace varda::test {
namespace {

class FrameTipsTest : public WindowTest {
protected:
    void TearDown() override { QToolTip::hideText(); }

    /// The tool tip of the character at a place of a frame text.
    std::string tip(const char* field, int place) {
        auto* const frame = driver.find<QPlainTextEdit>(field);
        QTextCursor cursor(frame->document());
        cursor.setPosition(place);
        const QPoint left = frame->cursorRect(cursor).center();
        return tipAt(field, left + QPoint(3, 0));
    }

    std::string tipAt(const char* field, const QPoint& point) {
        return toolTipAt(driver.find<QPlainTextEdit>(field)->viewport(), point);
    }

    void readWord(const char* number) {
        driver.click("optRead_1");
        driver.choose("cbRegister", "W");
        driver.choose("cbRegAddress", number);
        driver.choose("cbRLength", "1");
    }
};

TEST_F(FrameTipsTest, EachByteOfARequestSaysWhatItIs) {
    readWord("0057");
    EXPECT_EQ(text("txtSendRData").substr(0, 21), "FF FF 23 03 39 02 01 ");
    EXPECT_EQ(tip("txtSendRData", 0), "DA: station 255");
    EXPECT_EQ(tip("txtSendRData", 3), "SA: station 255");
    EXPECT_EQ(tip("txtSendRData", 6), "CMD 23h: word read");
    EXPECT_EQ(tip("txtSendRData", 13), "Address 0239h: W 0057");
    EXPECT_EQ(tip("txtSendRData", 18), "Count 01h: 1 word");
    EXPECT_TRUE(tip("txtSendRData", 21).ends_with("right"));
}

TEST_F(FrameTipsTest, AnAnswerIsReadByTheRequestThatItAnswers) {
    openLine();
    readWord("0057");
    driver.click("cmdRDSend");
    ASSERT_EQ(sent(9).size(), 9U);
    line.write({0xFF, 0xFF, 0xA3, 0x02, 0x34, 0x12, 0x00, 0x00});
    ASSERT_TRUE(showsSoon("txtReceiveRData", "FF FF A3 02 34 12 00 00 "));
    driver.choose("cbRegAddress", "0058"); // is not what was asked for
    EXPECT_EQ(tip("txtReceiveRData", 12), "W 0057 = 1234h = 4660");
}

TEST_F(FrameTipsTest, NoTipBesideTheText) {
    readWord("0057");
    const QWidget* const viewport = driver.find<QPlainTextEdit>("txtSendRData")->viewport();
    EXPECT_EQ(tipAt("txtSendRData", QPoint(viewport->width() - 2, viewport->height() - 2)), "");
    EXPECT_EQ(tipAt("txtReceiveRData", QPoint(10, 10)), "");
}

TEST_F(FrameTipsTest, PreparedFramesRunTogetherAndHaveTheirTipsToo) {
    driver.click("optMode_4");
    paste("txtSimReceive", "FFFF2303390201A5A5");
    paste("txtSimSend", "FFFFA302341252A5");
    EXPECT_EQ(tip("txtSimReceive", 8), "Address 0239h: W 0057");
    EXPECT_EQ(tip("txtSimSend", 9), "W 0057 = 1234h = 4660");
}

} // namespace
} // namespace varda::test
