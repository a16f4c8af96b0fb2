#include "window/controls/events.h"

#include "core/base/runtime_error.h"
#include "support/manual_clock.h"
#include "window/controls/guarded_clock.h"
#include "window/controls/message_boxes.h"

#include <QMessageBox>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace varda::test {

using namespace window;
namespace {

class EventsTest : public testing::Test {
protected:
    EventsTest() {
        window.setWindowTitle(QStringLiteral("Title"));
        window.show();
    }

    std::string boxText() {
        for (const auto* const box : window.findChildren<QMessageBox*>()) {
            if (box->isVisible()) {
                return box->text().toStdString();
            }
        }
        return {};
    }

    void closeBox() {
        for (auto* const box : window.findChildren<QMessageBox*>()) {
            if (box->isVisible()) {
                QTest::keyClick(box, Qt::Key_Return);
            }
        }
    }

    QWidget window;
    MessageBoxes boxes{&window};
    Events events{boxes};
};

TEST_F(EventsTest, DefectIsReportedOnceAndTheProgramGoesOn) {
    const auto defect = [] { throw std::logic_error("no such thing"); };
    events.guard(defect);
    EXPECT_NE(boxText().find("no such thing"), std::string::npos);
    closeBox();
    events.guard(defect);
    EXPECT_EQ(boxText(), "");
    events.guard([] { throw std::logic_error("another thing"); });
    EXPECT_NE(boxText().find("another thing"), std::string::npos);
}

TEST_F(EventsTest, RuntimeErrorIsReportedEachTime) {
    for (int time = 0; time < 2; ++time) {
        events.guard([] { throw typeMismatch(); });
        EXPECT_EQ(boxText(), "Run-time error '13':\n\nType mismatch");
        closeBox();
    }
}

TEST_F(EventsTest, WhatIsThrownBehindAWaitIsReportedToo) {
    ManualClock clock;
    GuardedClock guarded(clock, events);
    const Wait wait =
        guarded.after(std::chrono::milliseconds(100), [] { throw std::logic_error("behind a wait"); });
    clock.advance(100);
    EXPECT_NE(boxText().find("behind a wait"), std::string::npos);
}

} // namespace
} // namespace varda::test
