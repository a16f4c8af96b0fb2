#include "platform/file_calls.h"

#include "platform/scope_exit.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <system_error>

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

// Missing against the calls of POSIX: a file that is replaced hands down neither its owner nor its access
// list nor attributes such as "hidden"; and a symbolic link that is saved to becomes a file where the
// standard library knows no links (mingw's does not).

namespace varda {
namespace {

namespace fs = std::filesystem;

/// By one of the reasons that every system has: Windows tells its own in the language it was installed in.
[[noreturn]] void throwLastError() {
    const std::error_code error(static_cast<int>(::GetLastError()), std::system_category());
    const std::error_condition reason = error.default_error_condition();
    const bool isCommon = reason.category() == std::generic_category();
    throw std::system_error(isCommon ? std::error_code(reason.value(), reason.category()) : error);
}

void check(BOOL result) {
    if (result == FALSE) {
        throwLastError();
    }
}

/// A file made anew for writing, closed at the end of the scope.
class NewFile {
public:
    explicit NewFile(const fs::path& file)
        : handle_(::CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                                nullptr)) {
        if (handle_ == INVALID_HANDLE_VALUE) {
            throwLastError();
        }
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    NewFile(NewFile&&) = delete;
    NewFile& operator=(NewFile&&) = delete;
    ~NewFile() { close(); }

    void write(std::string_view content) const {
        constexpr std::size_t most = 1U << 20U; // to write at once: network disks refuse too much
        while (!content.empty()) {
            DWORD written = 0;
            const auto size = static_cast<DWORD>(std::min(content.size(), most));
            check(::WriteFile(handle_, content.data(), size, &written, nullptr));
            content.remove_prefix(written);
        }
        check(::FlushFileBuffers(handle_));
    }

    void close() {
        if (handle_ != nullptr) {
            ::CloseHandle(handle_);
            handle_ = nullptr;
        }
    }

private:
    HANDLE handle_;
};

/// Names of devices, for example NUL and COM1, stand in every folder; the full path alone tells them.
bool isDevice(const fs::path& file) {
    std::wstring full(::GetFullPathNameW(file.c_str(), 0, nullptr, nullptr), L'\0');
    ::GetFullPathNameW(file.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    return full.starts_with(L"\\\\.\\");
}

} // namespace

fs::file_status statusOf(const fs::path& file) {
    return isDevice(file) ? fs::file_status(fs::file_type::character) : fs::status(file);
}

std::string readFile(const fs::path& file, std::size_t limit) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::system_error(std::make_error_code(std::errc::permission_denied));
    }
    std::string text(static_cast<std::size_t>(std::min<std::uintmax_t>(fs::file_size(file), limit)), '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

void requireWritable(const fs::path& file) {
    if ((fs::status(file).permissions() & fs::perms::owner_write) == fs::perms::none) {
        throw std::system_error(std::make_error_code(std::errc::permission_denied));
    }
}

void writeNewFile(const fs::path& file, std::string_view content, const fs::path* /*like*/) {
    NewFile created(file);
    bool complete = false;
    const ScopeExit removal([&] {
        created.close();
        if (!complete) {
            ::DeleteFileW(file.c_str());
        }
    });
    created.write(content);
    complete = true;
}

void renameFile(const fs::path& file, const fs::path& target) {
    check(::MoveFileExW(file.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
}

void syncFolder(const fs::path& /*folder*/) noexcept {} // MOVEFILE_WRITE_THROUGH has seen to it

} // namespace varda
