#include "line_player.h"
#include "monitoring.h"
#include "report.h"
#include "support/event_loop.h"
#include "support/pseudo_terminal.h"
#include "support/window_driver.h"
#include "turns.h"
#include "window_measurement.h"

#include "core/protocol/frame_text.h"

#include <QAbstractButton>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

/// What the open trace costs on a real line: plays a full line of 38400 baud into the monitoring window, by
/// turns with the trace shut and open, and prints the processor time of the window's process.
namespace {

using namespace std::chrono_literals;
using varda::Bytes;
using varda::test::PseudoTerminal;
using varda::test::WindowDriver;

constexpr int runs = 7;
constexpr auto runTime = 4s;

/// A request and its answer, as a master and a controller exchange them.
const Bytes traffic = varda::bytesOfText("05 00 23 03 00 02 02 0B 22 00 05 A3 04 34 12 CD AB 47 42 ");

struct Series {
    std::vector<double> shut;
    std::vector<double> open;
};

void print(const char* what, const std::vector<double>& values) {
    std::printf("| %s | %s |\n", what, varda::bench::spreadInWords(values, " %").c_str());
}

Series measure(WindowDriver& driver, const PseudoTerminal& line, std::chrono::milliseconds pause) {
    Series series;
    auto piece = varda::bench::fullLine;
    piece.pause = pause;
    const varda::bench::LinePlayer player(line, traffic, piece);
    for (int run = 0; run < runs; ++run) {
        for (const bool isOpen : {false, true}) {
            driver.find<QAbstractButton>("openTrace")->setChecked(isOpen);
            varda::test::runFor(500ms);
            (isOpen ? series.open : series.shut).push_back(varda::bench::percentOfCore(runTime));
            std::printf("run %d, %s: %.2f %% of a core, load %s\n", run + 1, isOpen ? "open" : "shut",
                        (isOpen ? series.open : series.shut).back(), varda::bench::machineLoad().c_str());
            std::fflush(stdout);
        }
    }
    driver.find<QAbstractButton>("openTrace")->setChecked(false);
    return series;
}

void report(const char* what, const Series& series) {
    std::vector<double> more;
    for (std::size_t run = 0; run < series.open.size(); ++run) {
        more.push_back(series.open[run] - series.shut[run]);
    }
    std::printf("\n%s\n", what);
    print("shut", series.shut);
    print("open", series.open);
    print("open, more than the run before", more);
    varda::bench::print(std::string("trace open, ") + what, "trace shut", "% of a core",
                        {series.open, series.shut});
}

/// @param isShort without the line that has pauses
int run(bool isShort) {
    PseudoTerminal line;
    WindowDriver driver;
    varda::bench::startMonitoring(driver, line);
    report("a full line of 38400 baud, without a pause", measure(driver, line, 0ms));
    if (!isShort) {
        report("38400 baud, 25 ms behind every exchange of 19 bytes, so that each is a line",
               measure(driver, line, 25ms));
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    return varda::bench::measureWindow(argc, argv, [&] { return run(argc > 1); });
}
