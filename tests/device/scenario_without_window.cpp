#include "core/files/profile_file.h"
#include "core/link/period.h"
#include "core/runs/scenario_file.h"
#include "core/runs/scenario_run.h"
#include "core/virtual/controller.h"
#include "device/event_loop.h"
#include "device/lines.h"

#include <cstdio>
#include <stdexcept>

/// Runs a scenario once against a port and tells what became of each line: a whole program without a window,
/// on the core and the devices alone.
/// Usage: varda_scenario FILE PORT
namespace {

using namespace varda;

class Listener : public LinkObserver {
public:
    void told(const Exchange& exchange) override {
        answered += exchange.outcome == Outcome::Answered ? 1 : 0;
        std::printf("%s: %zu bytes, %d expected, %zu came\n", inWords(exchange.outcome).data(),
                    exchange.request.size(), exchange.expected, exchange.answer.size());
    }
    int answered = 0;
};

int run(const char* path, const char* port) {
    const auto scenario = loadScenario(ProfileFile::load(path));
    if (!scenario) {
        throw std::runtime_error(std::string(path) + " holds no scenario.");
    }
    device::EventLoop loop;
    Controller controller;
    MSComm comm(device::lineFactory(loop, controller, [&](auto task) { loop.post(std::move(task)); }));
    SerialLink link(comm, loop);
    Listener listener;
    ScenarioList lines(scenario->lines);
    link.observe(listener);
    comm.setEventHandler([&](CommEvent event, const std::string&) { link.commPLC_OnComm(event); });

    int left = lines.count();
    std::function<void()> tick;
    const auto tmrScenario = loop.makeTimer([&] { tick(); });
    const auto tmrComm = loop.makeTimer([&] { link.tmrComm_Timer(); });
    ScenarioRun scenarioRun(link, *tmrScenario, lines);
    tick = [&] { left-- > 0 ? scenarioRun.send(scenarioRun.next().value()) : loop.stop(); };

    comm.setCommPort(port);
    comm.open();
    tmrComm->setInterval(startPeriod);
    tmrComm->start();
    scenarioRun.start("200");
    loop.run();
    return listener.answered == lines.count() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) try {
    return argc == 3 ? run(argv[1], argv[2]) : throw std::runtime_error("Usage: varda_scenario FILE PORT");
} catch (const std::exception& error) {
    std::printf("%s\n", error.what());
    return 1;
}
