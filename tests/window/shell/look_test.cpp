#include "window/shell/look.h"

#include "support/temporary_folder.h"
#include "support/window_test.h"
#include "window/controls/frame_font.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QTextBlock>

namespace varda::test {
namespace {

class LookTest : public WindowTest {
protected:
    /// Where the first line of a field stands, by what the field itself says of its layout.
    static int firstBaseline(QWidget* field) {
        const QFontMetrics font = field->fontMetrics();
        if (auto* const frame = qobject_cast<QPlainTextEdit*>(field)) {
            frame->setPlainText(QStringLiteral("FF"));
            return frame
                       ->mapTo(frame->window(),
                               frame->viewport()->mapTo(frame, frame->cursorRect().topLeft()))
                       .y() +
                   font.ascent();
        }
        if (auto* const list = qobject_cast<QListView*>(field);
            list != nullptr && list->model()->rowCount() > 0) {
            const QRect line = list->visualRect(list->model()->index(0, 0));
            return list->viewport()->mapTo(list->window(), line.topLeft()).y() +
                   (line.height() - font.height()) / 2 + font.ascent();
        }
        return field->mapTo(field->window(), QPoint(0, (field->height() - font.height()) / 2)).y() +
               font.ascent();
    }

    static int baseline(const QLabel* label) {
        const QRect text = label->contentsRect();
        const int height = label->fontMetrics().height();
        const bool isCentred = (label->alignment() & Qt::AlignVCenter) != 0;
        const int above = isCentred ? (text.height() - height) / 2 : 0;
        return label->mapTo(label->window(), text.topLeft()).y() + above + label->fontMetrics().ascent();
    }

    /// An empty list has no line that a label could stand on.
    static bool hasLines(QWidget* field) {
        const auto* const list = qobject_cast<QListView*>(field);
        return list == nullptr || list->model()->rowCount() > 0;
    }

    /// A label stands above its field only in the scenario.
    static bool standsBeside(const QLabel* label) {
        const QRect field(label->buddy()->mapTo(label->window(), QPoint(0, 0)), label->buddy()->size());
        const QPoint at = label->mapTo(label->window(), QPoint(0, 0));
        return at.y() < field.bottom() && at.y() + label->height() > field.top();
    }
};

TEST_F(LookTest, LabelsStandOnTheFirstLinesOfTheirFields) {
    driver.window().fileLoader().loadPackets(QStringLiteral(VARDA_DATA_FOLDER "/example-reads.ini"));
    int compared = 0;
    for (int mode = 0; mode < 6; ++mode) {
        driver.click(("optMode_" + std::to_string(mode)).c_str());
        QCoreApplication::processEvents();
        for (const QLabel* const label : driver.window().findChildren<QLabel*>()) {
            if (label->isVisible() && label->buddy() != nullptr && standsBeside(label) &&
                (label->buddy()->height() < 60 || hasLines(label->buddy()))) {
                EXPECT_NEAR(baseline(label), firstBaseline(label->buddy()), 1)
                    << label->objectName().toStdString() << " in mode " << mode;
                ++compared;
            }
        }
    }
    EXPECT_GT(compared, 60);
}

TEST_F(LookTest, RunAndStopKeepTheirWidthInALargerWindow) {
    driver.window().resize(1024, 768);
    QCoreApplication::processEvents();
    const int run = driver.find("cmdRunScenario")->width();
    const int stop = driver.find("cmdStopScenario")->width();
    driver.window().resize(1920, 1000);
    QCoreApplication::processEvents();
    EXPECT_EQ(driver.find("cmdRunScenario")->width(), run);
    EXPECT_EQ(driver.find("cmdStopScenario")->width(), stop);
}

TEST_F(LookTest, FramesHaveAFontOfFixedWidth) {
    for (const char* const field : {"txtSendRData", "txtReceiveMWData", "lstMonitor", "txtSimSendData"}) {
        EXPECT_TRUE(QFontInfo(driver.find(field)->font()).fixedPitch()) << field;
    }
}

TEST_F(LookTest, LongAnswersOfTheTableScrollToTheirEnds) {
    const TemporaryFolder folder;
    const std::string answer = "FFFFA3FF" + std::string(1000, '0');
    writeBytes(folder.file("pairs.ini"),
               "[Information]\nTotal=2\n[Receive]\n0=FF\n1=FFFF\n[Send]\n0=FF\n1=" + answer + "\n");
    driver.click("optMode_4");
    driver.window().fileLoader().loadPackets(QString::fromStdString(folder.file("pairs.ini")));
    const auto* const list = driver.find<QListView>("lstSimSend");
    const int needed = list->fontMetrics().horizontalAdvance(QString::fromStdString(answer));
    EXPECT_GE(list->visualRect(list->model()->index(1, 0)).width(), needed) << "else it ends in dots";
    EXPECT_GE(list->horizontalScrollBar()->maximum(), needed - list->viewport()->width());
}

TEST_F(LookTest, TheFirstFocusIsThePortReadyToBeTypedOver) {
    EXPECT_EQ(driver.window().focusWidget(), driver.find<QComboBox>("cbPort"));
    EXPECT_EQ(driver.find<QComboBox>("cbPort")->lineEdit()->selectedText(), QStringLiteral("COM1"));
}

/// Other modes have it switched off with the write page's fields; what it shows is read out there all the
/// same.
TEST_F(LookTest, TabReachesTheWatchdogOnTheWritePage) {
    driver.click("optMode_1");
    driver.find("txtCurrentData")->setFocus();
    QTest::keyClick(driver.find("txtCurrentData"), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), driver.find("txtWatchDog"));
}

TEST_F(LookTest, EmptyCellsHaveANameForScreenReaders) {
    driver.click("optMode_1");
    const auto* const grid = driver.find<QTableWidget>("gridWriteData");
    ASSERT_NE(grid->item(0, 0), nullptr);
    EXPECT_EQ(grid->item(0, 0)->data(Qt::AccessibleTextRole).toString(), QStringLiteral("empty"));
}

TEST(FixedWidthFont, IsTheWishedOneWhereItIsFixed) {
    const QFont wished(QStringLiteral("DejaVu Sans Mono"));
    EXPECT_EQ(fixedWidthFont(wished, {QStringLiteral("DejaVu Sans")}).families(), wished.families());
}

TEST(FixedWidthFont, IsAnotherWhereTheThemesIsNot) {
    const QFont wished(QStringLiteral("DejaVu Sans"), 13);
    const QFont found =
        fixedWidthFont(wished, {QStringLiteral("DejaVu Serif"), QStringLiteral("DejaVu Sans Mono")});
    EXPECT_TRUE(QFontInfo(found).fixedPitch());
    EXPECT_EQ(found.pointSize(), 13);
}

TEST(FixedWidthFont, IsTheThemesWhereThereIsNone) {
    const QFont wished(QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(fixedWidthFont(wished, {}).families(), wished.families());
}

} // namespace
} // namespace varda::test
