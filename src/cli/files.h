#pragma once

#include "core/pairs/packet_table.h"

#include <string>
#include <vector>

namespace varda::cli {

/// Adds the prepared pairs of a file. @throws Failure File where it does not hold what it should
void addPairs(PacketTable& table, const std::string& path);

/// The lines of a scenario's file. @throws Failure File where it does not hold what it should
std::vector<std::string> scenarioLines(const std::string& path);

} // namespace varda::cli
