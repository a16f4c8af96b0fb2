#include "core/pairs/packet_builders.h"
#include "core/protocol/crc16.h"
#include "support/window_test.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QDialog>
#include <QListView>
#include <QListWidget>
#include <QTableWidget>

#include <array>
#include <span>

namespace varda::test {
namespace {

constexpr std::array badTexts = {"x", "", "40000", "-1", "99999999999", "&H", "1e5", "2000", "FFFFF"};

/// Texts that no handler can read, in the fields that stand beside the pages of a master: whatever fails on
/// the way, what is prepared, stored or sent is whole.
class BadTextsTest : public WindowTest {
protected:
    void closeBoxes() {
        while (driver.box() != nullptr) {
            driver.closeBox();
        }
    }

    /// Presses a button, whether or not it is enabled, and puts aside what is reported.
    void press(const char* button) {
        driver.find(button)->setEnabled(true);
        driver.click(button);
        closeBoxes();
    }

    /// Sets a field, or chooses in a list, and puts aside what is reported.
    void set(const char* field, const std::string& value) {
        paste(field, value);
        closeBoxes();
    }
};

class BadSimulatorTextsTest : public BadTextsTest, public testing::WithParamInterface<const char*> {
protected:
    BadSimulatorTextsTest() { driver.click("optMode_4"); }

    void fillFields() {
        driver.choose("cbSimMode", GetParam());
        if (driver.box() != nullptr) {
            answerQuestion(false);
        }
        set("cbSimDA", "1");
        set("cbSimSA", "2");
        set("cbSimReg", "M");
        set("cbSimAddress", "0012");
        set("cbSimBit", "3");
        set("cbSimLength", "2");
        set("txtSimData", "1234");
        driver.click("optSimOnOff_0");
    }

    void pressAll() {
        for (const char* const button : {"cmdSimAddListBox", "cmdSimAddListBox", "cmdSimSendDataInputOK",
                                         "cmdSimInputOK", "cmdSimDelListBox", "cmdSimInputOK"}) {
            press(button);
        }
    }

    int pairs() { return driver.find<QListView>("lstSimReceive")->model()->rowCount(); }

    Bytes packet(const char* list, int row) {
        const auto* const model = driver.find<QListView>(list)->model();
        return bytesOfFrameText(model->index(row, 0).data().toString().toStdString());
    }

    /// The check of a prepared packet covers 7 bytes of a read request and of the answer to bits, else the
    /// body, and for answers one zero byte more.
    static bool hasItsCheck(const Bytes& packet) {
        const std::uint8_t code = packet.at(2);
        Bytes covered(packet.begin(), packet.end() - 2);
        if (code == 0x21 || code == 0x23 || code == 0xA1) {
            covered.resize(7);
        } else if (code >= 0x80) {
            covered.push_back(0);
        }
        const std::size_t check = packet.size() - 2;
        return packet.at(check) + 256 * packet.at(check + 1) == crc16(covered);
    }

    void expectWholePairs(const std::string& story) {
        for (int row = 0; row < pairs(); ++row) {
            EXPECT_TRUE(hasItsCheck(packet("lstSimReceive", row))) << story << ", request " << row;
            EXPECT_TRUE(hasItsCheck(packet("lstSimSend", row))) << story << ", answer " << row;
        }
    }
};

TEST_P(BadSimulatorTextsTest, LeaveEveryPreparedPairWhole) {
    for (const char* const field : {"cbSimDA", "cbSimSA", "cbSimReg", "cbSimAddress", "cbSimBit",
                                    "cbSimLength", "txtSimData", "txtSimSendData"}) {
        for (const char* const bad : badTexts) {
            fillFields();
            set(field, bad);
            pressAll();
            fillFields();
            pressAll();
            expectWholePairs(std::string(field) + " " + bad);
        }
    }
    EXPECT_GT(pairs(), 50);
}

INSTANTIATE_TEST_SUITE_P(AllKinds, BadSimulatorTextsTest,
                         testing::Values("Bit Read", "Word Read", "Bit Write", "Word Write"),
                         [](const auto& kind) {
                             std::string name = kind.param;
                             std::erase(name, ' ');
                             return name;
                         });

TEST_F(BadTextsTest, OfTheWordDialogLeaveTheNextFrameWhole) {
    openLine();
    driver.click("optMode_1");
    driver.click("optWrite_1");
    set("cbWRegister", "W");
    set("cbWRegAddress", "0000");
    set("cbWLength", "3");
    auto* const grid = driver.find<QTableWidget>("gridWriteData");
    for (const char* const bad : badTexts) {
        for (const bool hexadecimal : {false, true}) {
            QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                              grid->visualItemRect(grid->item(0, 1)).center());
            auto* const dialog = driver.window().findChild<QDialog*>(QStringLiteral("frmWriteWord"));
            ASSERT_NE(dialog, nullptr);
            dialog->findChild<QCheckBox*>(QStringLiteral("chkWWHex"))->setChecked(hexadecimal);
            dialog->findChild<QLineEdit*>(QStringLiteral("txtWordWrite"))->setText(QString::fromLatin1(bad));
            QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("cmdInputOK")), Qt::LeftButton);
            closeBoxes();
            dialog->close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            driver.click("cmdWDSend");
            const Bytes frame = sent(14);
            ASSERT_EQ(frame.size(), 14U) << bad;
            EXPECT_EQ(frame[12] + 256 * frame[13], crc16(std::span(frame).first(12))) << bad;
        }
    }
}

TEST_F(BadTextsTest, OfAScenarioEndItsRunAndTheNextOneSendsItsLines) {
    openLine();
    auto* const lines = driver.find<QListWidget>("lstSchedule");
    const QString whole = QStringLiteral("FF FF 23 03 00 02 01 46 6C ");
    const Bytes wholeBytes = {0xFF, 0xFF, 0x23, 0x03, 0x00, 0x02, 0x01, 0x46, 0x6C};
    for (const char* const bad : badTexts) {
        lines->clear();
        lines->addItem(QString::fromLatin1(bad));
        set("txtScnPeriod", "1");
        press("cmdRunScenario");
        runUntil([this] { return !driver.isEnabled("cmdStopScenario") || driver.box() != nullptr; },
                 std::chrono::milliseconds(50));
        closeBoxes();
        set("txtScnPeriod", bad);
        press("cmdStopScenario");
        line.readAvailable();

        lines->clear();
        lines->addItem(whole);
        set("txtScnPeriod", "20");
        press("cmdRunScenario");
        const Bytes frame = sent(9);
        ASSERT_GE(frame.size(), 9U) << bad;
        EXPECT_EQ(Bytes(frame.begin(), frame.begin() + 9), wholeBytes) << bad;
        press("cmdStopScenario");
    }
}

} // namespace
} // namespace varda::test
