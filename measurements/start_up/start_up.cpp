#include "report.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTextStream>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <vector>

/// Starts the program and an empty window of the same size by turns and compares them. Arguments: the two
/// programs, and the document to write. Ends with 1 where a ratio is over its limit.
namespace {

constexpr int rounds = 15;
constexpr double startUpLimit = 1.6;
constexpr double memoryLimit = 1.5;

/// A display that nobody sees, for as long as it lives; none where the desktop has one. Off screen an empty
/// window would load no font and connect to nothing, which no user's window does.
class Display {
public:
    Display() {
        if (qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) {
            return;
        }
        server_.start(QStringLiteral("Xvfb"),
                      {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                       QStringLiteral("0"), QStringLiteral("1280x1024x24")});
        if (!server_.waitForReadyRead()) {
            throw std::runtime_error(
                "There is no display, and Xvfb does not start. Install the package xvfb.");
        }
        qputenv("DISPLAY", ':' + server_.readLine().trimmed());
        qunsetenv("QT_QPA_PLATFORM");
    }
    ~Display() {
        server_.terminate();
        server_.waitForFinished();
    }
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;
    Display(Display&&) = delete;
    Display& operator=(Display&&) = delete;

private:
    QProcess server_;
};

/// Medians of what the runs of one window printed.
struct Figures {
    double startUp; ///< milliseconds
    double memory;  ///< MiB
    double idle;    ///< milliseconds of processor time in one second
};

using Samples = std::array<std::vector<double>, 3>;

void addRun(const QString& program, Samples& samples) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, {QString::number(std::chrono::nanoseconds(now).count())});
    if (!process.waitForFinished()) {
        throw std::runtime_error(qPrintable(program + QStringLiteral(" did not end by itself")));
    }
    QTextStream printed(process.readAllStandardOutput());
    for (std::vector<double>& values : samples) {
        double value = 0;
        printed >> value;
        if (printed.status() != QTextStream::Ok) {
            throw std::runtime_error(qPrintable(program + QStringLiteral(" printed no figures")));
        }
        values.push_back(value);
    }
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

Figures figuresOf(const Samples& samples) {
    constexpr double kibibytes = 1024;
    return {median(samples[0]), median(samples[1]) / kibibytes, median(samples[2])};
}

QString row(const char* what, const char* unit, double ours, double empty, const QString& limit) {
    const QString ratio = empty > 0 ? QString::number(ours / empty, 'f', 2) : QStringLiteral("-");
    return QStringLiteral("| %1 | %2 %5 | %3 %5 | %4 | %6 |\n")
        .arg(QLatin1String(what), QString::number(ours, 'f', 1), QString::number(empty, 'f', 1), ratio,
             QLatin1String(unit), limit);
}

QString document(const Figures& ours, const Figures& empty) {
    return QStringLiteral(
               "# Start-up\n\nTarget `start-up-report` measures and writes this file. Measured %1, "
               "medians of %2 starts by turns, on an X11 display,\n"
               "as the process itself sees it. Seen from outside, with the spread and private memory: "
               "[performance.md](performance.md).\n\n"
               "| what | program | empty Qt window | ratio | at most |\n|---|---|---|---|---|\n")
               .arg(QString::fromStdString(varda::bench::today()))
               .arg(rounds) +
           row("start to first painted frame", "ms", ours.startUp, empty.startUp,
               QString::number(startUpLimit)) +
           row("resident memory", "MiB", ours.memory, empty.memory, QString::number(memoryLimit)) +
           row("processor time of an idle second", "ms", ours.idle, empty.idle, QStringLiteral("-"));
}

int compare(const QStringList& arguments) {
    const Display display;
    Samples ours;
    Samples empty;
    for (int round = 0; round < rounds; ++round) {
        addRun(arguments.value(1), ours);
        addRun(arguments.value(2), empty);
    }
    const Figures program = figuresOf(ours);
    const Figures window = figuresOf(empty);
    const QString text = document(program, window);
    std::printf("%s", qPrintable(text));
    const bool holds =
        program.startUp <= startUpLimit * window.startUp && program.memory <= memoryLimit * window.memory;
    const bool isWritten = varda::bench::writeDocument(arguments.value(3).toStdString(), text.toStdString());
    return isWritten && holds ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    try {
        return compare(QCoreApplication::arguments());
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        return 1;
    }
}
