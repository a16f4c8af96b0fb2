#pragma once

#include "core/files/file_path.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>
#include <vector>

namespace varda::test {

/// A file's name in letters of several bytes, Latin and other.
inline constexpr const char* notAscii = "Me\xC3\x9Fwert \xE6\xB8\xAC\xE5\xAE\x9A.ini";

/// A folder of a test's own, gone with everything in it at the end of the test.
class TemporaryFolder {
public:
    TemporaryFolder() : path_(makeFolder()) {
        // Tests that give up the rights of the administrator have to come in as well.
        std::filesystem::permissions(filePath(path_), std::filesystem::perms(0755));
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    TemporaryFolder(TemporaryFolder&&) = delete;
    TemporaryFolder& operator=(TemporaryFolder&&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(filePath(path_), ignored);
    }

    const std::string& path() const { return path_; }
    /// The path of a file in it, as the system writes paths.
    std::string file(const std::string& name) const {
        std::string path = path_ + "/" + name;
        std::ranges::replace(path, '/', static_cast<char>(std::filesystem::path::preferred_separator));
        return path;
    }

    std::ptrdiff_t entries() const { return static_cast<std::ptrdiff_t>(names().size()); }

    /// Of all that stands in it, in UTF-8.
    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& entry : std::filesystem::directory_iterator(filePath(path_))) {
            result.push_back(textOf(entry.path().filename()));
        }
        return result;
    }

private:
    static std::string textOf(const std::filesystem::path& path) {
        const std::u8string text = path.u8string();
        return {text.begin(), text.end()};
    }

    /// Of a name that nothing has yet, another process's tests included.
    static std::string makeFolder() {
        std::random_device random;
        for (;;) {
            const auto path = std::filesystem::temp_directory_path() / ("varda-" + std::to_string(random()));
            if (std::filesystem::create_directory(path)) {
                return textOf(path);
            }
        }
    }

    std::string path_;
};

inline void writeBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(filePath(path), std::ios::binary) << bytes;
}

inline std::string bytesOf(const std::string& path) {
    std::ifstream stream(filePath(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace varda::test
