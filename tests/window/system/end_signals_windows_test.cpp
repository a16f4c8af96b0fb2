#include "support/window_test.h"
#include "window/system/end_signals.h"

#include <windows.h>

namespace varda::test {
namespace {

/// A program with a window is asked to end by its console, where it has one.
class EndEventsTest : public WindowTest, public testing::WithParamInterface<DWORD> {
protected:
    EndEventsTest() : hasOwnConsole_(::AllocConsole() != 0) {}
    ~EndEventsTest() override {
        if (hasOwnConsole_) {
            ::FreeConsole();
        }
    }

private:
    bool hasOwnConsole_; ///< where the tests were started without one
};

TEST_P(EndEventsTest, AreToldInTheEventLoop) {
    bool ended = false;
    const EndSignals ears([&ended] { ended = true; });
    ASSERT_NE(::GenerateConsoleCtrlEvent(GetParam(), 0), 0) << ::GetLastError();
    EXPECT_FALSE(ended);
    EXPECT_TRUE(runUntil([&ended] { return ended; }));
}

TEST_P(EndEventsTest, CloseTheWindowWithItsPortWhateverBoxIsOpen) {
    openLine();
    bool answered = false;
    driver.window().form().ask("Shall it go on?", "Confirm", [&answered](bool) { answered = true; });
    const EndSignals ears([this] { driver.window().close(); });
    ASSERT_NE(::GenerateConsoleCtrlEvent(GetParam(), 0), 0) << ::GetLastError();
    EXPECT_TRUE(runUntil([this] { return !driver.window().isVisible(); }));
    EXPECT_FALSE(driver.window().link().port().isOpen());
    EXPECT_FALSE(answered);
}

INSTANTIATE_TEST_SUITE_P(Of, EndEventsTest, testing::Values(DWORD{CTRL_C_EVENT}, DWORD{CTRL_BREAK_EVENT}),
                         [](const auto& tested) {
                             return tested.param == CTRL_C_EVENT ? "CtrlC" : "CtrlBreak";
                         });

} // namespace
} // namespace varda::test
