#include "core/files/append_file.h"

#include "core/base/runtime_error.h"
#include "core/base/system_text.h"
#include "core/files/file_calls.h"
#include "core/files/file_path.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

namespace varda::inline core {
namespace {

namespace fs = std::filesystem;

RuntimeError openFailure(const std::string& path, int error) {
    return {error == ENOENT ? run_time_error::pathNotFound : run_time_error::fileAccessError,
            path + ": " + systemText({error, std::generic_category()})};
}

int openToAppend(const std::string& path) {
    const fs::path file = filePath(path);
    const fs::file_status status = statusOf(file);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw RuntimeError(run_time_error::fileAccessError,
                           path + " is no regular file. Choose another log file.");
    }
    const int opened = _wopen(file.c_str(), _O_WRONLY | _O_APPEND | _O_CREAT | _O_BINARY | _O_NOINHERIT,
                              _S_IREAD | _S_IWRITE);
    if (opened < 0) {
        throw openFailure(path, errno);
    }
    return opened;
}

} // namespace

AppendFile::AppendFile(const std::string& path) try : file_(openToAppend(path)) {
} catch (const std::system_error& problem) {
    throw openFailure(path, problem.code().default_error_condition().value());
}

AppendFile::~AppendFile() {
    endThread();
    _close(file_);
}

bool AppendFile::append(std::string_view text) noexcept {
    return _write(file_, text.data(), static_cast<unsigned>(text.size())) == static_cast<int>(text.size());
}

} // namespace varda::core
