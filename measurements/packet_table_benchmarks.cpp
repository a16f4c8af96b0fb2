#include "core/link/serial_link.h"
#include "core/runs/responder.h"
#include "sizes.h"
#include "support/fake_port.h"
#include "support/manual_clock.h"

#include <chrono>
#include <random>

namespace varda::bench {
namespace {

using std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

void lookUp(benchmark::State& state, const std::string& request, const PacketTable& table) {
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(table.find(request));
    }
}

void lookUpFirst(benchmark::State& state) {
    PacketTable table;
    fill(table, readsOf(state));
    lookUp(state, table.requests().front(), table);
}

void lookUpLast(benchmark::State& state) {
    PacketTable table;
    fill(table, readsOf(state));
    lookUp(state, table.requests().back(), table);
}

void lookUpMiss(benchmark::State& state) {
    PacketTable table;
    fill(table, readsOf(state));
    std::string unknown = table.requests().back();
    unknown.back() = unknown.back() == '0' ? '1' : '0';
    lookUp(state, unknown, table);
}

/// The simulated controller without a window: the link, the table, and memory in the place of the line.
class Simulation {
public:
    explicit Simulation(const std::vector<test::PreparedRead>& reads) {
        fill(table_, reads);
        link_.enterMode(Mode::Simulation);
        link_.setRoles({.answerTo = [this](auto request) { return responder_.answerTo(request); }});
        port_.setEventHandler([this](CommEvent event, const std::string&) { link_.commPLC_OnComm(event); });
        port_.onWrite([this] { answered_ = steady_clock::now(); });
        port_.open();
    }

    /// From the end of the last settle step to the answer's leaving; no time where no answer leaves.
    Seconds answerTime(const Bytes& request) {
        constexpr int settling = 150;
        port_.forgetCalls();
        port_.receive(request);
        clock_.advance(settling - 1);
        const auto settled = steady_clock::now();
        answered_ = settled;
        clock_.advance(1);
        return answered_ - settled;
    }

private:
    PacketTable table_;
    test::FakePort port_;
    test::ManualClock clock_;
    SerialLink link_{port_, clock_};
    Responder responder_{table_};
    steady_clock::time_point answered_;
};

void answerAfterSettling(benchmark::State& state) {
    const auto reads = readsOf(state);
    Simulation simulation(reads);
    std::mt19937 engine(static_cast<unsigned>(reads.size()));
    for ([[maybe_unused]] auto _ : state) {
        const double time = simulation.answerTime(reads[engine() % reads.size()].request).count();
        if (time <= 0) {
            state.SkipWithError("a request was not answered");
            break;
        }
        state.SetIterationTime(time);
    }
}

BENCHMARK(lookUpFirst)->Name("look-up, first row")->Apply(sizes);
BENCHMARK(lookUpLast)->Name("look-up, last row")->Apply(sizes);
BENCHMARK(lookUpMiss)->Name("look-up, unknown request")->Apply(sizes);
BENCHMARK(answerAfterSettling)
    ->Name("answer after the settling")
    ->Apply(sizes)
    ->UseManualTime()
    ->Iterations(10000);

} // namespace
} // namespace varda::bench
