#include "support/event_loop.h"
#include "support/offscreen.h"
#include "support/processor_time.h"
#include "support/pseudo_terminal.h"
#include "support/window_driver.h"
#include "window/shell/program.h"

#include "core/protocol/frame_text.h"

#include <QAbstractButton>
#include <QApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

/// What the open trace costs on a real line: plays a full line of 38400 baud into the monitoring window, by
/// turns with the trace shut and open, and prints the processor time of the window's process.
namespace {

using namespace std::chrono_literals;
using varda::Bytes;
using varda::test::PseudoTerminal;
using varda::test::WindowDriver;
using Steady = std::chrono::steady_clock;

constexpr int runs = 7;
constexpr auto runTime = 5s;
constexpr double bytesPerSecond = 38400 / 10.0;
constexpr auto piece = 4ms; ///< as the buffer of a serial chip hands its bytes over

/// A request and its answer, as a master and a controller exchange them.
const Bytes traffic = varda::bytesOfText("05 00 23 03 00 02 02 0B 22 00 05 A3 04 34 12 CD AB 47 42 ");

/// Another process, so that its own time is not counted: fills the line until it is ended.
class Player {
public:
    Player(const PseudoTerminal& line, std::chrono::milliseconds pause) : process_(::fork()) {
        if (process_ == 0) {
            play(line, pause);
        }
    }
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;
    ~Player() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }

private:
    /// @param pause behind every exchange; without one the line is full
    [[noreturn]] static void play(const PseudoTerminal& line, std::chrono::milliseconds pause) {
        auto due = Steady::now();
        std::size_t next = 0;
        double owed = 0;
        for (;;) {
            due += piece;
            std::this_thread::sleep_until(due);
            owed += bytesPerSecond * std::chrono::duration<double>(piece).count();
            Bytes bytes;
            while (owed >= 1) {
                owed -= 1;
                bytes.push_back(traffic[next]);
                next = (next + 1) % traffic.size();
                if (next == 0 && pause > 0ms) { // the next exchange begins behind the pause
                    due += pause;
                    owed = 0;
                    break;
                }
            }
            try {
                line.write(bytes);
            } catch (const std::exception&) {
                ::_exit(1);
            }
        }
    }

    pid_t process_;
};

/// Processor time of a run, in per cent of a core.
double percentOf(std::chrono::milliseconds time) {
    const auto before = varda::test::processorTime();
    const auto start = Steady::now();
    varda::test::runFor(time);
    return (varda::test::processorTime() - before) / std::chrono::duration<double>(Steady::now() - start) *
           100;
}

struct Series {
    std::vector<double> shut;
    std::vector<double> open;
};

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.at(values.size() / 2);
}

void print(const char* what, const std::vector<double>& values) {
    const auto [least, most] = std::ranges::minmax(values);
    std::printf("| %s | %.2f %% | %.2f to %.2f %% |\n", what, median(values), least, most);
}

std::string load() {
    std::string text;
    std::ifstream file("/proc/loadavg");
    std::getline(file, text);
    return text;
}

Series measure(WindowDriver& driver, const PseudoTerminal& line, std::chrono::milliseconds pause) {
    Series series;
    const Player player(line, pause);
    for (int run = 0; run < runs; ++run) {
        for (const bool isOpen : {false, true}) {
            driver.find<QAbstractButton>("openTrace")->setChecked(isOpen);
            varda::test::runFor(500ms);
            (isOpen ? series.open : series.shut).push_back(percentOf(runTime));
            std::printf("run %d, %s: %.2f %% of a core, load %s\n", run + 1, isOpen ? "open" : "shut",
                        (isOpen ? series.open : series.shut).back(), load().c_str());
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
}

int run() {
    PseudoTerminal line;
    WindowDriver driver;
    driver.openPort(line.path());
    driver.click("optMode_5");
    driver.click("cmdMonStart");
    report("a full line of 38400 baud, without a pause", measure(driver, line, 0ms));
    report("38400 baud, 25 ms behind every exchange of 19 bytes, so that each is a line",
           measure(driver, line, 25ms));
    return 0;
}

} // namespace

int main(int argc, char** argv) try {
    varda::test::preferOffscreen();
    const QApplication application(argc, argv);
    varda::window::prepareApplication();
    return run();
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
