#pragma once

#include "core/insight/expectation.h"
#include "core/pairs/packet_table.h"
#include "core/recordings/recording.h"

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace varda::cli {

/// Takes the name of a file that is there, and no folder.
CLI::Validator existingFile();

/// To be called before anything is written. @throws Failure Usage where the file that is to be written is one
/// of the others as well, by whatever name; those that are empty are none
void requireOwnFile(const std::string& written, const std::vector<std::string>& others);

/// A file's name for those who take nothing but UTF-8 without control characters, whatever its bytes are.
std::string readableName(const std::string& path);

/// Adds the prepared pairs of a file. @throws Failure File where it does not hold what it should
void addPairs(PacketTable& table, const std::string& path);

/// The lines of a scenario's file. @throws Failure File where it does not hold what it should
std::vector<std::string> scenarioLines(const std::string& path);

/// What is expected of the lines of a scenario. @throws Failure File where there is nothing of the kind, or
/// an entry is not understood
std::vector<std::optional<Expectation>> expectations(const std::string& path, std::size_t lines);

/// Writes what is expected of the lines of a scenario; the rest of the file stays.
/// @throws RuntimeError where it cannot be written
void saveExpectations(const std::string& path, const std::vector<std::string>& texts);

/// A capture; what of it could not be read is told. @throws RuntimeError where it is none
Recording recording(const std::string& path, std::ostream& error);

} // namespace varda::cli
