#include "faults/file_faults.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace varda::faults {
namespace {

struct Counting {
    bool isOn = false;
    FilePlan plan;
    int calls = 0;
    bool hasStruck = false;
};

thread_local Counting counting;

/// @return the error of one more call, 0 where it goes on
int strike() {
    if (!counting.isOn) {
        return 0;
    }
    ++counting.calls;
    const FilePlan& plan = counting.plan;
    if (counting.calls != plan.call && (!plan.isLasting || counting.calls < plan.call)) {
        return 0;
    }
    counting.hasStruck = true;
    if (plan.error == 0) {
        static_cast<void>(::raise(SIGKILL));
    }
    return plan.error;
}

/// The function of that name behind ours.
template <typename Function>
Function* behind(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name)); // NOLINT(*-reinterpret-cast)
}

/// The call of the library, or its failure.
template <typename Function, typename... Values>
auto callOrFail(Function* function, Values... values) -> decltype(function(values...)) {
    if (const int error = strike()) {
        errno = error;
        return -1;
    }
    return function(values...);
}

} // namespace

FileFault::FileFault(FilePlan plan) { counting = {.isOn = true, .plan = plan}; }
FileFault::~FileFault() { counting.isOn = false; }
bool FileFault::hasStruck() const { return counting.hasStruck; }
int FileFault::calls() const { return counting.calls; }

} // namespace varda::faults

using varda::faults::behind;
using varda::faults::callOrFail;
using varda::faults::strike;

// NOLINTBEGIN(*-vararg, readability-inconsistent-declaration-parameter-name): as the system's library has
// them
extern "C" {

int open(const char* path, int flags, ...) {
    static auto* const next = behind<int(const char*, int, ...)>("open");
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return callOrFail(next, path, flags, mode);
}

int fcntl(int file, int command, ...) {
    static auto* const next = behind<int(int, int, ...)>("fcntl");
    va_list rest;
    va_start(rest, command);
    void* const value = va_arg(rest, void*);
    va_end(rest);
    return callOrFail(next, file, command, value);
}

ssize_t write(int file, const void* bytes, size_t count) {
    static auto* const next = behind<ssize_t(int, const void*, size_t)>("write");
    return callOrFail(next, file, bytes, count);
}

/// The handle is gone whatever it tells, as the system has it.
int close(int file) {
    static auto* const next = behind<int(int)>("close");
    const int error = strike();
    const int closed = next(file);
    if (error != 0) {
        errno = error;
        return -1;
    }
    return closed;
}

int fsync(int file) {
    static auto* const next = behind<int(int)>("fsync");
    return callOrFail(next, file);
}

int rename(const char* from, const char* to) noexcept {
    static auto* const next = behind<int(const char*, const char*)>("rename");
    return callOrFail(next, from, to);
}

int unlink(const char* path) noexcept {
    static auto* const next = behind<int(const char*)>("unlink");
    return callOrFail(next, path);
}

int flock(int file, int operation) noexcept {
    static auto* const next = behind<int(int, int)>("flock");
    return callOrFail(next, file, operation);
}

int fchown(int file, uid_t owner, gid_t group) noexcept {
    static auto* const next = behind<int(int, uid_t, gid_t)>("fchown");
    return callOrFail(next, file, owner, group);
}

int fchmod(int file, mode_t mode) noexcept {
    static auto* const next = behind<int(int, mode_t)>("fchmod");
    return callOrFail(next, file, mode);
}

int ftruncate(int file, off_t size) noexcept {
    static auto* const next = behind<int(int, off_t)>("ftruncate");
    return callOrFail(next, file, size);
}

int posix_fallocate(int file, off_t begin, off_t size) {
    static auto* const next = behind<int(int, off_t, off_t)>("posix_fallocate");
    const int error = strike();
    return error != 0 ? error : next(file, begin, size);
}

int stat(const char* path, struct stat* status) noexcept {
    static auto* const next = behind<int(const char*, struct stat*)>("stat");
    return callOrFail(next, path, status);
}

int lstat(const char* path, struct stat* status) noexcept {
    static auto* const next = behind<int(const char*, struct stat*)>("lstat");
    return callOrFail(next, path, status);
}

int fstat(int file, struct stat* status) noexcept {
    static auto* const next = behind<int(int, struct stat*)>("fstat");
    return callOrFail(next, file, status);
}

int faccessat(int folder, const char* path, int mode, int flags) noexcept {
    static auto* const next = behind<int(int, const char*, int, int)>("faccessat");
    return callOrFail(next, folder, path, mode, flags);
}

} // extern "C"
// NOLINTEND(*-vararg, readability-inconsistent-declaration-parameter-name)
