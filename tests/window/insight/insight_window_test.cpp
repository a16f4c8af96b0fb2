#include "window/insight/insight_fixture.h"
#include "window/insight/watch_model.h"

#include <QAbstractButton>
#include <QApplication>

#include <array>

namespace varda::test {
namespace {

class InsightWindowTest : public InsightTest {
protected:
    InsightWindowTest() : InsightTest(false) {}
};

TEST_F(InsightWindowTest, IsNotThereUntilItIsOpened) {
    EXPECT_EQ(trace(), nullptr);
    EXPECT_FALSE(window.find<QAbstractButton>("openTrace")->isChecked());
    openPort();
    chooseWord(57);
    exchange(wordOne);
    openTrace();
    settle();
    EXPECT_TRUE(trace()->isVisible());
    EXPECT_EQ(rows(), 0) << "what went over the line before";
}

TEST_F(InsightWindowTest, TheButtonAndF9OpenAndCloseIt) {
    auto* const button = window.find<QAbstractButton>("openTrace");
    EXPECT_EQ(button->text(), QStringLiteral("Trace"));
    EXPECT_FALSE(button->accessibleName().isEmpty());
    EXPECT_TRUE(button->toolTip().contains(QLatin1String("F9")));
    button->click();
    EXPECT_TRUE(trace()->isVisible());
    button->click();
    EXPECT_FALSE(trace()->isVisible());
    QTest::keyClick(&window.window(), Qt::Key_F9);
    EXPECT_TRUE(trace()->isVisible());
    EXPECT_TRUE(button->isChecked());
    strike(trace(), Qt::Key_F9);
    EXPECT_FALSE(trace()->isVisible());
    EXPECT_FALSE(button->isChecked());
}

TEST_F(InsightWindowTest, ClosedItWritesNothingDownAndKeepsWhatWasSeen) {
    openTrace();
    openPort();
    chooseWord(57);
    exchange(wordOne);
    settle();
    const int seen = rows();
    EXPECT_GE(seen, 3);
    closeTrace();
    EXPECT_FALSE(window.find<QAbstractButton>("openTrace")->isChecked());
    exchange(wordOne);
    openTrace();
    settle();
    EXPECT_EQ(rows(), seen);
    exchange(wordOne);
    settle();
    EXPECT_EQ(rows(), seen + 2);
}

TEST_F(InsightWindowTest, ClosedItCountsNothingAndWatchesNothing) {
    const auto seen = [this] {
        std::vector<std::string> texts;
        for (const char* const name : {"statisticsTable", "watchTable"}) {
            showTab(texts.empty() ? 1 : 2);
            const auto* const table = find<QTableView>(name);
            for (int column = 0; column < table->model()->columnCount(); ++column) {
                const bool isAge = name == std::string("watchTable") && column == WatchModel::Age;
                texts.push_back(isAge ? "" : cellText(table, 0, column));
            }
        }
        return texts;
    };
    openTrace();
    openPort();
    chooseWord(57);
    exchange(wordOne);
    const auto before = seen();
    closeTrace();
    exchange(checked({0xFF, 0xFF, 0xA3, 0x02, 0x78, 0x56}));
    openTrace();
    EXPECT_EQ(seen(), before);
    exchange(checked({0xFF, 0xFF, 0xA3, 0x02, 0x78, 0x56}));
    window.advance(1000);
    EXPECT_NE(seen(), before);
    EXPECT_EQ(cellText(find<QTableView>("statisticsTable"), 0, 1), "2") << "sent";
    EXPECT_EQ(cellText(find<QTableView>("watchTable"), 0, WatchModel::Changes), "1");
}

TEST_F(InsightWindowTest, StandsBesideTheMainWindowWhichGoesOn) {
    openTrace();
    EXPECT_TRUE(trace()->isWindow());
    EXPECT_FALSE(trace()->isModal());
    EXPECT_EQ(trace()->parentWidget(), nullptr);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_FALSE(trace()->testAttribute(Qt::WA_QuitOnClose)) << "the program ends with the main window";
    window.window().close();
    EXPECT_FALSE(trace()->isVisible());
}

/// Whole groups of controls are switched by the beginnings of their names.
TEST_F(InsightWindowTest, NoControlIsNamedAsOneOfTheField) {
    openTrace();
    QStringList names = {QStringLiteral("openTrace")};
    for (const QWidget* const control : trace()->findChildren<QWidget*>()) {
        names.append(control->objectName());
    }
    for (const QString& name : names) {
        for (const char* const prefix :
             {"cb", "txt", "chk", "opt", "cmd", "lst", "grid", "lbl", "tmr", "frm", "fra", "mnu", "dlg"}) {
            EXPECT_FALSE(name.startsWith(QLatin1String(prefix))) << name.toStdString();
        }
    }
}

TEST_F(InsightWindowTest, EveryControlHasANameForScreenReaders) {
    openTrace();
    for (const char* const name : {"traceTable", "fieldTable", "hexBytes", "statisticsTable", "responsePlot",
                                   "watchTable", "insightTabs"}) {
        EXPECT_FALSE(find(name)->accessibleName().isEmpty()) << name;
    }
}

TEST_F(InsightWindowTest, FitsASmallScreenWithNothingCutOff) {
    openTrace();
    for (const QSize size : {QSize(1016, 704), QSize(674, 448)}) {
        trace()->resize(size);
        QCoreApplication::processEvents();
        EXPECT_EQ(trace()->size(), size);
        for (const QAbstractButton* const button : trace()->findChildren<QAbstractButton*>()) {
            if (button->isVisible() && !button->text().isEmpty()) {
                const QRect place(button->mapTo(trace(), QPoint(0, 0)), button->size());
                EXPECT_TRUE(trace()->rect().contains(place)) << button->objectName().toStdString();
                EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text()))
                    << button->objectName().toStdString();
            }
        }
    }
}

/// Of requests and answers, of the modes, of the texts on the pages: all as without the trace.
TEST_F(InsightWindowTest, ThePagesSendAndShowTheSameWithAndWithoutIt) {
    struct Seen {
        std::vector<Bytes> sent;
        std::vector<std::string> texts;
        bool operator==(const Seen&) const = default;
    };
    const auto walk = [](bool isOpen) {
        DrivenWindow driven;
        if (isOpen) {
            driven.click("openTrace");
        }
        Seen seen;
        driven.paste("cbPort", "COM1");
        driven.click("cmdCommTest");
        driven.click("cmdPortOpen");
        driven.click("optRead_1");
        driven.choose("cbRegister", 6);
        driven.choose("cbRegAddress", 57);
        driven.choose("cbRLength", 0);
        for (const Bytes& answer : {Bytes{0xFF, 0xFF, 0xA3, 0x02, 0x34, 0x12, 0x55, 0xC9}, Bytes{1, 2, 3},
                                    Bytes{}, Bytes{0xFF, 0xFF, 0xA3, 0x02, 0x34, 0x12, 0, 0}}) {
            driven.click("cmdRDSend");
            driven.advance(20);
            if (!answer.empty()) {
                driven.farEnd().deliver(answer);
            }
            driven.advance(8000);
            for (const auto& write : driven.farEnd().takeWritten()) {
                seen.sent.push_back(write.bytes);
            }
            for (const char* const field : {"txtSendRData", "txtReceiveRData", "txtRStatus", "txtTotalData",
                                            "txtCurrentData", "txtWatchDog"}) {
                seen.texts.push_back(driven.text(field));
            }
        }
        return seen;
    };
    const Seen without = walk(false);
    EXPECT_EQ(without.sent.size(), 4U);
    EXPECT_TRUE(walk(true) == without);
}

} // namespace
} // namespace varda::test
