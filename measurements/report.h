#pragma once

#include <string>

namespace varda::bench {

/// Of a process, in KiB.
struct Memory {
    long resident = 0;
    long own = 0; ///< what it wrote itself
};

/// @param process its number, or "self" @throws std::runtime_error where the system does not tell
Memory memory(const std::string& process = "self");

/// The most of each.
Memory most(const Memory& one, const Memory& other);

/// The day of the measurement, for example "2026-11-21".
std::string today();

/// How many programs have wanted a processor in the last minute, for example "0.4".
std::string machineLoad();

/// Writes a measurement's document. @return whether all of it is on the disk
bool writeDocument(const std::string& path, const std::string& text);

} // namespace varda::bench
