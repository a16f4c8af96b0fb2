#include "core/files/free_handles.h"

#include "core/base/runtime_error.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace varda::inline core {
namespace {

constexpr std::size_t enough = 32; ///< a dialog was seen to take five, and it lists folders

RuntimeError tooManyFiles(int systemError) {
    const char* const remedy = systemError == ENFILE
                                   ? "the system has too many files open. End other programs, then try again."
                                   : "this program has too many files open. Close the port and end this "
                                     "program, then start it again; "
                                     "a higher limit (ulimit -n) helps for good.";
    return {run_time_error::tooManyFiles, std::string("No file can be chosen: ") + remedy};
}

} // namespace

void requireFreeHandles() {
    std::array<int, enough> handles{};
    std::generate(handles.begin(), handles.end(), [] { return ::open("/", O_RDONLY | O_CLOEXEC); });
    const int systemError = errno;
    for (const int handle : handles) {
        if (handle >= 0) {
            ::close(handle);
        }
    }
    if (handles.back() < 0 && (systemError == EMFILE || systemError == ENFILE)) {
        throw tooManyFiles(systemError);
    }
}

} // namespace varda::core
