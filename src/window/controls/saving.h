#pragma once

#include <functional>
#include <string>

namespace varda::inline core {
class RuntimeError;
} // namespace varda::core

namespace varda::window {

/// How a user is told and asked about a file, on the window where the user is.
struct FileTalk {
    /// Tells the description of an error, and its advice below it.
    std::function<void(const RuntimeError& error)> tell;
    std::function<void(const std::string& question, std::function<void(bool yes)> answered)> ask;
};

/// The two ways to bring a file to the disk; both throw RuntimeError.
struct FileWriting {
    std::function<void()> replace; ///< in one step; throws OnlyInPlace where `overwrite` would help
    std::function<void()> overwrite;
};

/// Saves a file and runs `saved` when it is on the disk; a failure is told. Where it can only be written in
/// place, the user is asked first; No leaves everything as it was.
void saveOrTell(const std::string& path, const FileWriting& writing, const FileTalk& talk,
                const std::function<void()>& saved);

/// The same for a text.
void saveTextOrTell(const std::string& path, std::string text, const FileTalk& talk,
                    const std::function<void()>& saved);

} // namespace varda::window
