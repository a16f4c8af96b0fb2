#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace varda::inline core {

class ProfileFile;

/// Text of the message box, titled "Confirm", for a file that holds no scenario.
constexpr const char* scenarioFileCorrupted = "Scenario Data is incorrect or corrupted. Please Check Data.";

/// What was read of a scenario file.
struct LoadedScenario {
    std::vector<std::string> lines;
    bool isComplete; ///< every line that "Total" names was there
};

/// Reads a scenario: "Total" of section "Information", then Scenario0, Scenario1, .. of section "Scenario";
/// an entry that is missing or empty ends the reading.
/// @return nothing where "Total" is missing or no number above 0
std::optional<LoadedScenario> loadScenario(const ProfileFile& file);

/// Writes a scenario, in the same form. Entries of a longer scenario that the file held before stay in it.
void storeScenario(std::span<const std::string> lines, ProfileFile& file);

} // namespace varda::core
