#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <string_view>

namespace varda::inline core {

/// A text file that is only appended to.
class AppendFile {
public:
    /// Opens the file, making it where there is none.
    /// @throws RuntimeError 76 where its folder does not exist, 75 where it cannot be opened or is no regular
    /// file
    explicit AppendFile(const std::string& path);
    AppendFile(const AppendFile&) = delete;
    AppendFile& operator=(const AppendFile&) = delete;
    ~AppendFile();

    /// Hands the text to the system. @return whether all of it was taken
    bool append(std::string_view text) noexcept;
    /// Has the system bring what was appended to the disk, without waiting for it: a slow disk must not hold
    /// the window up. However slow it is, no more than one thread of a file waits for it.
    void sync() noexcept;

private:
    void startThread() noexcept;
    void endThread() noexcept;

    int file_;
    /// How often the disk was asked for, below zero once nobody asks any more. The thread holds on to it: it
    /// may still wait for the disk when the file is gone.
    std::shared_ptr<std::atomic<int>> wishes_ = std::make_shared<std::atomic<int>>(0);
    bool hasThread_ = false;
};

/// The platform's line end in text files.
#ifdef _WIN32
inline constexpr const char* lineEnd = "\r\n";
#else
inline constexpr const char* lineEnd = "\n";
#endif

} // namespace varda::core
