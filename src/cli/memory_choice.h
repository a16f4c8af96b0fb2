#pragma once

#include "core/virtual/controller.h"

#include <CLI/CLI.hpp>

#include <string>

namespace varda::cli {

/// Whether a simulated controller has a memory, and where that comes from and goes.
struct MemoryChoice {
    bool isOn = false;
    std::string file;
    bool isSaved = false;

    void declare(CLI::App& app);
    bool isWanted() const { return isOn || !file.empty(); }
    /// A file that is not there yet is an empty memory where it is to be saved.
    /// @throws Failure File where it does not hold a memory, RuntimeError where it cannot be read
    void load(Controller& controller) const;
    /// @throws RuntimeError where it cannot be written
    void save(const Controller& controller) const;
};

} // namespace varda::cli
