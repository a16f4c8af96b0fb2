#include "faults/system_faults.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <mutex>
#include <thread>

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <termios.h>
#include <unistd.h>

namespace varda::faults {
namespace {

struct Counting {
    bool isOn = false;
    CallPlan plan;
    std::thread::id planner;
    int calls = 0;
    bool hasStruck = false;
};

std::mutex mutex; ///< guards what follows
Counting counting;

/// @return the error of one more call, 0 where it goes on
int strike() {
    const std::lock_guard lock(mutex);
    const CallPlan& plan = counting.plan;
    const bool isPlanner = counting.planner == std::this_thread::get_id();
    if (!counting.isOn || isPlanner != (plan.callers == Callers::ThisThread)) {
        return 0;
    }
    ++counting.calls;
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

/// Whether that is a file or a device. What Asio wakes its loop up with is neither: it does not look whether
/// that succeeds.
bool isFile(int handle) {
    static auto* const next = behind<int(int, struct stat*)>("fstat");
    struct stat status {};
    return next(handle, &status) != 0 || (status.st_mode & S_IFMT) != 0;
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

SystemFault::SystemFault(CallPlan plan) {
    const std::lock_guard lock(mutex);
    counting = {.isOn = true, .plan = plan, .planner = std::this_thread::get_id()};
}

SystemFault::~SystemFault() {
    const std::lock_guard lock(mutex);
    counting.isOn = false;
}

bool SystemFault::hasStruck() const {
    const std::lock_guard lock(mutex);
    return counting.hasStruck;
}

int SystemFault::calls() const {
    const std::lock_guard lock(mutex);
    return counting.calls;
}

} // namespace varda::faults

// Not among them is what Asio sets its loop up with: it does not look whether that succeeds.
using varda::faults::behind;
using varda::faults::callOrFail;
using varda::faults::isFile;
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
    return isFile(file) ? callOrFail(next, file, bytes, count) : next(file, bytes, count);
}

ssize_t read(int file, void* bytes, size_t count) {
    static auto* const next = behind<ssize_t(int, void*, size_t)>("read");
    return isFile(file) ? callOrFail(next, file, bytes, count) : next(file, bytes, count);
}

ssize_t readv(int file, const struct iovec* pieces, int count) {
    static auto* const next = behind<ssize_t(int, const struct iovec*, int)>("readv");
    return callOrFail(next, file, pieces, count);
}

ssize_t writev(int file, const struct iovec* pieces, int count) {
    static auto* const next = behind<ssize_t(int, const struct iovec*, int)>("writev");
    return callOrFail(next, file, pieces, count);
}

int ioctl(int file, unsigned long request, ...) noexcept {
    static auto* const next = behind<int(int, unsigned long, ...)>("ioctl");
    va_list rest;
    va_start(rest, request);
    void* const value = va_arg(rest, void*);
    va_end(rest);
    return callOrFail(next, file, request, value);
}

int tcgetattr(int file, struct termios* settings) noexcept {
    static auto* const next = behind<int(int, struct termios*)>("tcgetattr");
    return callOrFail(next, file, settings);
}

int tcsetattr(int file, int when, const struct termios* settings) noexcept {
    static auto* const next = behind<int(int, int, const struct termios*)>("tcsetattr");
    return callOrFail(next, file, when, settings);
}

int tcflush(int file, int which) noexcept {
    static auto* const next = behind<int(int, int)>("tcflush");
    return callOrFail(next, file, which);
}

int isatty(int file) noexcept {
    static auto* const next = behind<int(int)>("isatty");
    return callOrFail(next, file) == 1 ? 1 : 0;
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*), void* value) {
    static auto* const next =
        behind<int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create");
    const int error = strike();
    return error != 0 ? error : next(thread, attributes, start, value);
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
