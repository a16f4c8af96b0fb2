#include "platform/file_calls.h"

#include "platform/scope_exit.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace varda {
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

} // namespace

std::filesystem::file_status statusOf(const std::filesystem::path& file) {
    return std::filesystem::status(file);
}

std::string readFile(const std::filesystem::path& file, std::size_t limit) {
    const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    checked(::fstat(descriptor.get(), &status));
    std::string text;
    std::size_t length = 0;
    // One byte more than the file should have: the read that fills no byte of it tells the end.
    std::size_t room = static_cast<std::size_t>(status.st_size) + 1;
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

void writeNewFile(const std::filesystem::path& file, std::string_view content,
                  const std::filesystem::path* like) {
    constexpr mode_t privateMode = 0600;
    constexpr mode_t usualMode = 0666;
    Descriptor descriptor(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                                 like == nullptr ? usualMode : privateMode));
    bool complete = false;
    const ScopeExit removal([&] {
        if (!complete) {
            ::unlink(file.c_str());
        }
    });
    if (like != nullptr) {
        takePermissions(descriptor.get(), *like);
    }
    writeAll(descriptor.get(), content);
    sync(descriptor.get());
    descriptor.close();
    complete = true;
}

void renameFile(const std::filesystem::path& file, const std::filesystem::path& target) {
    checked(::rename(file.c_str(), target.c_str()));
}

void syncFolder(const std::filesystem::path& folder) noexcept {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

} // namespace varda
