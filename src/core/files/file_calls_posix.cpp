#include "core/files/file_calls.h"

#include "core/base/scope_exit.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace varda::inline core {
namespace {

[[noreturn]] void throwLastError() {
    // A used-up share of the disk is a full disk to the user.
    throw std::system_error(errno == EDQUOT ? ENOSPC : errno, std::generic_category());
}

/// @return `result`, which is not negative
template <typename Result>
Result checked(Result result) {
    if (result < 0) {
        throwLastError();
    }
    return result;
}

/// Repeats a call that a signal interrupted.
template <typename Call>
auto repeated(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// An open file, closed at the end of its scope.
class Descriptor {
public:
    explicit Descriptor(int descriptor) : descriptor_(checked(descriptor)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&&) = delete;
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }

    int get() const { return descriptor_; }

    /// A network disk can tell as late as here that it is full.
    void close() {
        const int descriptor = std::exchange(descriptor_, -1);
        if (::close(descriptor) < 0 && errno != EINTR) {
            throwLastError();
        }
    }

private:
    int descriptor_;
};

void takePermissions(int descriptor, const std::filesystem::path& like) {
    struct stat status {};
    checked(::stat(like.c_str(), &status));
    // The group and then the owner, as far as the user may set them; the permissions come last, since a new
    // owner can take some of them back. A disk without permissions refuses all three and has none to lose.
    const auto sameOwner = static_cast<uid_t>(-1);
    const auto sameGroup = static_cast<gid_t>(-1);
    bool taken = ::fchown(descriptor, sameOwner, status.st_gid) == 0;
    taken = ::fchown(descriptor, status.st_uid, sameGroup) == 0 && taken;
    const mode_t mode = status.st_mode & (taken ? 07777U : 0777U);
    if (::fchmod(descriptor, mode) < 0 && errno != EPERM && errno != ENOTSUP) {
        throwLastError();
    }
}

void writeAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written =
            checked(repeated([&] { return ::write(descriptor, content.data(), content.size()); }));
        content.remove_prefix(static_cast<std::size_t>(written));
    }
}

void sync(int descriptor) {
    // EINVAL: a file system that has nothing to bring to a disk.
    if (repeated([&] { return ::fsync(descriptor); }) < 0 && errno != EINVAL) {
        throwLastError();
    }
}

/// Until the last handle of the file is closed, which the system does for a writer that is killed.
void hold(int descriptor) {
    struct stat status {};
    const bool isHeldByAnother = ::flock(descriptor, LOCK_EX | LOCK_NB) < 0 && errno == EWOULDBLOCK;
    checked(::fstat(descriptor, &status));
    if (isHeldByAnother || status.st_nlink == 0) { // somebody took it for left behind, before it was held
        throw std::system_error(std::make_error_code(std::errc::file_exists));
    }
}

/// A network disk can tell as late as at closing that it is full; a second handle is closed, for the first
/// one keeps hold of the file.
void checkClosing(int descriptor) {
    const int second = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (second >= 0 && ::close(second) < 0 && errno != EINTR) {
        throwLastError();
    }
}

/// Lengthens a file; one that cannot be stays as it is.
void takeRoom(int descriptor, off_t size) {
    struct stat status {};
    checked(::fstat(descriptor, &status));
    if (size <= status.st_size) {
        return;
    }
    const int refusal = ::posix_fallocate(descriptor, status.st_size, size - status.st_size);
    if (refusal != 0 && refusal != EINVAL && refusal != EOPNOTSUPP) {
        const bool isAsBefore = ::ftruncate(descriptor, status.st_size) == 0;
        static_cast<void>(isAsBefore); // a longer one ends in zeros, and is told as a failure all the same
        throw std::system_error(refusal == EDQUOT ? ENOSPC : refusal, std::generic_category());
    }
}

} // namespace

std::filesystem::file_status statusOf(const std::filesystem::path& file) {
    return std::filesystem::status(file);
}

std::string readFile(const std::filesystem::path& file, std::size_t limit, std::size_t from) {
    const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    checked(::fstat(descriptor.get(), &status));
    checked(::lseek(descriptor.get(), static_cast<off_t>(from), SEEK_SET));
    std::string text;
    std::size_t length = 0;
    // One byte more than the file should have: the read that fills no byte of it tells the end.
    const auto size = static_cast<std::size_t>(status.st_size);
    std::size_t room = size - std::min(from, size) + 1;
    for (;;) {
        text.resize(std::min(limit, room));
        const ssize_t count =
            checked(repeated([&] { return ::read(descriptor.get(), &text[length], text.size() - length); }));
        if (count == 0) {
            break;
        }
        length += static_cast<std::size_t>(count);
        room = length == text.size() ? 2 * room : room;
    }
    text.resize(length);
    return text;
}

void requireWritable(const std::filesystem::path& file) {
    checked(::faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS));
}

void replaceByNewFile(const std::filesystem::path& file, std::string_view content,
                      const std::filesystem::path* like, const std::filesystem::path& target) {
    constexpr mode_t privateMode = 0600;
    constexpr mode_t usualMode = 0666;
    const Descriptor descriptor(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                                       like == nullptr ? usualMode : privateMode));
    bool complete = false;
    const ScopeExit removal([&] {
        if (!complete) {
            ::unlink(file.c_str());
        }
    });
    hold(descriptor.get());
    if (like != nullptr) {
        takePermissions(descriptor.get(), *like);
    }
    writeAll(descriptor.get(), content);
    sync(descriptor.get());
    checkClosing(descriptor.get());
    checked(::rename(file.c_str(), target.c_str()));
    complete = true;
}

void removeLeftBehind(const std::filesystem::path& file) noexcept {
    struct stat named {};
    if (::lstat(file.c_str(), &named) != 0 || !S_ISREG(named.st_mode)) {
        return;
    }
    // For writing: some network disks lend no lock otherwise.
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    struct stat opened {};
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && ::fstat(descriptor, &opened) == 0 &&
        opened.st_dev == named.st_dev && opened.st_ino == named.st_ino) {
        ::unlink(file.c_str());
    }
    ::close(descriptor);
}

void overwriteFile(const std::filesystem::path& file, std::string_view content, bool& isTouched) {
    Descriptor descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    takeRoom(descriptor.get(), static_cast<off_t>(content.size()));
    isTouched = true;
    writeAll(descriptor.get(), content);
    checked(repeated([&] { return ::ftruncate(descriptor.get(), static_cast<off_t>(content.size())); }));
    sync(descriptor.get());
    descriptor.close();
}

void syncFolder(const std::filesystem::path& folder) noexcept {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

int duplicate(int file) noexcept { return ::fcntl(file, F_DUPFD_CLOEXEC, 0); }

void bringToDisk(int file) noexcept { ::fsync(file); }

void closeDuplicate(int file) noexcept { ::close(file); }

} // namespace varda::core
