#include "platform/file_calls.h"

#include "platform/scope_exit.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <system_error>

// For systems without the calls of POSIX. Missing against those: the certainty that the content has reached
// the disk before the name changes, the owner of the old file, and most reasons of a failed write.

namespace varda {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(std::errc reason) { throw std::system_error(std::make_error_code(reason)); }

/// Streams do not tell why they fail.
std::errc reasonOfFailedWrite(const fs::path& folder, std::size_t size) {
    std::error_code problem;
    const fs::space_info space = fs::space(folder.empty() ? fs::path(".") : folder, problem);
    return !problem && space.available < size ? std::errc::no_space_on_device : std::errc::io_error;
}

} // namespace

std::string readFile(const fs::path& file, std::size_t limit) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        fail(std::errc::permission_denied);
    }
    std::string text(static_cast<std::size_t>(std::min<std::uintmax_t>(fs::file_size(file), limit)), '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

void requireWritable(const fs::path& file) {
    if ((fs::status(file).permissions() & fs::perms::owner_write) == fs::perms::none) {
        fail(std::errc::permission_denied);
    }
}

void writeNewFile(const fs::path& file, std::string_view content, const fs::path* like) {
    const fs::path folder = file.parent_path();
    if (!folder.empty() && !fs::is_directory(folder)) {
        fail(std::errc::no_such_file_or_directory);
    }
    if (fs::exists(file)) {
        fail(std::errc::file_exists);
    }
    std::ofstream stream(file, std::ios::binary);
    if (!stream) {
        fail(std::errc::permission_denied);
    }
    bool complete = false;
    const ScopeExit removal([&] {
        if (!complete) {
            stream.close();
            std::error_code ignored;
            fs::remove(file, ignored);
        }
    });
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream) {
        fail(reasonOfFailedWrite(folder, content.size()));
    }
    if (like != nullptr) {
        fs::permissions(file, fs::status(*like).permissions());
    }
    complete = true;
}

void syncFolder(const fs::path& /*folder*/) noexcept {}

} // namespace varda
