#pragma once

#include "core/files/profile_file.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace varda::inline core {

/// Reads one value of a profile file.
/// @param size size of the buffer that the caller would have, with its terminator: at most size - 1 bytes are
/// returned
/// @return the value, `defaultText` where the section or the key is missing
inline std::string GetPrivateProfileStringA(std::string_view section, std::string_view key,
                                            std::string_view defaultText, std::size_t size,
                                            const ProfileFile& file) {
    return file.value(section, key, defaultText, size);
}

/// Sets one value of a profile file in memory. The file on the disk changes with ProfileFile::save alone, so
/// that a whole list reaches it in one step or not at all.
/// @throws RuntimeError 5 where no key can have that name
inline void WritePrivateProfileStringA(std::string_view section, std::string_view key, std::string_view text,
                                       ProfileFile& file) {
    file.setValue(section, key, text);
}

} // namespace varda::core
