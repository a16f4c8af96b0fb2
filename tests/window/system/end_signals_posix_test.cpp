#include "window/system/end_signals.h"

#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QCheckBox>

#include <csignal>

namespace varda::test {
namespace {

class EndSignalsTest : public WindowTest, public testing::WithParamInterface<int> {};

TEST_P(EndSignalsTest, AreToldInTheEventLoop) {
    bool ended = false;
    const EndSignals ears([&ended] { ended = true; });
    ::raise(GetParam());
    EXPECT_FALSE(ended);
    EXPECT_TRUE(runUntil([&ended] { return ended; }));
}

TEST_P(EndSignalsTest, CloseTheWindowWithItsPortAndItsLogWhateverBoxIsOpen) {
    const TemporaryFolder folder;
    driver.click("optMode_5");
    driver.find<QCheckBox>("chkMonLog")->setChecked(true);
    paste("txtMonLogFile", folder.file("line.log"));
    openLine();
    driver.click("cmdMonStart");
    driver.listBurst({1, 2, 3});
    bool answered = false;
    driver.window().form().ask("Shall it go on?", "Confirm", [&answered](bool) { answered = true; });
    const EndSignals ears([this] { driver.window().close(); });
    ::raise(GetParam());
    EXPECT_TRUE(runUntil([this] { return !driver.window().isVisible(); }));
    EXPECT_FALSE(driver.window().link().port().isOpen());
    EXPECT_TRUE(driver.isEnabled("txtMonLogFile")) << "the log is open yet";
    EXPECT_EQ(bytesOf(folder.file("line.log")), "01 02 03 \n");
    EXPECT_FALSE(answered);
}

INSTANTIATE_TEST_SUITE_P(Of, EndSignalsTest, testing::Values(SIGINT, SIGTERM, SIGHUP),
                         [](const auto& tested) { return "Signal" + std::to_string(tested.param); });

TEST(EndSignals, ThatComeManyTimesEndOnce) {
    int ends = 0;
    const EndSignals ears([&ends] { ++ends; });
    for (int time = 0; time < 5; ++time) {
        ::raise(SIGTERM);
    }
    EXPECT_TRUE(runUntil([&ends] { return ends > 0; }));
    runFor(std::chrono::milliseconds(20));
    EXPECT_EQ(ends, 1);
}

TEST(EndSignals, ThatWereIgnoredAtTheStartStayIgnored) {
    auto* const before = std::signal(SIGHUP, SIG_IGN);
    {
        bool ended = false;
        const EndSignals ears([&ended] { ended = true; });
        ::raise(SIGHUP);
        ::raise(SIGTERM);
        EXPECT_TRUE(runUntil([&ended] { return ended; }));
    }
    EXPECT_EQ(std::signal(SIGHUP, before), SIG_IGN);
}

} // namespace
} // namespace varda::test
