#include "device/event_loop.h"

#include <gtest/gtest.h>

#include <csignal>

namespace varda::test {

using namespace device;

namespace {

using namespace std::chrono_literals;

class EndOfALoop : public testing::TestWithParam<int> {
protected:
    /// Whether the loop is asked to end by a signal that comes while it runs.
    bool isAskedToEnd() {
        bool asked = false;
        const auto ears = loop.whenAskedToEnd([this, &asked] {
            asked = true;
            loop.stop();
        });
        loop.post([] { ::raise(GetParam()); });
        const Wait end = loop.after(200ms, [this] { loop.stop(); });
        loop.run();
        return asked;
    }

    EventLoop loop;
};

TEST_P(EndOfALoop, IsToldByASignal) {
    EXPECT_TRUE(isAskedToEnd());
    EXPECT_TRUE(isAskedToEnd()) << "and the next time";
}

TEST_P(EndOfALoop, IsNotToldByASignalThatWasIgnoredAtTheStart) {
    auto* const before = std::signal(GetParam(), SIG_IGN);
    EXPECT_FALSE(isAskedToEnd());
    EXPECT_EQ(std::signal(GetParam(), before), SIG_IGN);
}

TEST_P(EndOfALoop, IsToldToEveryoneWhoAsked) {
    int asked = 0;
    const auto first = loop.whenAskedToEnd([&asked] { ++asked; });
    const auto second = loop.whenAskedToEnd([&asked] { ++asked; });
    loop.post([] { ::raise(GetParam()); });
    const Wait end = loop.after(200ms, [this] { loop.stop(); });
    loop.run();
    EXPECT_EQ(asked, 2);
}

INSTANTIATE_TEST_SUITE_P(Of, EndOfALoop, testing::Values(SIGINT, SIGTERM, SIGHUP),
                         [](const auto& tested) { return "Signal" + std::to_string(tested.param); });

} // namespace
} // namespace varda::test
