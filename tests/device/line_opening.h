#pragma once

#include "core/base/runtime_error.h"
#include "device/device_line.h"
#include "support/raises.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace varda::test {

/// Nothing here waits for events.
inline void ignoreTasks(const std::function<void()>& /*task*/) {}

/// What opening a port fails with; nothing where it opens.
inline std::optional<RuntimeError> openError(const std::string& name) {
    device::DeviceLine line(name, ignoreTasks);
    return raisedBy([&line] { line.open({}); });
}

inline testing::AssertionResult fails(const std::string& name, int number, const std::string& description) {
    const auto error = openError(name);
    if (!error) {
        return testing::AssertionFailure() << name << " opened";
    }
    if (error->number() != number || std::string(error->what()) != description) {
        return testing::AssertionFailure() << error->number() << ": " << error->what();
    }
    return testing::AssertionSuccess();
}

inline std::string inUse(const std::string& label) {
    return label + " is in use by another program. Close it there or choose another port.";
}

/// The lock file of a pseudo-terminal, which other programs look for.
inline std::string lockFileOf(const std::string& path) {
    return "/var/lock/LCK..pts_" + std::filesystem::path(path).filename().string();
}

} // namespace varda::test
