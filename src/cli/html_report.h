#pragma once

#include "cli/junit.h"

#include <string>
#include <vector>

namespace varda::cli {

/// The same results as a page for people: one file, readable in the dark, that asks for nothing from
/// elsewhere. @param scenario its name
std::string htmlReport(const std::string& scenario, const std::vector<LineResult>& results);

} // namespace varda::cli
