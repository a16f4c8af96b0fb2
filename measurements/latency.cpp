#include "core/link/mscomm.h"
#include "core/virtual/controller.h"
#include "support/event_loop.h"
#include "support/pseudo_terminal.h"
#include "turns.h"
#include "window/shell/lines.h"
#include "window/system/qt_clock.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include <poll.h>
#include <unistd.h>

/// How long bytes take through the serial line, beside a bare loop that does nothing else, by turns in the
/// same run: from the end of a wait to the far end, and from their arrival to the handler.
namespace {

using varda::Bytes;
using varda::test::PseudoTerminal;
using Clock = std::chrono::steady_clock;
using Times = std::vector<Clock::time_point>;

constexpr int rounds = 1000;
constexpr auto pause = std::chrono::milliseconds(4);
const Bytes frame = {0xFF, 0xFF, 0x21, 0x03, 0x00, 0x00, 0x08, 0xBD, 0x85};

struct Series {
    Times starts;
    Times ends;

    /// Of some rounds one behind another; sorted, in microseconds.
    std::vector<double> durations(std::size_t first, std::size_t behind) const {
        std::vector<double> result;
        for (std::size_t i = first; i < behind; ++i) {
            result.push_back(std::chrono::duration<double, std::micro>(ends[i] - starts[i]).count());
        }
        std::ranges::sort(result);
        return result;
    }
};

/// The one of so many parts of a run that stands at a share of its durations.
std::vector<double> partsOf(const Series& series, double share) {
    const std::size_t count = std::min(series.starts.size(), series.ends.size());
    std::vector<double> parts;
    for (std::size_t turn = 0; turn < varda::bench::turnCount; ++turn) {
        const auto part = series.durations(turn * count / varda::bench::turnCount,
                                           (turn + 1) * count / varda::bench::turnCount);
        parts.push_back(part.at(static_cast<std::size_t>(static_cast<double>(part.size()) * share)));
    }
    return parts;
}

void report(const std::string& what, const Series& line, const Series& bare) {
    for (const auto& [words, share] : {std::pair(", median", 0.5), std::pair(", 99 %", 0.99)}) {
        print(what + words, "bare loop", "µs",
              varda::bench::Turns{partsOf(line, share), partsOf(bare, share)});
    }
}

/// The line of the program, and a pseudo-terminal that is used without it.
struct Lines {
    Lines() {
        comm.setCommPort(line.path());
        comm.open();
    }

    PseudoTerminal line;
    PseudoTerminal bare;
    varda::window::QtClock clock;
    varda::Controller controller;
    varda::MSComm comm{varda::window::lineFactory(clock, controller)};
};

/// Frames sent when a wait has ended; a thread listens at the far end.
void endOfWaitToFarEnd() {
    Lines lines;
    Series line;
    Series bare;
    std::thread farEnd([&] {
        for (int round = 0; round < rounds; ++round) {
            lines.line.read(frame.size(), std::chrono::seconds(5));
            line.ends.push_back(Clock::now());
            lines.bare.read(frame.size(), std::chrono::seconds(5));
            bare.ends.push_back(Clock::now());
        }
    });
    const std::function<void()> sendBare = [&] {
        bare.starts.push_back(Clock::now());
        if (::write(lines.bare.nearEnd(), frame.data(), frame.size()) < 0) {
            std::perror("bare write");
        }
    };
    const std::function<void()> sendOnLine = [&] {
        line.starts.push_back(Clock::now());
        lines.comm.write(frame);
    };
    for (int round = 0; round < rounds; ++round) {
        const auto first = lines.clock.after(pause, sendOnLine);
        varda::test::runFor(2 * pause);
        const auto second = lines.clock.after(pause, sendBare);
        varda::test::runFor(2 * pause);
    }
    farEnd.join();
    report("end of a wait to the far end", line, bare);
}

/// Waits for bytes and for nothing else. @return when it had them
Clock::time_point bareArrival(int handle) {
    Bytes bytes(frame.size());
    pollfd request{handle, POLLIN, 0};
    ::poll(&request, 1, 5000);
    const auto count = ::read(handle, bytes.data(), bytes.size());
    return count > 0 ? Clock::now() : Clock::time_point();
}

/// One frame at a time is on its way; its reader is not disturbed meanwhile.
void waitFor(const std::atomic<int>& handled, int count) {
    do {
        std::this_thread::sleep_for(pause);
    } while (handled < count);
}

/// Frames sent by a thread at the far end.
void arrivalToHandler() {
    Lines lines;
    Series line;
    Series bare;
    std::atomic<int> handled = 0;
    lines.comm.setEventHandler([&](varda::CommEvent, const std::string&) {
        line.ends.push_back(Clock::now());
        lines.comm.read();
        ++handled;
    });
    std::thread bareLoop([&] {
        for (int round = 0; round < rounds; ++round) {
            bare.ends.push_back(bareArrival(lines.bare.nearEnd()));
            ++handled;
        }
    });
    std::thread farEnd([&] {
        for (int round = 0; round < rounds; ++round) {
            line.starts.push_back(Clock::now());
            lines.line.write(frame);
            waitFor(handled, 2 * round + 1);
            bare.starts.push_back(Clock::now());
            lines.bare.write(frame);
            waitFor(handled, 2 * round + 2);
        }
    });
    varda::test::runUntil([&] { return line.ends.size() >= rounds; }, std::chrono::minutes(1));
    farEnd.join();
    bareLoop.join();
    report("arrival to the handler", line, bare);
}

} // namespace

int main(int argc, char** argv) try {
    const QCoreApplication application(argc, argv);
    endOfWaitToFarEnd();
    arrivalToHandler();
    return 0;
} catch (const std::exception& error) {
    std::printf("The measurement broke off: %s\n", error.what());
    return 1;
}
