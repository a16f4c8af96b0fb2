#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace varda {

// What replacing a file needs of the operating system; one source file per system stands behind it. All of
// them throw std::system_error where the system refuses.

/// What stands under a name, a device that has no file of its own (NUL on Windows) included.
std::filesystem::file_status statusOf(const std::filesystem::path& file);

/// The first `limit` bytes of a regular file.
std::string readFile(const std::filesystem::path& file, std::size_t limit);

/// Throws permission_denied where the user may not write to an existing file.
void requireWritable(const std::filesystem::path& file);

/// Creates a file, writes the content and brings it to the disk. After a failure there is no such file.
/// @param like a file whose permissions and owner the new one takes over; null for those of a new file
/// @throws std::system_error file_exists where the name is taken; that file is left alone
void writeNewFile(const std::filesystem::path& file, std::string_view content,
                  const std::filesystem::path* like);

/// Gives a file the name `target` in one step; a file that has that name is replaced.
void renameFile(const std::filesystem::path& file, const std::filesystem::path& target);

/// Brings a new name to the disk. Where the system cannot, a loss of power may bring the old file back; that
/// is whole as well, so nothing is reported.
void syncFolder(const std::filesystem::path& folder) noexcept;

} // namespace varda
