#include "cli/recording_commands.h"

#include "cli/files.h"
#include "core/files/profile_file.h"
#include "core/pairs/packet_file.h"
#include "core/recordings/recording_difference.h"
#include "core/recordings/recording_files.h"
#include "core/runs/scenario_file.h"

namespace varda::cli {
namespace {

CLI::Option* addCapture(CLI::App& app, const std::string& name, std::string& file) {
    return app.add_option(name, file, "Capture in the form pcapng")->required()->check(existingFile());
}

void convertToScenario(const Recording& recording, const std::string& path, Report& report) {
    const std::vector<std::string> lines = scenarioOf(recording);
    ProfileFile file;
    storeScenario(lines, file);
    file.save(path);
    report.converted(path, lines.size());
}

void convertToPairs(const Recording& recording, const std::string& path, Report& report) {
    RecordedPairs pairs = pairsOf(recording);
    PacketTable table;
    table.replace(std::move(pairs.requests), std::move(pairs.answers));
    ProfileFile file;
    storePackets(table, file);
    file.save(path);
    report.converted(path, table.requests().size(), pairs.unanswered, pairs.changing);
}

void convertToExpectations(const Recording& recording, const std::string& path, Report& report) {
    const std::vector<std::string> texts = expectationsOf(recording);
    saveExpectations(path, texts);
    report.converted(path, texts.size());
}

} // namespace

void ConvertCommand::declare(CLI::App& app) {
    addCapture(app, "file", file_);
    app.add_option("--scenario", scenario_, "Write the requests to this file, as a scenario");
    app.add_option("--packets", packets_,
                   "Write each request with its answer to this file, as prepared pairs");
    app.add_option("--expect", expectations_,
                   "Write the answers to this file, as what is expected of the scenario");
}

ExitCode ConvertCommand::run(const Streams& streams, Report& report) {
    if (scenario_.empty() && packets_.empty() && expectations_.empty()) {
        throw Failure(ExitCode::Usage,
                      "What is to be made of it? Say --scenario, --packets or --expect, and a file.");
    }
    requireOwnFile(scenario_, {file_, packets_});
    requireOwnFile(packets_, {file_});
    const Recording converted = recording(file_, streams.error);
    if (exchangesOf(converted).empty()) {
        throw Failure(ExitCode::File, file_ + " holds no request.");
    }
    const auto write = [&](const std::string& path, auto&& convert) {
        if (!path.empty()) {
            convert(converted, path, report);
        }
    };
    write(scenario_, convertToScenario);
    write(packets_, convertToPairs);
    write(expectations_, convertToExpectations);
    return ExitCode::Right;
}

void CompareCommand::declare(CLI::App& app) {
    addCapture(app, "first", left_);
    addCapture(app, "second", right_);
}

ExitCode CompareCommand::run(const Streams& streams, Report& report) {
    const RecordingDifference difference =
        compare(recording(left_, streams.error), recording(right_, streams.error));
    report.difference(difference);
    return difference.isSame() ? ExitCode::Right : ExitCode::Failed;
}

} // namespace varda::cli
