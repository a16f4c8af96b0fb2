#include "window/insight/trace_panel.h"

#include "core/base/runtime_error.h"
#include "core/insight/link_statistics.h"
#include "core/insight/register_names.h"
#include "core/insight/register_watch.h"
#include "support/temporary_folder.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/message_boxes.h"
#include "window/controls/saving.h"
#include "window/controls/sliced_work.h"

#include <QAbstractButton>
#include <QAction>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

namespace varda::test {
namespace {

using namespace window;

/// Waits end one at a time, as the events of a window come.
class SteppedClock : public Clock {
public:
    Time now() const override { return {}; }
    void schedule(Duration /*wait*/, std::function<void()> due) override { waits_.push_back(std::move(due)); }
    /// Ends the wait that began first. @return false where nothing waits
    bool step() {
        if (waits_.empty()) {
            return false;
        }
        const auto due = std::move(waits_.front());
        waits_.pop_front();
        due();
        return true;
    }

private:
    std::deque<std::function<void()>> waits_;
};

/// A panel on a full trace: every second line was sent, the others came in.
class TraceSlicesTest : public testing::Test {
protected:
    static constexpr int lineCount = static_cast<int>(Trace::mostLines);
    static constexpr int slice = static_cast<int>(SlicedWork::slice);

    TraceSlicesTest() {
        for (int line = 0; line < lineCount; ++line) {
            TraceLine added;
            added.direction = line % 2 == 0 ? Direction::Sent : Direction::Received;
            added.bytes = {0x23};
            added.size = 1;
            trace_.append(std::move(added));
        }
        window_.resize(900, 500);
        window_.show();
        panel_.takeNews();
        QObject::connect(model(), &QAbstractItemModel::rowsInserted, &window_,
                         [this](const QModelIndex&, int first, int last) { inserted_ += last - first + 1; });
        finish();
        EXPECT_EQ(rows(), lineCount);
    }

    QAbstractItemModel* model() { return table()->model(); }
    QTableView* table() { return window_.findChild<QTableView*>(QStringLiteral("traceTable")); }
    int rows() { return model()->rowCount(); }
    std::string state() {
        return window_.findChild<QLabel*>(QStringLiteral("traceState"))->text().toStdString();
    }
    QAbstractButton* cancel() { return window_.findChild<QAbstractButton*>(QStringLiteral("cancelWork")); }
    void set(const char* field, const char* text) {
        window_.findChild<QLineEdit*>(QLatin1String(field))->setText(QLatin1String(text));
    }
    void press(const char* button) { window_.findChild<QAbstractButton*>(QLatin1String(button))->click(); }
    void exportAll(const std::string& path) {
        window_.findChild<QAction*>(QStringLiteral("exportAllText"))->trigger();
        auto* const dialog = window_.findChild<QFileDialog*>();
        EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Export 100000 lines"));
        dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(path));
        QMetaObject::invokeMethod(dialog, "accept");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    /// Lets everything go on to its end. @return in how many steps, each of which has added a slice at most
    int finish() {
        int steps = 0;
        for (inserted_ = 0; clock_.step(); ++steps) {
            EXPECT_LE(inserted_, slice) << "step " << steps;
            inserted_ = 0;
        }
        return steps;
    }
    bool step() { return clock_.step(); }

    TemporaryFolder folder_;
    SteppedClock clock_;
    Trace trace_;
    int inserted_ = 0; ///< rows, since the last step
    QWidget window_;

private:
    LinkStatistics statistics_;
    RegisterWatch watch_;
    RegisterNames names_;
    MessageBoxes boxes_{&window_};
    Events events_{boxes_};
    FileDialogs files_{&window_, QString::fromStdString(folder_.path())};
    FileTalk talk_{[](const RuntimeError& error) { ADD_FAILURE() << error.what(); }, {}};
    TracePanel panel_{InsightContext{{clock_, trace_, statistics_, watch_, names_}, events_, files_, talk_},
                      &window_};
};

TEST_F(TraceSlicesTest, AFilterLooksAtAThousandLinesBetweenTheEventsOfTheWindow) {
    set("traceFilter", "sent");
    EXPECT_LE(rows(), 2 * slice);
    EXPECT_TRUE(cancel()->isVisible());
    EXPECT_NE(state().find(" %"), std::string::npos) << state();
    EXPECT_GE(finish(), lineCount / slice - 3);
    EXPECT_EQ(rows(), lineCount / 2);
    EXPECT_EQ(state(), "50000 of 100000 lines");
    EXPECT_FALSE(cancel()->isVisible());
}

TEST_F(TraceSlicesTest, AnotherFilterTakesThePlaceOfOneThatIsUnderWay) {
    set("traceFilter", "sent");
    step();
    set("traceFilter", "received");
    finish();
    EXPECT_EQ(rows(), lineCount / 2);
    for (int row = 0; row < rows(); row += 999) {
        EXPECT_EQ(model()->index(row, 2).data().toString(), QStringLiteral("received"));
    }
}

TEST_F(TraceSlicesTest, AFilterThatIsCancelledShowsAllLines) {
    set("traceFilter", "wrong");
    step();
    cancel()->click();
    finish();
    EXPECT_EQ(rows(), lineCount);
    EXPECT_EQ(window_.findChild<QLineEdit*>(QStringLiteral("traceFilter"))->text(), QString());
    EXPECT_FALSE(cancel()->isVisible());
}

TEST_F(TraceSlicesTest, WhatIsCancelledWhileAFilterIsUnderWayLeavesTheFilterAlone) {
    set("traceFilter", "sent");
    set("traceFind", "marked");
    press("findNext");
    cancel()->click();
    EXPECT_EQ(window_.findChild<QLineEdit*>(QStringLiteral("traceFilter"))->text(), QStringLiteral("sent"));
    EXPECT_TRUE(cancel()->isVisible()) << "the filter can be cancelled yet";
    finish();
    EXPECT_EQ(rows(), lineCount / 2);
    EXPECT_FALSE(table()->currentIndex().isValid()) << "nothing is found any more";
}

/// All lines are what cancelling would bring.
TEST_F(TraceSlicesTest, LinesThatComeBackWithoutAFilterCannotBeCancelled) {
    set("traceFilter", "sent");
    finish();
    set("traceFilter", "");
    EXPECT_NE(state().find(" %"), std::string::npos) << state();
    EXPECT_FALSE(cancel()->isVisible());
    finish();
    EXPECT_EQ(rows(), lineCount);
}

/// Typed while paused, too, and what is new stays away.
TEST_F(TraceSlicesTest, PausedAFilterShowsLinesOfBeforeAlone) {
    press("pauseTrace");
    TraceLine added;
    added.direction = Direction::Sent;
    trace_.append(std::move(added)); // the oldest goes for it, which was sent as well
    set("traceFilter", "sent");
    finish();
    EXPECT_EQ(rows(), lineCount / 2 - 1);
    press("pauseTrace");
    finish();
    EXPECT_EQ(rows(), lineCount / 2);
}

TEST_F(TraceSlicesTest, FindLooksAtAThousandLinesBetweenTheEventsOfTheWindow) {
    trace_.mark(90'000, true);
    set("traceFind", "marked");
    press("findNext");
    EXPECT_FALSE(table()->currentIndex().isValid());
    EXPECT_TRUE(cancel()->isVisible());
    EXPECT_GE(finish(), 90'000 / slice - 1);
    EXPECT_EQ(table()->currentIndex().row(), 90'000);
    EXPECT_FALSE(cancel()->isVisible());
}

TEST_F(TraceSlicesTest, FindWaitsForAFilterThatIsUnderWay) {
    trace_.mark(90'000, true);
    set("traceFilter", "sent");
    set("traceFind", "marked");
    press("findNext");
    step();
    EXPECT_EQ(state().find("No such line"), std::string::npos) << state();
    finish();
    EXPECT_EQ(table()->currentIndex().row(), 45'000);
    EXPECT_FALSE(cancel()->isVisible());
}

TEST_F(TraceSlicesTest, FindCanBeCancelled) {
    trace_.mark(90'000, true);
    set("traceFind", "marked");
    press("findNext");
    step();
    cancel()->click();
    finish();
    EXPECT_FALSE(table()->currentIndex().isValid());
    EXPECT_NE(state().find("Cancelled"), std::string::npos);
}

TEST_F(TraceSlicesTest, AnExportWritesAThousandLinesBetweenTheEventsOfTheWindow) {
    const std::string path = folder_.file("all.txt");
    exportAll(path);
    EXPECT_NE(state().find("writing, 1 %"), std::string::npos) << state();
    EXPECT_TRUE(cancel()->isVisible());
    step();
    EXPECT_NE(state().find("writing, 2 %"), std::string::npos) << state();
    EXPECT_EQ(finish(), lineCount / slice - 2);
    EXPECT_NE(state().find("100000 lines written to all.txt"), std::string::npos) << state();
    EXPECT_FALSE(cancel()->isVisible());
    std::ifstream file(path);
    EXPECT_EQ(std::count(std::istreambuf_iterator(file), {}, '\n'), lineCount + 1) << "a heading, too";
}

TEST_F(TraceSlicesTest, NoSecondExportBeginsWhileOneIsUnderWay) {
    const auto* const button = window_.findChild<QAbstractButton*>(QStringLiteral("exportTrace"));
    EXPECT_TRUE(button->isEnabled());
    exportAll(folder_.file("all.txt"));
    EXPECT_FALSE(button->isEnabled());
    finish();
    EXPECT_TRUE(button->isEnabled());
    exportAll(folder_.file("again.txt"));
    EXPECT_FALSE(button->isEnabled());
    cancel()->click();
    EXPECT_TRUE(button->isEnabled());
}

TEST_F(TraceSlicesTest, AnExportTellsHowManyLinesItWroteAndNotHowManyWereAskedFor) {
    exportAll(folder_.file("all.txt"));
    for (int line = 0; line < 5000; ++line) {
        trace_.append({}); // pushes out lines that were not written yet, and some that were
    }
    finish();
    EXPECT_NE(state().find("96000 lines written to all.txt"), std::string::npos) << state();
}

TEST_F(TraceSlicesTest, AnExportThatIsCancelledLeavesNoFile) {
    const std::string path = folder_.file("all.txt");
    exportAll(path);
    step();
    cancel()->click();
    finish();
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_NE(state().find("Cancelled"), std::string::npos);
}

TEST_F(TraceSlicesTest, CopyingLooksAtAThousandLinesBetweenTheEventsOfTheWindow) {
    const auto run = [this](const char* action) {
        window_.findChild<QAction*>(QLatin1String(action))->trigger();
    };
    const auto copied = [] { return QGuiApplication::clipboard()->text(); };
    table()->selectAll();
    for (const char* const action : {"copyText", "copyHex"}) {
        QGuiApplication::clipboard()->setText(QStringLiteral("before"));
        run(action);
        EXPECT_NE(state().find("copying, 1 %"), std::string::npos) << state();
        EXPECT_TRUE(cancel()->isVisible());
        EXPECT_EQ(copied(), QStringLiteral("before"));
        EXPECT_EQ(finish(), lineCount / slice - 1);
        EXPECT_FALSE(cancel()->isVisible());
        const bool isHex = action == std::string("copyHex");
        EXPECT_EQ(copied().count(QLatin1Char('\n')), isHex ? lineCount - 1 : lineCount + 1);
    }
    run("copyText");
    cancel()->click();
    finish();
    EXPECT_EQ(copied().left(3), QStringLiteral("23\n")) << "what was there before";
    EXPECT_NE(state().find("Cancelled"), std::string::npos);
}

TEST_F(TraceSlicesTest, MarksOfAllLinesAreOneChange) {
    const auto changes = std::make_shared<int>(0);
    QObject::connect(model(), &QAbstractItemModel::dataChanged, &window_,
                     [changes](const auto& first, const auto& last) {
                         ++*changes;
                         EXPECT_EQ(first.row(), 0);
                         EXPECT_EQ(last.row(), lineCount - 1);
                     });
    EXPECT_FALSE(trace_.isWrong(77));
    table()->selectAll();
    press("markLines");
    EXPECT_EQ(*changes, 1);
    EXPECT_TRUE(trace_.find(77)->isMarked);
    EXPECT_TRUE(trace_.find(77)->isWrong.has_value());
    EXPECT_TRUE(trace_.takeNews().changed.empty());
    press("markLines");
    EXPECT_EQ(*changes, 2);
    EXPECT_FALSE(trace_.find(77)->isMarked);
}

} // namespace
} // namespace varda::test
