#include "core/files/file_calls.h"

#include "core/base/scope_exit.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <io.h>

// Missing against the calls of POSIX: a file that is replaced hands down neither its owner nor its access
// list nor attributes such as "hidden"; and a symbolic link that is saved to becomes a file where the
// standard library knows no links (mingw's does not).

namespace varda::inline core {
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

/// A file that is written, with nobody else at it, closed at the end of the scope.
class WrittenFile {
public:
    /// @param disposition CREATE_NEW or OPEN_EXISTING
    WrittenFile(const fs::path& file, DWORD disposition)
        : handle_(::CreateFileW(file.c_str(), accessFor(disposition), 0, nullptr, disposition,
                                FILE_ATTRIBUTE_NORMAL, nullptr)) {
        if (handle_ == INVALID_HANDLE_VALUE) {
            throwLastError();
        }
    }
    WrittenFile(const WrittenFile&) = delete;
    WrittenFile& operator=(const WrittenFile&) = delete;
    WrittenFile(WrittenFile&&) = delete;
    WrittenFile& operator=(WrittenFile&&) = delete;
    ~WrittenFile() { close(); }

    /// From the beginning, up to where the content ends.
    void write(std::string_view content) const {
        constexpr std::size_t most = 1U << 20U; // to write at once: network disks refuse too much
        while (!content.empty()) {
            DWORD written = 0;
            const auto size = static_cast<DWORD>(std::min(content.size(), most));
            check(::WriteFile(handle_, content.data(), size, &written, nullptr));
            content.remove_prefix(written);
        }
        check(::SetEndOfFile(handle_));
        check(::FlushFileBuffers(handle_));
    }

    /// Makes a file longer that is shorter than that.
    void takeRoom(std::size_t size) const {
        LARGE_INTEGER former{};
        LARGE_INTEGER wanted{};
        check(::GetFileSizeEx(handle_, &former));
        wanted.QuadPart = static_cast<LONGLONG>(size);
        if (wanted.QuadPart > former.QuadPart) {
            check(::SetFilePointerEx(handle_, wanted, nullptr, FILE_BEGIN));
            check(::SetEndOfFile(handle_));
            check(::SetFilePointerEx(handle_, {}, nullptr, FILE_BEGIN));
        }
    }

    /// Renames the file while it is held: closed first, it could be taken for left behind.
    void rename(const fs::path& target) const {
        const std::wstring name = fs::absolute(target).wstring();
        // The structure has room for the first letter; the zero behind the last one takes its place.
        std::vector<std::byte> memory(sizeof(FILE_RENAME_INFO) + name.size() * sizeof(wchar_t));
        auto* const request = new (memory.data()) FILE_RENAME_INFO{};
        request->ReplaceIfExists = TRUE;
        request->FileNameLength = static_cast<DWORD>(name.size() * sizeof(wchar_t));
        std::copy(name.begin(), name.end(), request->FileName);
        check(::SetFileInformationByHandle(handle_, FileRenameInfo, request,
                                           static_cast<DWORD>(memory.size())));
    }

    void close() {
        if (handle_ != nullptr) {
            ::CloseHandle(handle_);
            handle_ = nullptr;
        }
    }

private:
    /// A new file is given another name later on.
    static DWORD accessFor(DWORD disposition) {
        return disposition == CREATE_NEW ? GENERIC_WRITE | DELETE : GENERIC_WRITE;
    }

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

std::string readFile(const fs::path& file, std::size_t limit, std::size_t from) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::system_error(std::make_error_code(std::errc::permission_denied));
    }
    const std::uintmax_t size = fs::file_size(file);
    const std::uintmax_t rest = size - std::min<std::uintmax_t>(from, size);
    std::string text(static_cast<std::size_t>(std::min<std::uintmax_t>(rest, limit)), '\0');
    stream.seekg(static_cast<std::streamoff>(from));
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

void requireWritable(const fs::path& file) {
    if ((fs::status(file).permissions() & fs::perms::owner_write) == fs::perms::none) {
        throw std::system_error(std::make_error_code(std::errc::permission_denied));
    }
}

void replaceByNewFile(const fs::path& file, std::string_view content, const fs::path* /*like*/,
                      const fs::path& target) {
    WrittenFile created(file, CREATE_NEW);
    bool complete = false;
    const ScopeExit removal([&] {
        created.close();
        if (!complete) {
            ::DeleteFileW(file.c_str());
        }
    });
    created.write(content);
    created.rename(target);
    complete = true;
}

void removeLeftBehind(const fs::path& file) noexcept {
    ::DeleteFileW(file.c_str()); // refused while its writer has it open
}

void overwriteFile(const fs::path& file, std::string_view content, bool& isTouched) {
    const WrittenFile existing(file, OPEN_EXISTING);
    existing.takeRoom(content.size());
    isTouched = true;
    existing.write(content);
}

void syncFolder(const fs::path& /*folder*/) noexcept {} // there is no such call

int duplicate(int file) noexcept { return _dup(file); }

void bringToDisk(int file) noexcept {
    if (file >= 0) {
        _commit(file);
    }
}

void closeDuplicate(int file) noexcept {
    if (file >= 0) {
        _close(file);
    }
}

} // namespace varda::core
