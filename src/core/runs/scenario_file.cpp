#include "core/runs/scenario_file.h"

#include "core/base/blanks.h"
#include "core/base/conversion.h"
#include "core/files/modVarda.h"

#include <string_view>

namespace varda::inline core {
namespace {

constexpr std::size_t valueBuffer = 16384; ///< holds the longest frame text of this program many times over
constexpr std::string_view information = "Information";
constexpr std::string_view total = "Total";
constexpr std::string_view scenario = "Scenario";

std::string lineKey(std::size_t index) { return std::string(scenario) + std::to_string(index); }

/// Number of lines that a file names; 0 where it names none.
std::int32_t totalOf(const ProfileFile& file) {
    return readLong(GetPrivateProfileStringA(information, total, "", valueBuffer, file)).value_or(0);
}

} // namespace

std::optional<LoadedScenario> loadScenario(const ProfileFile& file) {
    const std::int32_t lines = totalOf(file);
    if (lines < 1) {
        return std::nullopt;
    }
    LoadedScenario loaded = {{}, false};
    while (loaded.lines.size() < static_cast<std::size_t>(lines)) {
        const std::string line =
            GetPrivateProfileStringA(scenario, lineKey(loaded.lines.size()), "", valueBuffer, file);
        if (line.empty()) {
            return loaded;
        }
        loaded.lines.emplace_back(withoutBlanksAround(line));
    }
    loaded.isComplete = true;
    return loaded;
}

void storeScenario(std::span<const std::string> lines, ProfileFile& file) {
    WritePrivateProfileStringA(information, total, std::to_string(lines.size()), file);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        WritePrivateProfileStringA(scenario, lineKey(index), lines[index], file);
    }
}

} // namespace varda::core
