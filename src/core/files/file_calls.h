#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace varda::inline core {

// What replacing a file needs of the operating system; one source file per system stands behind it. All of
// them throw std::system_error where the system refuses.

/// What stands under a name, a device that has no file of its own (NUL on Windows) included.
std::filesystem::file_status statusOf(const std::filesystem::path& file);

/// At most `limit` bytes of a regular file.
/// @param from so many bytes behind its beginning
std::string readFile(const std::filesystem::path& file, std::size_t limit, std::size_t from = 0);

/// Throws permission_denied where the user may not write to an existing file.
void requireWritable(const std::filesystem::path& file);

/// Creates a file, writes the content, brings it to the disk and gives the file the name `target` in one
/// step; a file that has that name is replaced. After a failure there is no such file. While it is at work
/// the writer has a hold on the file, which the system lets go when the writer ends, however it ends.
/// @param like a file whose permissions and owner the new one takes over; null for those of a new file
/// @throws std::system_error file_exists where the name is taken; that file is left alone
void replaceByNewFile(const std::filesystem::path& file, std::string_view content,
                      const std::filesystem::path* like, const std::filesystem::path& target);

/// Removes a file that a writer has left behind; does nothing where a writer has its hold on it, and where
/// the system refuses.
void removeLeftBehind(const std::filesystem::path& file) noexcept;

/// Writes the content into an existing file and brings it to the disk. Room for it is taken first.
/// @param isTouched set as soon as the old content is no longer whole
void overwriteFile(const std::filesystem::path& file, std::string_view content, bool& isTouched);

// Of an open file, by its number: a second number for it (negative where there is none), what was written to
// the disk, and the number given back.
int duplicate(int file) noexcept;
void bringToDisk(int file) noexcept;
void closeDuplicate(int file) noexcept;

/// Brings a new name to the disk. Where the system cannot, a loss of power may bring the old file back; that
/// is whole as well, so nothing is reported.
void syncFolder(const std::filesystem::path& folder) noexcept;

} // namespace varda::core
