#pragma once

#include "core/base/bytes.h"

#include <cstddef>
#include <string>
#include <vector>

namespace varda::cli {

/// One line of a scenario in one round, and how it ended.
struct LineResult {
    int round = 1; ///< from 1
    int line = 1;  ///< from 1
    std::string kind;
    double seconds = 0; ///< until the answer was there
    std::string why;    ///< it failed; empty where it did not
    Bytes request;
    Bytes answer; ///< empty where none came
};

/// How many of them failed.
std::size_t failures(const std::vector<LineResult>& results);

/// Results as CI systems read them. @param suite the scenario's name
std::string junit(const std::string& suite, const std::vector<LineResult>& results);

} // namespace varda::cli
