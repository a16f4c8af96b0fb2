#include "platform/append_file.h"

#include "platform/runtime_error.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

namespace varda {

AppendFile::AppendFile(const std::string& path)
    : file_(_open(path.c_str(), _O_WRONLY | _O_APPEND | _O_CREAT | _O_BINARY, _S_IREAD | _S_IWRITE)) {
    if (file_ < 0) {
        throw RuntimeError(run_time_error::fileAccessError,
                           path + " cannot be opened. Choose another log file.");
    }
}

AppendFile::~AppendFile() { _close(file_); }

bool AppendFile::append(std::string_view text) noexcept {
    return _write(file_, text.data(), static_cast<unsigned>(text.size())) == static_cast<int>(text.size());
}

void AppendFile::sync() noexcept { _commit(file_); }

} // namespace varda
