#pragma once

#include "core/base/runtime_error.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace varda::inline core {

/// A file that may be written to, in a folder that takes no other one in its place.
class OnlyInPlace : public RuntimeError {
public:
    explicit OnlyInPlace(const RuntimeError& error) : RuntimeError(error) {}
};

/// What a file holds, or why it is not known.
struct FileText {
    std::string text;
    std::optional<RuntimeError> problem; ///< the text is then empty
};

// Paths are those of filePath (core/files/file_path.h).

/// Reads a regular file whole; a path that leads to nothing gives an empty text. Devices and pipes are not
/// even opened: opening one can block, or change the state of a line.
/// @param limit bytes; a larger file is a problem
FileText readRegularFile(const std::string& path, std::size_t limit);

/// The same of a part of the file. @param from bytes in front of it @param limit bytes of it at most
FileText readPartOfFile(const std::string& path, std::size_t from, std::size_t limit);

/// Replaces a file in one step: the content is written to a file beside it, brought to the disk, and given
/// the name. Until then, and after every failure, the old file is there untouched and the file beside it is
/// gone.
///
/// An existing file keeps its permissions, and its owner where the system allows that. A symbolic link stays;
/// the file that it leads to is replaced. A file that the user may not write to is not replaced either,
/// although its folder would allow it.
///
/// Killed in between, it leaves the file beside; the next one into that folder removes it.
/// @throws RuntimeError 57 device error, 61 disk full, 67 too many files, 70 permission denied, 75 no regular
/// file or another path/file access error, 76 path not found; the description names the file and the reason.
/// OnlyInPlace, with the number 70, where overwriteFile would help
void replaceFile(const std::string& path, std::string_view content);

/// Writes into an existing file, which a failure in the middle leaves damaged; the description then says so.
/// @throws RuntimeError as replaceFile does
void overwriteFile(const std::string& path, std::string_view content);

/// 75: a file beyond what is read.
RuntimeError fileTooLarge(const std::string& path);
/// 75: `"path" reason`.
RuntimeError fileError(const std::string& path, const std::string& reason);

} // namespace varda::core
