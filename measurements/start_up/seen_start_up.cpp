#include "report.h"
#include "start_up/hidden_screen.h"
#include "support/temporary_folder.h"
#include "turns.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <sys/wait.h>

/// Starts the program and others by turns and looks at the screen, as a user does: from the start of the
/// process to the first change of the picture and to the last one, and what memory is in use then. Usage:
/// varda_seen_start_up PROGRAM NAME OTHER [NAME OTHER]...
namespace {

using namespace std::chrono_literals;
using varda::bench::HiddenScreen;
using varda::bench::Turns;
using Clock = std::chrono::steady_clock;
using Picture = std::vector<unsigned char>;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr auto look = 200us; ///< between two looks at the screen
constexpr auto calm =
    300ms; ///< nothing has changed for so long: the window is there; carets blink more slowly
constexpr auto patience = 20s;

/// What is seen of one start.
struct Start {
    double first = 0; ///< milliseconds
    double last = 0;  ///< milliseconds
    double own = 0;   ///< MiB that it wrote itself; whether it shares what it read depends on who else runs
    double resident = 0; ///< MiB
};

double mebibytes(long kibibytes) { return static_cast<double>(kibibytes) / 1024; }

void awaitEmpty(const HiddenScreen& screen, const Picture& empty) {
    const auto end = Clock::now() + patience;
    while (screen.picture() != empty) {
        if (Clock::now() > end) {
            throw std::runtime_error("the screen does not become empty");
        }
        std::this_thread::sleep_for(10ms);
    }
}

/// Looks at the screen until it has changed and come to rest.
Start watched(const HiddenScreen& screen, Picture before, Clock::time_point start) {
    Start seen;
    auto last = start;
    while (seen.first == 0 || Clock::now() - last < calm) {
        Picture now = screen.picture();
        if (now != before) {
            last = Clock::now();
            seen.last = Milliseconds(last - start).count();
            seen.first = seen.first == 0 ? seen.last : seen.first;
            before = std::move(now);
        }
        if (Clock::now() - start > patience) {
            throw std::runtime_error("no window comes, or it never rests");
        }
        std::this_thread::sleep_for(look);
    }
    return seen;
}

Start startOf(const std::string& program, const HiddenScreen& screen, const Picture& empty) {
    const auto start = Clock::now();
    const pid_t process = varda::bench::started({program});
    Start seen = watched(screen, empty, start);
    const varda::bench::Memory memory = varda::bench::memory(std::to_string(process));
    seen.own = mebibytes(memory.own);
    seen.resident = mebibytes(memory.resident);
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
    awaitEmpty(screen, empty);
    return seen;
}

struct Figure {
    const char* what;
    const char* unit;
    double Start::*value;
    bool isTime;
};

constexpr auto figures = std::to_array<Figure>({
    {"start to the first change of the screen", "ms", &Start::first, true},
    {"start to the last change of the screen", "ms", &Start::last, true},
    {"private memory behind the start", "MiB", &Start::own, false},
    {"resident memory behind the start", "MiB", &Start::resident, false},
});

/// Of some starts the least times, since a busy machine only ever adds, and the most memory.
Start calmOf(const std::string& program, const HiddenScreen& screen, const Picture& empty) {
    constexpr int starts = 3;
    Start calmest = startOf(program, screen, empty);
    for (int count = 1; count < starts; ++count) {
        const Start another = startOf(program, screen, empty);
        for (const Figure& figure : figures) {
            double& value = calmest.*figure.value;
            value = figure.isTime ? std::min(value, another.*figure.value)
                                  : std::max(value, another.*figure.value);
        }
    }
    return calmest;
}

void print(const std::vector<Start>& ours, const char* name, const std::vector<Start>& theirs) {
    for (const Figure& figure : figures) {
        Turns turns;
        for (std::size_t turn = 0; turn < ours.size(); ++turn) {
            turns.ours.push_back(ours[turn].*figure.value);
            turns.theirs.push_back(theirs[turn].*figure.value);
        }
        print(figure.what, name, figure.unit, turns);
    }
}

int run(int argc, char** argv) {
    const varda::test::TemporaryFolder folder;
    ::setenv("HOME", folder.path().c_str(), 1); // the settings of those that start are nobody's
    ::setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
    const HiddenScreen screen(folder.path());
    std::this_thread::sleep_for(calm);
    const Picture empty = screen.picture();
    std::vector<std::string> programs = {argv[1]};
    for (int other = 3; other < argc; other += 2) {
        programs.emplace_back(argv[other]);
    }
    for (const std::string& program : programs) {
        startOf(program, screen, empty); // brings its files into the memory
    }
    std::vector<std::vector<Start>> starts(programs.size());
    for (int turn = 0; turn < varda::bench::turnCount; ++turn) {
        for (std::size_t program = 0; program < programs.size(); ++program) {
            starts[program].push_back(calmOf(programs[program], screen, empty));
        }
    }
    for (std::size_t other = 1; other < programs.size(); ++other) {
        print(starts[0], argv[2 * other], starts[other]);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) try {
    return argc > 3 ? run(argc, argv)
                    : throw std::runtime_error("Usage: varda_seen_start_up PROGRAM NAME OTHER..");
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
