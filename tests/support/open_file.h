#pragma once

#include <string>

#ifdef _WIN32
#include "core/files/file_path.h"

#include <windows.h>
#else
#include <filesystem>
#endif

namespace varda::test {

/// Whether this process has the file of that name open.
inline bool isOpenFile(const std::string& path) {
#ifdef _WIN32
    // who asks for it alone does not get it then
    const HANDLE file =
        ::CreateFileW(filePath(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const bool isOpen = file == INVALID_HANDLE_VALUE && ::GetLastError() == ERROR_SHARING_VIOLATION;
    ::CloseHandle(file);
    return isOpen;
#else
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code ignored;
        if (std::filesystem::read_symlink(entry.path(), ignored) == path) {
            return true;
        }
    }
    return false;
#endif
}

} // namespace varda::test
