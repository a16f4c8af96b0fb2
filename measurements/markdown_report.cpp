#include "report.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace varda::bench {
namespace {

using Run = benchmark::BenchmarkReporter::Run;

std::string formatted(const char* format, double value) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

double timeOf(const Run& run) { return run.real_accumulated_time / static_cast<double>(run.iterations); }

/// Three digits and the unit that fits.
std::string timeText(double seconds) {
    constexpr double milli = 1e-3;
    constexpr double micro = 1e-6;
    if (seconds >= milli) {
        return formatted("%.3g ms", seconds / milli);
    }
    return seconds >= micro ? formatted("%.3g µs", seconds / micro) : formatted("%.3g ns", seconds * 1e9);
}

/// The one in the middle, with the least and the most.
std::string spreadText(std::vector<double> seconds) {
    std::ranges::sort(seconds);
    return timeText(seconds[seconds.size() / 2]) + " | " + timeText(seconds.front()) + " to " +
           timeText(seconds.back());
}

/// Shows the runs on the console as they end and keeps them for the document.
class MarkdownReport : public benchmark::ConsoleReporter {
public:
    /// Called for the runs of a benchmark, and again for what the library makes of several, which is
    /// only shown.
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        std::vector<double> seconds;
        for (const Run& run : runs) {
            failed_ = failed_ || run.error_occurred;
            if (run.run_type == Run::RT_Iteration && !run.error_occurred) {
                seconds.push_back(timeOf(run));
            }
        }
        if (!seconds.empty()) {
            const Run& first = runs.front();
            const benchmark::BenchmarkName& name = first.run_name;
            rows_[{first.family_index, first.per_family_instance_index}] =
                "| " + name.function_name + " | " + name.args + " | " + std::to_string(seconds.size()) +
                " | " + spreadText(seconds) + " |\n";
        }
    }

    bool failed() const { return failed_; }
    bool isEmpty() const { return rows_.empty(); }
    std::string document() const {
        std::string rows;
        for (const auto& [place, row] : rows_) {
            rows += row;
        }
        return "# Benchmarks\n\n"
               "Target `benchmark-report` measures and writes this file. Measured " +
               today() + " with " + std::to_string(benchmark::CPUInfo::Get().num_cpus) + " cores, load " +
               machineLoad() +
               ", compiler " VARDA_COMPILER ".\n"
               "Look-ups ask for one request again and again, and the answer is the table's and the link's "
               "on a line in memory, without what a\n"
               "line takes; drawn requests, other libraries and real lines, with their spread: "
               "[performance.md](performance.md).\n\n"
               "Times of one call. Each run's is the mean over its calls; of the runs the median, the least "
               "and the most. An answer's is that from\n"
               "the end of the last settle step to the bytes' leaving, without a window. Saving brings the "
               "file to the disk.\n\n"
               "| what | pairs | runs | time | least to most |\n"
               "|---|--:|--:|--:|--:|\n" +
               rows;
    }

private:
    std::map<std::pair<std::int64_t, std::int64_t>, std::string> rows_; ///< as the benchmarks were named
    bool failed_ = false;
};

/// @return the exit code
int measure(int argc, char** argv) {
    MarkdownReport report;
    const bool isFound = benchmark::RunSpecifiedBenchmarks(&report) > 0;
    if (!isFound || report.failed()) {
        return 1;
    }
    if (argc < 2) {
        return 0; // their names may be all that was asked for
    }
    return !report.isEmpty() && writeDocument(argv[1], report.document()) ? 0 : 1;
}

} // namespace
} // namespace varda::bench

/// Options are the library's; the one argument left names the document to write.
int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    return varda::bench::measure(argc, argv);
}
