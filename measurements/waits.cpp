#include "core/base/clock_timer.h"
#include "support/event_loop.h"
#include "turns.h"
#include "window/system/qt_clock.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include <ctime>

/// How late waits and periods of the window are, beside a bare loop that sleeps until the same time, by
/// turns; and beside a timer of Qt's, which knows whole milliseconds.
namespace {

using varda::bench::print;
using varda::bench::Turns;
using Clock = std::chrono::steady_clock;
using Lateness = std::vector<double>; ///< microseconds

constexpr int waits = 40;
constexpr auto wait = std::chrono::microseconds(20'300); // no whole number of milliseconds from any tick

double behind(Clock::time_point due) {
    return std::chrono::duration<double, std::micro>(Clock::now() - due).count();
}

double share(Lateness all, double part) {
    std::ranges::sort(all);
    return all.at(static_cast<std::size_t>(static_cast<double>(all.size()) * part));
}

Lateness ofBareLoop() {
    Lateness late;
    for (int round = 0; round < waits; ++round) {
        const auto due = Clock::now() + wait;
        const auto since = due.time_since_epoch();
        const auto seconds = std::chrono::floor<std::chrono::seconds>(since);
        const timespec time{.tv_sec = seconds.count(),
                            .tv_nsec = std::chrono::nanoseconds(since - seconds).count()};
        ::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr);
        late.push_back(behind(due));
    }
    return late;
}

Lateness ofWaits() {
    varda::window::QtClock clock;
    Lateness late;
    for (int round = 0; round < waits; ++round) {
        const auto due = Clock::now() + wait;
        bool isDone = false;
        clock.schedule(wait, [&] {
            late.push_back(behind(due));
            isDone = true;
        });
        while (!isDone) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    return late;
}

/// As the waits of the window were before: rounded up to a millisecond.
Lateness ofQtTimers() {
    Lateness late;
    for (int round = 0; round < waits; ++round) {
        const auto due = Clock::now() + wait;
        bool isDone = false;
        QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(wait), Qt::PreciseTimer, qApp, [&] {
            late.push_back(behind(due));
            isDone = true;
        });
        while (!isDone) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    return late;
}

/// How far each tick is from its place on the grid of the first.
Lateness ofPeriods() {
    constexpr int period = 20;
    varda::window::QtClock clock;
    Lateness away;
    auto due = Clock::now();
    varda::ClockTimer timer(clock, [&] {
        due += std::chrono::milliseconds(period);
        away.push_back(std::abs(behind(due)));
    });
    timer.setInterval(period);
    due = Clock::now();
    timer.start();
    while (static_cast<int>(away.size()) < waits) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return away;
}

struct Ways {
    Lateness (*ours)();
    const char* what;
};

void measure(const Ways& ways, const std::vector<std::pair<const char*, double>>& shares, Lateness (*other)(),
             const char* beside) {
    std::vector<Turns> turns(shares.size());
    for (int turn = 0; turn < varda::bench::turnCount; ++turn) {
        const Lateness ours = ways.ours();
        const Lateness theirs = other();
        for (std::size_t at = 0; at < shares.size(); ++at) {
            turns[at].ours.push_back(share(ours, shares[at].second));
            turns[at].theirs.push_back(share(theirs, shares[at].second));
        }
    }
    for (std::size_t at = 0; at < shares.size(); ++at) {
        print(std::string(ways.what) + ", " + shares[at].first, beside, "µs", turns[at]);
    }
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const std::vector<std::pair<const char*, double>> shares{{"median", 0.5}, {"99 %", 0.99}};
    measure({ofWaits, "a wait ends late"}, shares, ofBareLoop, "bare loop");
    measure({ofPeriods, "a tick is off its grid"}, shares, ofBareLoop, "bare loop");
    measure({ofWaits, "a wait ends late"}, {{"median", 0.5}}, ofQtTimers, "Qt's timer");
}
