#include "monitoring.h"
#include "reading.h"
#include "report.h"
#include "support/event_loop.h"
#include "support/link_ear.h"
#include "support/offscreen.h"
#include "support/prepared_reads.h"
#include "support/pseudo_terminal.h"
#include "support/temporary_folder.h"
#include "support/window_driver.h"

#include "core/base/scope_exit.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QCheckBox>
#include <QListView>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <random>
#include <string>
#include <thread>
#include <vector>

/// What an engineer leaves running overnight: continuous reading, a simulation with 20,000 pairs, monitoring
/// with a log. The whole window on a pseudo-terminal, in real time; memory, counts and the drift of the
/// period go to the screen as tables.
namespace {

using namespace std::chrono_literals;
using varda::Bytes;
using varda::Exchange;
using varda::Outcome;
using varda::test::LinkEar;
using varda::test::PseudoTerminal;
using varda::test::runFor;
using varda::test::WindowDriver;
using Steady = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

/// What became of the requests, or of the bytes where nobody asks. The far end counts on its own thread.
struct Counts {
    std::atomic<long long> sent = 0;
    std::atomic<long long> answered = 0;
    std::atomic<long long> lost = 0;
    std::atomic<bool> isOver = false;
};

/// The times from one request to the next.
class Periods {
public:
    void tick() {
        const auto now = Steady::now();
        if (last_ != Steady::time_point()) {
            times_.push_back(Milliseconds(now - last_).count());
        }
        last_ = now;
    }

    /// How far the last request is from where the first one and the period of all would have it, and the
    /// longest and shortest period.
    void print(double wanted) const {
        if (times_.empty()) {
            std::printf("No period was seen.\n\n");
            return;
        }
        double whole = 0;
        for (const double time : times_) {
            whole += time;
        }
        const auto count = static_cast<double>(times_.size());
        const auto [least, most] = std::ranges::minmax(times_);
        std::printf("Period: wanted %.0f ms, mean %.4f ms, least %.2f ms, most %.2f ms; after %.0f of them "
                    "%+.2f ms from where they would stand.\n\n",
                    wanted, whole / count, least, most, count, whole - count * wanted);
    }

private:
    Steady::time_point last_;
    std::vector<double> times_;
};

void printMark(std::chrono::seconds passed, const Counts& counts) {
    const varda::bench::Memory memory = varda::bench::memory();
    std::printf("| %lld s | %ld KiB | %ld KiB | %lld | %lld | %lld |\n",
                static_cast<long long>(passed.count()), memory.resident, memory.own, counts.sent.load(),
                counts.answered.load(), counts.lost.load());
    std::fflush(stdout);
}

/// Lets the window work, with a row at the start, every minute (a quarter of what is shorter) and the end.
void watch(const char* what, std::chrono::seconds duration, const Counts& counts) {
    std::printf("## %s\n\n| after | resident | written by itself | sent | answered | lost "
                "|\n|---|---|---|---|---|---|\n",
                what);
    const auto step = std::clamp<std::chrono::seconds>(duration / 4, 1s, 60s);
    for (auto passed = 0s; passed < duration; passed += step) {
        printMark(passed, counts);
        runFor(std::min(step, duration - passed));
    }
}

/// The last row, once everything has come to its end.
/// @return whether nothing was lost and something was done
bool end(std::chrono::seconds duration, const Counts& counts) {
    printMark(duration, counts);
    std::printf("\n");
    return counts.lost == 0 && counts.answered > 0 && counts.sent == counts.answered;
}

bool readOnAndOn(std::chrono::seconds duration) {
    constexpr int period = 500;
    Counts counts;
    Periods periods;
    const PseudoTerminal line;
    LinkEar sent(Outcome::Sent, [&](const Exchange&) {
        ++counts.sent;
        periods.tick();
    });
    LinkEar answered(Outcome::Answered, [&](const Exchange&) { ++counts.answered; });
    const auto loses = [&](const Exchange&) { ++counts.lost; };
    LinkEar silent(Outcome::Silent, loses);
    LinkEar overtaken(Outcome::Overtaken, loses);
    LinkEar wrong(Outcome::WrongLength, loses);
    LinkEar refused(Outcome::NotSent, loses);
    WindowDriver driver;
    for (LinkEar* const ear : {&sent, &answered, &silent, &overtaken, &wrong, &refused}) {
        driver.window().link().observe(*ear);
    }
    std::thread farEnd([&] { varda::bench::answerReads(line, [&] { return counts.isOver.load(); }); });
    const varda::ScopeExit join([&] {
        counts.isOver = true;
        farEnd.join();
    });
    varda::bench::startReading(driver, line, period);
    watch("Continuous reading", duration, counts);
    driver.find<QCheckBox>("chkRTimer")->setChecked(false);
    varda::test::runUntil([&] { return counts.sent == counts.answered + counts.lost; }, 5s);
    const bool isWhole = end(duration, counts);
    periods.print(period);
    return isWhole;
}

/// Asks for drawn pairs, one behind the answer of the other, until the run is over.
void askForPairs(const PseudoTerminal& line, const std::vector<varda::test::PreparedRead>& reads,
                 unsigned seed, Counts& counts) {
    std::mt19937 engine(seed);
    while (!counts.isOver) {
        const auto& read = reads[engine() % reads.size()];
        line.write(read.request);
        ++counts.sent;
        ++(line.read(read.answer.size(), 5s) == read.answer ? counts.answered : counts.lost);
    }
}

bool simulate(std::chrono::seconds duration) {
    constexpr unsigned seed = 20261123;
    constexpr std::size_t pairs = 20'000;
    const auto reads = varda::test::preparedReads(pairs, seed);
    const varda::test::TemporaryFolder folder;
    varda::test::writeBytes(folder.file("pairs.ini"), varda::test::packetFile(reads));
    Counts counts;
    const PseudoTerminal line;
    WindowDriver driver;
    driver.click("optMode_4");
    driver.openPort(line.path());
    driver.click("cmdLoadSimPacket");
    driver.chooseFile(folder.file("pairs.ini"));
    if (driver.find<QListView>("lstSimSend")->model()->rowCount() != static_cast<int>(pairs)) {
        std::printf("The pairs were not loaded.\n");
        return false;
    }
    std::thread farEnd([&] { askForPairs(line, reads, seed, counts); });
    const varda::ScopeExit join([&] {
        counts.isOver = true;
        farEnd.join();
    });
    watch("Simulation with 20,000 pairs", duration, counts);
    counts.isOver = true;
    varda::test::runUntil([&] { return counts.sent == counts.answered + counts.lost; }, 6s);
    return end(duration, counts);
}

/// So that a byte that is lost, doubled or out of its place is seen in the log.
std::uint8_t byteAt(long long place) { return static_cast<std::uint8_t>(place % 251); }

/// As much in a second as half of what a line of 38400 baud can carry, in bursts that end before the next
/// one.
void talk(const PseudoTerminal& line, Counts& counts) {
    constexpr std::size_t burst = 384;
    auto next = Steady::now();
    while (!counts.isOver) {
        Bytes bytes;
        while (bytes.size() < burst) {
            bytes.push_back(byteAt(counts.sent + static_cast<long long>(bytes.size())));
        }
        line.write(bytes, 10s);
        counts.sent += static_cast<long long>(burst);
        std::this_thread::sleep_until(next += 200ms);
    }
}

/// Counts the bytes of the log that stand where they were sent, and all that do not.
void readLog(const std::string& log, Counts& counts) {
    std::ifstream file(log);
    long long place = 0;
    for (std::string group; file >> group; ++place) {
        const bool isRight = std::stoul(group, nullptr, 16) == byteAt(place);
        ++(isRight ? counts.answered : counts.lost);
    }
    counts.lost += std::max(counts.sent - place, 0LL);
}

bool monitor(std::chrono::seconds duration) {
    const varda::test::TemporaryFolder folder;
    const std::string log = folder.file("long.log");
    Counts counts;
    const PseudoTerminal line;
    WindowDriver driver;
    varda::bench::startMonitoring(driver, line, log);
    std::thread farEnd([&] { talk(line, counts); });
    const varda::ScopeExit join([&] {
        counts.isOver = true;
        if (farEnd.joinable()) {
            farEnd.join();
        }
    });
    watch("Monitoring into a log, in bytes (answered: in the log; counted at the end)", duration, counts);
    counts.isOver = true;
    farEnd.join();
    runFor(1s);
    driver.click("cmdMonStop");
    readLog(log, counts);
    return end(duration, counts);
}

struct Run {
    const char* name;
    bool (*run)(std::chrono::seconds);
};
constexpr std::array runs = {Run{"read", readOnAndOn}, Run{"simulate", simulate}, Run{"monitor", monitor}};

/// @return how many of them lost something
int runAll(std::chrono::seconds duration, const std::string& only) {
    std::printf("Measured %s, %u cores, at a load of %s; %lld s each.\n\n", varda::bench::today().c_str(),
                std::thread::hardware_concurrency(), varda::bench::machineLoad().c_str(),
                static_cast<long long>(duration.count()));
    int failures = 0;
    for (const Run& run : runs) {
        if ((only.empty() || only == run.name) && !run.run(duration)) {
            std::printf("FAILED: %s lost something, or did nothing.\n\n", run.name);
            ++failures;
        }
    }
    return failures;
}

} // namespace

int main(int argc, char** argv) try {
    varda::test::preferOffscreen();
    const QApplication application(argc, argv);
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 3600;
    const std::string only = argc > 2 ? argv[2] : "";
    if (seconds < 1) {
        std::printf("varda_long_runs [SECONDS [read|simulate|monitor]]\n");
        return 2;
    }
    return runAll(std::chrono::seconds(seconds), only) == 0 ? 0 : 1;
} catch (const std::exception& error) {
    std::printf("The measurement broke off: %s\n", error.what());
    return 1;
}
