#include "support/temporary_folder.h"
#include "window/shell/own_run.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace varda::test {
namespace {

HWND handleOf(const QWidget& window) {
    return reinterpret_cast<HWND>(
        window.winId()); // NOLINT(performance-no-int-to-ptr): the system's own kind of handle
}

/// By what Windows tells a program's window, from the task manager, the task bar, or at the end of the
/// session.
class OwnRunOnWindows : public testing::Test {
protected:
    /// Whether the run ends well by it, and what it leaves in the log.
    void expectWholeLog(const std::function<void(const QWidget&)>& end) {
        EXPECT_EQ(run_.untilEndedBy(end), 0);
        EXPECT_EQ(bytesOf(run_.log()), "01 02 03 \r\n");
    }

private:
    OwnRun run_;
};

TEST_F(OwnRunOnWindows, EndsByTheWindowsClosingWithItsLogWhole) {
    expectWholeLog([](const QWidget& window) { ::PostMessageW(handleOf(window), WM_CLOSE, 0, 0); });
}

TEST_F(OwnRunOnWindows, EndsByTheCommandOfItsTitleBarWithItsLogWhole) {
    expectWholeLog(
        [](const QWidget& window) { ::PostMessageW(handleOf(window), WM_SYSCOMMAND, SC_CLOSE, 0); });
}

/// Windows ends the process as soon as the message was taken, so all has to be done by then.
TEST_F(OwnRunOnWindows, EndsWithTheSessionBeforeItsMessageIsAnswered) {
    expectWholeLog([](const QWidget& window) {
        EXPECT_EQ(::SendMessageW(handleOf(window), WM_QUERYENDSESSION, 0, 0), TRUE);
        EXPECT_TRUE(window.isVisible()); // another program may still say no
        ::SendMessageW(handleOf(window), WM_ENDSESSION, TRUE, 0);
        EXPECT_FALSE(window.isVisible());
    });
}

TEST_F(OwnRunOnWindows, GoesOnWhereTheSessionDoes) {
    expectWholeLog([](const QWidget& window) {
        ::SendMessageW(handleOf(window), WM_QUERYENDSESSION, 0, 0);
        ::SendMessageW(handleOf(window), WM_ENDSESSION, FALSE, 0);
        EXPECT_TRUE(window.isVisible());
        ::PostMessageW(handleOf(window), WM_CLOSE, 0, 0);
    });
}

} // namespace
} // namespace varda::test
