#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace varda::cli {

// What is made of the declared subcommands, so that it never says anything else than the help.

/// The manual page, in the form that man reads. @param version of the tool
std::string manualPage(const CLI::App& app, const std::string& version);

/// What bash loads to complete the tool's command line.
std::string bashCompletion(const CLI::App& app);

} // namespace varda::cli
