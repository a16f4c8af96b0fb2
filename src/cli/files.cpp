#include "cli/files.h"

#include "cli/failure.h"
#include "core/files/profile_file.h"
#include "core/pairs/packet_file.h"
#include "core/runs/scenario_file.h"

#include <optional>
#include <utility>

namespace varda::cli {
namespace {

ProfileFile load(const std::string& path) {
    ProfileFile file = ProfileFile::load(path);
    if (file.problem()) {
        throw Failure(ExitCode::File, path + ": " + file.problem()->what());
    }
    return file;
}

} // namespace

void addPairs(PacketTable& table, const std::string& path) {
    PacketTable own;
    if (loadPackets(own, load(path)) != PacketLoad::Complete) {
        throw Failure(ExitCode::File, path + " does not hold the pairs that it should: " +
                                          std::to_string(own.answers().size()) + " whole ones were found.");
    }
    for (std::size_t row = 0; row < own.requests().size(); ++row) {
        table.addPair(own.requests()[row], own.answer(row));
    }
}

std::vector<std::string> scenarioLines(const std::string& path) {
    std::optional<LoadedScenario> scenario = loadScenario(load(path));
    if (!scenario || !scenario->isComplete) {
        throw Failure(ExitCode::File, path + " does not hold the lines of a scenario that it should.");
    }
    return std::move(scenario->lines);
}

} // namespace varda::cli
