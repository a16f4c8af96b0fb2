#include "core/files/append_file.h"

#include "core/base/runtime_error.h"
#include "core/base/system_text.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace varda::inline core {
namespace {

RuntimeError openFailure(const std::string& path, int error) {
    const bool isFolderMissing = error == ENOENT || error == ENOTDIR;
    return {isFolderMissing ? run_time_error::pathNotFound : run_time_error::fileAccessError,
            path + ": " + systemText({error, std::generic_category()})};
}

bool isRegular(int file) {
    struct stat status {};
    return ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

AppendFile::AppendFile(const std::string& path)
    : file_(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666)) {
    if (file_ < 0) {
        throw openFailure(path, errno);
    }
    if (!isRegular(file_)) {
        ::close(file_);
        throw RuntimeError(run_time_error::fileAccessError,
                           path + " is no regular file. Choose another log file.");
    }
}

AppendFile::~AppendFile() {
    endThread();
    ::close(file_);
}

bool AppendFile::append(std::string_view text) noexcept {
    while (!text.empty()) {
        const ssize_t written = ::write(file_, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace varda::core
