#include "core/base/runtime_error.h"
#include "device/device_line.h"
#include "faults/system_faults.h"
#include "support/pseudo_terminal.h"
#include "support/raises.h"
#include "support/task_loop.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <tuple>

#include <sys/ioctl.h>

namespace varda::faults {
namespace {

using device::DeviceLine;

/// A serial port of which the n-th call to the system fails, for n = 1, 2, 3 .. until no fault is met.
class PortCalls : public testing::TestWithParam<std::tuple<int, bool>> {
protected:
    static constexpr int mostCalls = 200;

    /// @param attempt uses a line with such a fault, and tells whether the fault was met; the line goes then
    /// @return how many calls there were
    int failEach(Callers callers,
                 const std::function<bool(DeviceLine& line, const CallPlan& plan)>& attempt) {
        const auto handles = openHandles();
        int call = 0;
        for (bool isMet = true; isMet && call < mostCalls;) {
            const auto& [error, isLasting] = GetParam();
            const CallPlan plan = {
                .call = ++call, .error = error, .isLasting = isLasting, .callers = callers};
            SCOPED_TRACE("call " + std::to_string(call));
            hangUps = 0;
            {
                DeviceLine line(terminal.path(), loop.post());
                listenTo(line);
                isMet = attempt(line, plan);
            }
            EXPECT_LE(hangUps, 1);
            EXPECT_EQ(openHandles(), handles);
            // a claim that could not be given back goes with the last handle, which is the test's own here
            ::ioctl(terminal.nearEnd(), TIOCNXCL);
            expectThatItWorks();
        }
        EXPECT_LT(call, mostCalls) << "the faults did not end";
        return call - 1;
    }

    /// Whether a request that was written and its answer come through, or the line's end is told.
    bool comesThrough(DeviceLine& line) {
        Bytes atFarEnd;
        loop.runUntil(
            [&] {
                const Bytes more = terminal.readAvailable();
                atFarEnd.insert(atFarEnd.end(), more.begin(), more.end());
                return hangUps > 0 || atFarEnd.size() >= request.size();
            },
            limit);
        if (hangUps > 0) {
            return true;
        }
        terminal.write(answer);
        loop.runUntil([&] { return hangUps > 0 || line.inBufferCount() >= answer.size(); }, limit);
        return hangUps > 0 || (atFarEnd == request && line.read().bytes == answer);
    }

    void listenTo(DeviceLine& line) {
        line.setEventHandler([this](CommEvent event, const std::string& reason) {
            hangUps += event == CommEvent::HungUp ? 1 : 0;
            EXPECT_TRUE(event != CommEvent::HungUp || !reason.empty());
        });
    }

    /// A line without faults: nothing of what failed before is in its way.
    void expectThatItWorks() {
        hangUps = 0;
        DeviceLine line(terminal.path(), loop.post());
        listenTo(line);
        ASSERT_NO_THROW(line.open({}));
        line.write(request);
        EXPECT_TRUE(comesThrough(line) && hangUps == 0);
    }

    static std::ptrdiff_t openHandles() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    }

    static constexpr auto limit = std::chrono::seconds(10);
    const Bytes request = {0xFF, 0xFF, 0x21};
    const Bytes answer = {0xFF, 0xFF, 0xA1, 0x02};
    test::TaskLoop loop;
    test::PseudoTerminal terminal;
    int hangUps = 0;
};

std::string nameOfFault(const testing::TestParamInfo<PortCalls::ParamType>& set) {
    const auto& [error, isLasting] = set.param;
    const std::string name = error == EIO      ? "Eio"
                             : error == ENODEV ? "Enodev"
                             : error == ENOMEM ? "Enomem"
                                               : "Emfile";
    return name + (isLasting ? "ForGood" : "Once");
}

INSTANTIATE_TEST_SUITE_P(Ports, PortCalls,
                         testing::Combine(testing::Values(EIO, ENODEV, ENOMEM, EMFILE), testing::Bool()),
                         nameOfFault);

TEST_P(PortCalls, OfAnOpeningMayFail) {
    const int calls = failEach(Callers::ThisThread, [this](DeviceLine& line, const CallPlan& plan) {
        std::optional<RuntimeError> error;
        bool isMet = false;
        {
            const SystemFault fault(plan);
            error = test::raisedBy([&] { line.open({}); });
            isMet = fault.hasStruck();
        }
        if (error) {
            EXPECT_NE(std::string(error->what()).find(terminal.path()), std::string::npos) << error->what();
        } else {
            line.write(request);
            EXPECT_TRUE(comesThrough(line)) << "neither through nor told";
        }
        return isMet;
    });
    EXPECT_GT(calls, 20);
}

TEST_P(PortCalls, OfASendingMayFail) {
    const int calls = failEach(Callers::ThisThread, [this](DeviceLine& line, const CallPlan& plan) {
        line.open({});
        bool isMet = false;
        {
            const SystemFault fault(plan);
            line.discard();
            line.write(request);
            isMet = fault.hasStruck();
        }
        EXPECT_TRUE(comesThrough(line)) << "neither through nor told";
        return isMet;
    });
    EXPECT_GE(calls, 2); // what waited to be read is thrown away first
}

TEST_P(PortCalls, OfItsThreadMayFail) {
    const int calls = failEach(Callers::OtherThreads, [this](DeviceLine& line, const CallPlan& plan) {
        const SystemFault fault(plan);
        line.open({});
        line.write(request);
        EXPECT_TRUE(comesThrough(line)) << "neither through nor told";
        line.close();
        return fault.hasStruck();
    });
    EXPECT_GE(calls, 1);
}

TEST_P(PortCalls, OfAClosingMayFail) {
    const int calls = failEach(Callers::ThisThread, [](DeviceLine& line, const CallPlan& plan) {
        line.open({});
        const SystemFault fault(plan);
        line.close();
        return fault.hasStruck();
    });
    EXPECT_GE(calls, 3); // the claim is given back, what waits is counted, the handle goes
}

} // namespace
} // namespace varda::faults
