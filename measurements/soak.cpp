#include "monitoring.h"
#include "report.h"
#include "support/event_loop.h"
#include "support/offscreen.h"
#include "support/processor_time.h"
#include "support/pseudo_terminal.h"
#include "support/window_driver.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

/// The monitor under hours of traffic, every page under a flood, and the period of a scenario: measured on
/// the real window over a pseudo-terminal. Writes a table to the file that is named, or to the screen.
namespace {

using varda::Bytes;
using varda::bench::startMonitoring;
using varda::test::runFor;
using varda::test::runUntil;
using varda::test::WindowDriver;

/// The longest time for which the window did not get to its events.
class Latency {
public:
    Latency() {
        clock_.start();
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_,
                         [this] { worst_ = std::max(worst_, clock_.restart()); });
        timer_.start(1);
    }
    qint64 worst() const { return worst_; }

private:
    QTimer timer_;
    QElapsedTimer clock_;
    qint64 worst_ = 0;
};

class Report {
public:
    void row(const QString& what, const QString& figure) {
        rows_ += QStringLiteral("| %1 | %2 |\n").arg(what, figure);
        std::printf("%s: %s\n", qPrintable(what), qPrintable(figure));
        std::fflush(stdout);
    }
    QString text() const {
        return QStringLiteral(
                   "# Soak and flood\n\nTarget `soak-report` measures and writes this file. "
                   "Measured %1, %2 cores, "
                   "offscreen, over a pseudo-terminal,\nat a load of %3 with the measurement's own; one run. "
                   "Processor time: with what sends. Beside other programs, with their spread:\n"
                   "[performance.md](performance.md).\n\n"
                   "| what | figure |\n|---|---|\n")
                   .arg(QString::fromStdString(varda::bench::today()))
                   .arg(std::thread::hardware_concurrency())
                   .arg(QString::fromStdString(varda::bench::machineLoad())) +
               rows_;
    }

private:
    QString rows_;
};

/// What a run takes: memory in its first part and behind it, and the processor time of all threads.
class Use {
public:
    void lookAtFirstPart() { first_ = most(first_, varda::bench::memory()); }
    void lookBehindIt() { behind_ = most(behind_, varda::bench::memory()); }

    /// @param parts which two parts of the run those were
    void tell(Report& report, const QString& run, const QString& parts) const {
        const auto both = [](long first, long behind) {
            return QStringLiteral("%1 MiB, %2 MiB").arg(first / 1024).arg(behind / 1024);
        };
        const auto seconds = varda::test::processorTime() - start_;
        report.row(QStringLiteral("%1: resident memory %2").arg(run, parts),
                   both(first_.resident, behind_.resident));
        report.row(QStringLiteral("%1: memory written by the program").arg(run),
                   both(first_.own, behind_.own));
        report.row(QStringLiteral("%1: processor time").arg(run),
                   QStringLiteral("%1 s").arg(seconds.count(), 0, 'f', 1));
    }

private:
    varda::bench::Memory first_;
    varda::bench::Memory behind_;
    const std::chrono::duration<double> start_ = varda::test::processorTime();
};

/// Eight hours at 38400 baud without the waits: as many bursts as the line can bring, each of one wait's
/// length.
void soak(Report& report, const QString& folder) {
    constexpr int burstLength = 384; // 3840 bytes a second for 100 ms
    constexpr int bursts = 8 * 3600 * 10;
    constexpr int settled = 4200; // the list has restarted twice
    WindowDriver driver;
    const varda::test::PseudoTerminal line;
    const QString log = folder + QStringLiteral("/soak.log");
    startMonitoring(driver, line, log.toStdString());
    const Bytes burst(burstLength, 0x5A);
    Use use;
    for (int count = 0; count < bursts; ++count) {
        driver.listBurst(burst);
        if (count % 100 == 0) {
            QCoreApplication::processEvents();
            if (count < settled) {
                use.lookAtFirstPart();
            } else {
                use.lookBehindIt();
            }
        }
    }
    report.row(
        QStringLiteral("soak: traffic of 8 hours at 38400 baud"),
        QStringLiteral("%1 MB in %2 bursts").arg(bursts / 1000000.0 * burstLength, 0, 'f', 1).arg(bursts));
    use.tell(report, QStringLiteral("soak"),
             QStringLiteral("until the list has restarted twice, and after that"));
    driver.click("cmdMonStop");
    report.row(
        QStringLiteral("soak: log"),
        QStringLiteral("%1 of %2 bytes").arg(QFile(log).size()).arg(qint64{bursts} * (3 * burstLength + 1)));
}

/// 1 MB a second for 30 seconds through the line, in the log to the last byte.
void flood(Report& report, const QString& folder) {
    constexpr int seconds = 30;
    constexpr int piece = 10000;
    constexpr int pieces = seconds * 100;
    WindowDriver driver;
    const varda::test::PseudoTerminal line;
    const QString log = folder + QStringLiteral("/flood.log");
    startMonitoring(driver, line, log.toStdString());
    runFor(std::chrono::milliseconds(200));
    Use use;
    use.lookAtFirstPart();
    const Latency latency;
    std::thread sender([&line] {
        auto next = std::chrono::steady_clock::now();
        for (int count = 0; count < pieces; ++count) {
            line.write(Bytes(piece, static_cast<std::uint8_t>(count)), std::chrono::seconds(10));
            std::this_thread::sleep_until(next += std::chrono::milliseconds(10));
        }
    });
    QElapsedTimer clock;
    clock.start();
    const auto groups = [&log] {
        QFile file(log);
        qint64 count = 0;
        if (file.open(QIODevice::ReadOnly)) {
            count = (file.size() - file.readAll().count('\n')) / 3;
        }
        return count;
    };
    while (clock.elapsed() < seconds * 1000 + 1000) {
        runFor(std::chrono::milliseconds(500));
        use.lookBehindIt();
    }
    sender.join();
    use.tell(report, QStringLiteral("flood"), QStringLiteral("before, and the most during it"));
    const qint64 worst = latency.worst();
    runUntil([&] { return groups() == qint64{piece} * pieces; }, std::chrono::seconds(10));
    report.row(QStringLiteral("flood: bytes in the log after 1 MB/s for 30 s"),
               QStringLiteral("%1 of %2").arg(groups()).arg(qint64{piece} * pieces));
    report.row(QStringLiteral("flood: longest time the window did not answer"),
               QStringLiteral("%1 ms").arg(worst));
}

/// The same flood where nobody asked for it: on a page that waits for an answer, or for nothing, or in the
/// simulation, where it is one request that does not end.
void floodElsewhere(Report& report, const char* mode, const QString& where) {
    constexpr int pieces = 30 * 100;
    WindowDriver driver;
    const varda::test::PseudoTerminal line;
    driver.click(mode);
    driver.openPort(line.path());
    const Bytes piece(10000, 0x5A);
    Use use;
    for (int count = 0; count < pieces; ++count) {
        line.write(piece, std::chrono::seconds(10));
        runFor(std::chrono::milliseconds(10));
        if (count < 100) { // buffers of one wait have been filled by then
            use.lookAtFirstPart();
        } else {
            use.lookBehindIt();
        }
    }
    use.tell(report, QStringLiteral("flood of 30 MB ") + where,
             QStringLiteral("in its first second, and after that"));
}

/// The period of a scenario while a controller answers.
void scenarioPeriod(Report& report, int period) {
    constexpr int ticks = 300;
    WindowDriver driver;
    driver.openPort("VIRTUAL");
    auto* const schedule = driver.find<QListWidget>("lstSchedule");
    schedule->addItem(QStringLiteral("FF FF 21 03 00 00 08 BD 85"));
    schedule->addItem(QStringLiteral("FF FF 23 03 00 02 04 C5 20"));
    driver.find("cmdRunScenario")->setEnabled(true);
    driver.paste("txtScnPeriod", std::to_string(period));
    const auto deviations = std::make_shared<std::vector<double>>();
    const auto clock = std::make_shared<QElapsedTimer>();
    QObject::connect(schedule, &QListWidget::currentRowChanged, schedule, [deviations, clock, period] {
        const auto passed = static_cast<double>(clock->nsecsElapsed()) / 1e6;
        clock->start();
        deviations->push_back(std::abs(passed - period));
    });
    clock->start();
    driver.click("cmdRunScenario");
    runUntil([&deviations] { return deviations->size() > ticks; }, std::chrono::minutes(3));
    deviations->erase(deviations->begin(), deviations->begin() + 2); // the start is no period
    std::ranges::sort(*deviations);
    report.row(QStringLiteral("scenario: period of %1 ms, deviation of 99 % of %2 ticks, worst")
                   .arg(period)
                   .arg(ticks),
               QStringLiteral("%1 ms, %2 ms")
                   .arg(deviations->at(deviations->size() * 99 / 100), 0, 'f', 2)
                   .arg(deviations->back(), 0, 'f', 2));
}

} // namespace

int main(int argc, char** argv) try {
    varda::test::preferOffscreen();
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    Report report;
    soak(report, folder.path());
    flood(report, folder.path());
    floodElsewhere(report, "optMode_0", QStringLiteral("on the read page"));
    floodElsewhere(report, "optMode_5", QStringLiteral("on the idle monitor page"));
    floodElsewhere(report, "optMode_4", QStringLiteral("in the simulation"));
    scenarioPeriod(report, 150);
    scenarioPeriod(report, 20);
    if (argc > 1) {
        if (!varda::bench::writeDocument(argv[1], report.text().toStdString())) {
            std::printf("%s cannot be written.\n", argv[1]);
            return 1;
        }
    }
    return 0;
} catch (const std::exception& error) {
    std::printf("The measurement broke off: %s\n", error.what());
    return 1;
}
