#include "report.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace varda::bench {
namespace {

using Run = benchmark::BenchmarkReporter::Run;

/// Runs of this many pairs show how much longer they take than those of a tenth.
constexpr std::string_view grown = "20000";

std::string formatted(const char* format, double value) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

/// Three digits and the unit that fits.
std::string timeText(double seconds) {
    constexpr double milli = 1e-3;
    constexpr double micro = 1e-6;
    if (seconds >= milli) {
        return formatted("%.3g ms", seconds / milli);
    }
    return seconds >= micro ? formatted("%.3g µs", seconds / micro) : formatted("%.3g ns", seconds * 1e9);
}

/// Shows the runs on the console as they end and keeps them for the document.
class MarkdownReport : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            failed_ = failed_ || run.error_occurred;
            rows_ += row(run);
        }
    }

    bool failed() const { return failed_; }
    std::string document() const {
        return "# Benchmarks\n\n"
               "Target `benchmark-report` measures and writes this file. Measured " +
               today() + " with " + std::to_string(benchmark::CPUInfo::Get().num_cpus) + " cores, load " +
               machineLoad() +
               ", compiler " VARDA_COMPILER ".\n"
               "Look-ups ask for one request again and again, and the answer is the table's and the link's "
               "on a "
               "line in memory, without what a\n"
               "line takes; drawn requests, other libraries and real lines, with their spread: "
               "[performance.md](performance.md).\n\n"
               "Times are means of one call; median and 99 % are of single answers, from the end of the "
               "last\n"
               "settle step to the bytes' leaving, without a window. Saving brings the file to the disk.\n"
               "The last column compares the mean with that of 2,000 pairs, a tenth.\n\n"
               "| what | pairs | time | median | 99 % | 20,000 : 2,000 |\n"
               "|---|--:|--:|--:|--:|--:|\n" +
               rows_;
    }

private:
    std::string row(const Run& run) {
        const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
        const std::string growth = run.run_name.args == grown ? formatted("x %.1f", seconds / previous_) : "";
        previous_ = seconds;
        return "| " + run.run_name.function_name + " | " + run.run_name.args + " | " + timeText(seconds) +
               " | " + counterText(run, "median_s") + " | " + counterText(run, "p99_s") + " | " + growth +
               " |\n";
    }

    static std::string counterText(const Run& run, const char* counter) {
        const auto found = run.counters.find(counter);
        return found == run.counters.end() ? std::string() : timeText(found->second);
    }

    std::string rows_;
    double previous_ = 0; ///< seconds of the run before, which has fewer pairs
    bool failed_ = false;
};

/// @return the exit code
int measure(int argc, char** argv) {
    MarkdownReport report;
    benchmark::RunSpecifiedBenchmarks(&report);
    const bool isWritten = argc < 2 || report.failed() || writeDocument(argv[1], report.document());
    return report.failed() || !isWritten ? 1 : 0;
}

} // namespace
} // namespace varda::bench

/// Options are the library's; the one argument left names the document to write.
int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    return varda::bench::measure(argc, argv);
}
