#include "line_player.h"
#include "monitoring.h"
#include "report.h"
#include "side_process.h"
#include "support/event_loop.h"
#include "support/pseudo_terminal.h"
#include "support/temporary_folder.h"
#include "support/window_driver.h"
#include "turns.h"
#include "window_measurement.h"

#include "core/protocol/frame_text.h"

#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

/// What listening costs: the processor time of the monitoring window with its log, by turns with that of
/// `cat` into a file, each on a line of its own that brings the same bytes.
namespace {

using namespace std::chrono_literals;
using varda::Bytes;
using varda::bench::LinePlayer;
using varda::test::PseudoTerminal;
using varda::test::WindowDriver;

constexpr int runs = 7;
constexpr auto runTime = 4s;
constexpr auto settleTime = 500ms;

const Bytes traffic = varda::bytesOfText("05 00 23 03 00 02 02 0B 22 00 05 A3 04 34 12 CD AB 47 42 ");
constexpr LinePlayer::Piece flood = {.bytesPerSecond = 1e6, .every = 4ms};

/// `cat` from a line into a file.
void cat(const PseudoTerminal& line, const std::string& file) {
    const int copy = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(copy, STDOUT_FILENO);
    ::execlp("cat", "cat", line.path().c_str(), nullptr);
}

double percentOfCat(const LinePlayer::Piece& piece, const std::string& file) {
    const PseudoTerminal line;
    const varda::bench::SideProcess process([&] { cat(line, file); });
    const LinePlayer player(line, traffic, piece);
    std::this_thread::sleep_for(settleTime);
    const auto before = process.processorTime();
    std::this_thread::sleep_for(runTime);
    return (process.processorTime() - before) / runTime * 100;
}

double percentOfMonitor(const LinePlayer::Piece& piece, const PseudoTerminal& line) {
    const LinePlayer player(line, traffic, piece);
    varda::test::runFor(settleTime);
    return varda::bench::percentOfCore(runTime);
}

void measure(const char* what, const LinePlayer::Piece& piece, const varda::test::TemporaryFolder& folder,
             const PseudoTerminal& line) {
    std::vector<double> monitor;
    std::vector<double> copying;
    std::vector<double> ratios;
    for (int run = 0; run < runs; ++run) {
        monitor.push_back(percentOfMonitor(piece, line));
        copying.push_back(percentOfCat(piece, folder.file("cat")));
        ratios.push_back(monitor.back() / copying.back());
        std::printf("run %d: monitor %.2f %%, cat %.2f %% of a core, load %s\n", run + 1, monitor.back(),
                    copying.back(), varda::bench::machineLoad().c_str());
        std::fflush(stdout);
    }
    std::printf("\n%s\n| monitor with log | %s |\n| cat | %s |\n| monitor beside cat | %s |\n\n", what,
                varda::bench::spreadInWords(monitor, " %").c_str(),
                varda::bench::spreadInWords(copying, " %").c_str(),
                varda::bench::spreadInWords(ratios, " times").c_str());
    varda::bench::print(std::string("monitor with its log, ") + what, "cat into a file", "% of a core",
                        {monitor, copying});
}

/// @param only what to measure; everything where it is empty
int run(std::string_view only) {
    const varda::test::TemporaryFolder folder;
    const PseudoTerminal line;
    WindowDriver driver;
    varda::bench::startMonitoring(driver, line, folder.file("monitor.log"));
    if (only.empty() || only == "line") {
        measure("a full line of 38400 baud", varda::bench::fullLine, folder, line);
    }
    if (only.empty() || only == "flood") {
        measure("1 MB/s", flood, folder, line);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    return varda::bench::measureWindow(argc, argv, [&] { return run(argc > 1 ? argv[1] : ""); });
}
