#include "core/runs/monitor_run.h"

#include "support/fake_port.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace varda::test {
namespace {

class Lines : public MonitorLines {
public:
    std::size_t count() const override { return lines.size(); }
    void append(MonitorLine line) override { lines.push_back(std::move(line)); }
    void clear() override { lines.clear(); }

    std::vector<MonitorLine> lines;
};

class MonitorRunTest : public testing::Test {
protected:
    ManualClock clock;
    FakePort port;
    SerialLink link{port, clock};
    Lines lines;
    TemporaryFolder folder;
    MonitorRun run{link, clock, lines};
};

TEST_F(MonitorRunTest, RunsFromStartToStopWhateverTheLinkDoesMeanwhile) {
    run.start();
    EXPECT_EQ(link.state().CommMode, Mode::Monitoring);
    link.enterMode(Mode::BitRead);
    EXPECT_TRUE(run.isRunning());
    run.stop();
    EXPECT_FALSE(run.isRunning());
    EXPECT_EQ(link.state().CommMode, Mode::MonitorIdle);
}

TEST_F(MonitorRunTest, LogHoldsWhatIsListedUntilTheStop) {
    run.start();
    run.openLog(folder.file("bus.log"));
    EXPECT_TRUE(run.list({0xFF, 0x01}, TimeOfDay{9, 5, 7}, false));
    run.stop();
    EXPECT_TRUE(run.list({0x02}, std::nullopt, false));
    EXPECT_EQ(lines.count(), 2U);
    std::ifstream log(folder.file("bus.log"));
    std::string line;
    std::getline(log, line);
    EXPECT_EQ(line.substr(0, 14), "9:5:7 - FF 01 ");
    EXPECT_FALSE(std::getline(log, line)) << line;
}

TEST_F(MonitorRunTest, ListBeginsAnewBeyondItsLimit) {
    for (std::size_t line = 0; line <= monitorLineLimit; ++line) {
        run.list({0x01}, std::nullopt, false);
    }
    EXPECT_EQ(lines.count(), monitorLineLimit + 1);
    run.list({0x02}, std::nullopt, false);
    EXPECT_EQ(lines.count(), 1U);
}

} // namespace
} // namespace varda::test
