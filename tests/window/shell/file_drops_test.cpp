#include "support/window_test.h"
#include "window/controls/elided_label.h"

#include <QDir>
#include <QDropEvent>
#include <QListView>
#include <QListWidget>
#include <QMimeData>
#include <QTabWidget>
#include <QUrl>

#include <memory>

namespace varda::test {
namespace {

class FileDropsTest : public WindowTest {
protected:
    static QString example(const char* name) {
        return QString::fromLatin1(VARDA_DATA_FOLDER "/") + QString::fromLatin1(name);
    }

    static std::unique_ptr<QMimeData> files(const QStringList& paths) {
        auto dragged = std::make_unique<QMimeData>();
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        dragged->setUrls(urls);
        return dragged;
    }

    /// Drags over a control and drops there. @return whether it was taken
    bool drop(const char* control, const QMimeData& dragged) { return drop(driver.find(control), dragged); }

    bool drop(QWidget* field, const QMimeData& dragged) {
        QDragEnterEvent enter(QPoint(2, 2), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(field, &enter);
        QDropEvent event(QPointF(2, 2), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(field, &event);
        QCoreApplication::processEvents();
        return enter.isAccepted() && event.isAccepted();
    }

    int pairs() { return driver.find<QListView>("lstSimReceive")->model()->rowCount(); }
    int scenarioLines() { return driver.find<QListWidget>("lstSchedule")->count(); }
    int shownMode() { return driver.find<QTabWidget>("tabMode")->currentIndex(); }
};

TEST_F(FileDropsTest, LoadWhatTheyHoldAndShowIt) {
    EXPECT_TRUE(drop(&driver.window(), *files({example("example-reads.ini"), example("example.scn")})));
    EXPECT_EQ(pairs(), 5);
    EXPECT_EQ(scenarioLines(), 3);
    EXPECT_EQ(shownMode(), 4);
}

TEST_F(FileDropsTest, PairsCanBeStartedAsWhenTheyAreLoadedByHand) {
    driver.click("optMode_4");
    driver.click("optMode_0");
    EXPECT_TRUE(drop(&driver.window(), *files({example("example-reads.ini")})));
    EXPECT_EQ(shownMode(), 4);
    EXPECT_TRUE(driver.isEnabled("cmdSimStart"));
}

TEST_F(FileDropsTest, OnATextFieldLeaveItsTextAlone) {
    for (const char* const field : {"txtRDDA", "txtReadTimerValue", "txtMonLogFile", "txtSimSendData"}) {
        const std::string before = text(field);
        EXPECT_TRUE(drop(field, *files({example("example.scn")}))) << field;
        EXPECT_EQ(text(field), before) << field;
    }
}

TEST_F(FileDropsTest, LeaveTheModeAloneWhileThePortIsOpen) {
    driver.openPort("VIRTUAL");
    EXPECT_TRUE(drop(&driver.window(), *files({example("example-reads.ini")})));
    EXPECT_EQ(pairs(), 5);
    EXPECT_EQ(shownMode(), 0);
    EXPECT_EQ(text("slowLine"), "Prepared pairs were loaded. Simulation shows them, and answers.");
}

TEST_F(FileDropsTest, NoticeIsCutWithAnEllipsisWhereItDoesNotFit) {
    driver.openPort("VIRTUAL");
    drop(&driver.window(), *files({example("example-reads.ini")}));
    auto* const label = driver.find<window::ElidedLabel>("slowLine");
    label->resize(80, label->height());
    EXPECT_TRUE(label->paintedText().contains(QChar(0x2026))) << label->paintedText().toStdString();
    EXPECT_EQ(label->toolTip(), label->text());
}

TEST_F(FileDropsTest, NoticeOfPairsGoesWhenTheyAreSeen) {
    driver.openPort("VIRTUAL");
    drop(&driver.window(), *files({example("example-reads.ini")}));
    driver.click("optMode_1");
    EXPECT_NE(text("slowLine"), "");
    driver.click("optMode_4");
    EXPECT_EQ(text("slowLine"), "");
}

TEST_F(FileDropsTest, NoticeOfPairsGoesWithTheConnection) {
    driver.openPort("VIRTUAL");
    drop(&driver.window(), *files({example("example-reads.ini")}));
    driver.click("cmdPortOpen");
    EXPECT_EQ(text("slowLine"), "");
}

TEST_F(FileDropsTest, OfSeveralOfAKindTheFirstIsTakenAndTold) {
    EXPECT_TRUE(
        drop(&driver.window(), *files({example("example-reads.ini"), example("example-writes.ini")})));
    EXPECT_EQ(pairs(), 5);
    EXPECT_EQ(driver.boxText(), "One file of prepared pairs is taken at a time: \"" +
                                    QDir::toNativeSeparators(example("example-reads.ini")).toStdString() +
                                    "\". Load the others by themselves.");
    driver.closeBox();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    driver.click("optMode_0");
    EXPECT_TRUE(drop(&driver.window(), *files({example("example.scn"), example("example.scn")})));
    EXPECT_EQ(scenarioLines(), 3);
    EXPECT_TRUE(driver.boxText().starts_with("One scenario is taken at a time: "));
}

TEST_F(FileDropsTest, OfAScenarioAreRefusedWhereNoneCanBeLoaded) {
    driver.click("optMode_5");
    EXPECT_TRUE(drop(&driver.window(), *files({example("example.scn"), example("example.scn")})));
    EXPECT_EQ(scenarioLines(), 0);
    EXPECT_EQ(driver.boxText(),
              "A scenario can be loaded while one of the first four modes is chosen and none runs.");
    driver.closeBox();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(driver.boxText(), "") << "that one is taken at a time is no news where none was";
}

TEST_F(FileDropsTest, AreNotTakenBehindABox) {
    driver.window().form().showMessage("One moment", "Warning");
    EXPECT_FALSE(drop(&driver.window(), *files({example("example.scn")})));
    EXPECT_EQ(scenarioLines(), 0);
}

TEST_F(FileDropsTest, OfATextStayTheFieldsOwn) {
    QMimeData dragged;
    dragged.setText(QStringLiteral("7"));
    EXPECT_TRUE(drop("txtRDDA", dragged));
    EXPECT_NE(text("txtRDDA").find('7'), std::string::npos);
    EXPECT_FALSE(drop(&driver.window(), dragged));
}

} // namespace
} // namespace varda::test
