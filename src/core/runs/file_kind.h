#pragma once

#include <cstdint>

namespace varda::inline core {

class ProfileFile;

/// What the files of this program hold.
enum class FileKind : std::uint8_t { Packets, Scenario, Neither };

/// Tells a file by its first entry, whatever its name: a prepared request, or a line of a scenario.
FileKind kindOf(const ProfileFile& file);

} // namespace varda::core
