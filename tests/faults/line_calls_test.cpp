#include "faults/faulty_world.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <ostream>
#include <string>
#include <tuple>

namespace varda::faults {
namespace {

struct Run {
    std::string name;
    int fewestCalls; ///< of the line
    std::function<void(FaultyWorld&)> play;
    bool tellsOfWrites = true; ///< its user is told of a write that fails
};

std::ostream& operator<<(std::ostream& out, const Run& run) { return out << run.name; }

auto askOn(Mode page) {
    return [page](FaultyWorld& world) { world.ask(page); };
}

const std::array runs = {Run{"BitRead", 7, askOn(Mode::BitRead)},
                         Run{"BitWrite", 7, askOn(Mode::BitWrite)},
                         Run{"WordRead", 7, askOn(Mode::WordRead)},
                         Run{"WordWrite", 7, askOn(Mode::WordWrite)},
                         Run{"MixedRead", 7, askOn(Mode::MixedRead)},
                         Run{"MixedWrite", 7, askOn(Mode::MixedWrite)},
                         Run{"RepeatedReads", 15, [](FaultyWorld& world) { world.repeat(Mode::WordRead); }},
                         Run{"RepeatedWrites", 7, [](FaultyWorld& world) { world.repeat(Mode::WordWrite); }},
                         Run{"Scenario", 15, [](FaultyWorld& world) { world.runScenario(); }},
                         Run{"Simulation", 7, [](FaultyWorld& world) { world.simulate(); }, false},
                         Run{"Monitor", 5, [](FaultyWorld& world) { world.monitor(); }, false}};

/// The n-th call to the line fails, for n = 1, 2, 3 .. until a run meets no fault.
class LineCalls : public testing::TestWithParam<std::tuple<Run, Failure, Lasting>> {
protected:
    static void expectWhole(FaultyWorld& world, int call) {
        const auto& [run, failure, lasting] = GetParam();
        EXPECT_EQ(world.finding().value_or(""), "") << "with call " << call;
        const bool isTold = failure == Failure::Refused && run.tellsOfWrites && world.fault().hasRefused();
        EXPECT_TRUE(!isTold || world.reports() > 0) << "nobody was told of call " << call;
    }
};

std::string nameOf(const testing::TestParamInfo<LineCalls::ParamType>& set) {
    const auto& [run, failure, lasting] = set.param;
    return run.name + testing::PrintToString(failure) + testing::PrintToString(lasting);
}

INSTANTIATE_TEST_SUITE_P(Runs, LineCalls,
                         testing::Combine(testing::ValuesIn(runs),
                                          testing::Values(Failure::Refused, Failure::InputLost,
                                                          Failure::HungUp, Failure::Unsent),
                                          testing::Values(Lasting::Once, Lasting::ForGood)),
                         nameOf);

TEST_P(LineCalls, EachMayFail) {
    const auto& [run, failure, lasting] = GetParam();
    constexpr int mostCalls = 200;
    int call = 1;
    for (bool isMet = true; isMet && call < mostCalls; ++call) {
        FaultyWorld world({failure, lasting, call});
        run.play(world);
        isMet = world.fault().hasStruck();
        world.heal();
        expectWhole(world, call);
    }
    const bool countsAll = failure != Failure::Unsent;
    const bool writes = run.name != "Monitor";
    EXPECT_GT(call - 2, countsAll ? run.fewestCalls - 1 : (writes ? 2 : -1)) << "the faults were not met";
    EXPECT_LT(call, mostCalls) << "the faults did not end";
}

TEST(LineCallsCanary, AnEndThatIsNotToldIsFound) {
    FaultyWorld world({Failure::Refused, Lasting::Once, 3});
    world.withholdEnds();
    world.ask(Mode::WordRead);
    world.heal();
    EXPECT_TRUE(world.finding());
}

} // namespace
} // namespace varda::faults
