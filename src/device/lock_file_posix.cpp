#include "device/lock_file.h"

#include "core/base/scope_exit.h"
#include "device/file_handle_posix.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <iterator>
#include <mutex>
#include <set>

namespace varda::device {
namespace {

/// A file that names nobody may be one that is just being written.
constexpr std::time_t secondsToWrite = 10;

std::string replaced(std::string text, char from, char to) {
    std::replace(text.begin(), text.end(), from, to);
    return text;
}

std::string pathOf(std::string folder, const std::string& file) { return folder.append("/").append(file); }

std::optional<int> ownerOfText(std::string_view content) {
    content.remove_prefix(std::min(content.find_first_not_of(" \t"), content.size()));
    int owner = 0;
    const auto [end, error] = std::from_chars(content.data(), content.data() + content.size(), owner);
    const bool isWord = end == content.data() + content.size() || *end == ' ' || *end == '\t' ||
                        *end == '\n' || *end == '\r' || *end == '\0';
    return error == std::errc() && isWord && owner > 0 ? std::optional(owner) : std::nullopt;
}

std::optional<int> ownerOfNumber(std::string_view content) {
    int owner = 0;
    std::memcpy(&owner, content.data(), sizeof(owner));
    return owner > 0 ? std::optional(owner) : std::nullopt;
}

/// A file whatever it is called.
using FileIdentity = std::pair<dev_t, ino_t>;

FileIdentity identityOf(const FileHandle& file) {
    struct stat found {};
    return ::fstat(file.get(), &found) == 0 ? FileIdentity(found.st_dev, found.st_ino) : FileIdentity();
}

/// Whether another file is there by now. Without a handle, for there may be none left.
bool isAnother(const std::string& path, const FileIdentity& file) {
    struct stat found {};
    return ::lstat(path.c_str(), &found) == 0 && FileIdentity(found.st_dev, found.st_ino) != file;
}

/// The lock files that this process has, which its own id alone does not tell: a process that has ended may
/// have had the same one, and what could not be removed names it, too.
class OwnLockFiles {
public:
    void add(const FileIdentity& file) {
        const std::lock_guard lock(mutex_);
        files_.insert(file);
    }
    void remove(const FileIdentity& file) {
        const std::lock_guard lock(mutex_);
        files_.erase(file);
    }
    bool contains(const FileIdentity& file) const {
        const std::lock_guard lock(mutex_);
        return files_.contains(file);
    }

private:
    mutable std::mutex mutex_;
    std::set<FileIdentity> files_;
};

OwnLockFiles& ownLockFiles() {
    static OwnLockFiles files;
    return files;
}

/// A process of another user may not be signalled, but lives.
bool isAlive(int process) { return ::kill(process, 0) == 0 || errno == EPERM; }

bool isBeingWritten(const FileHandle& file) {
    struct stat found {};
    return ::fstat(file.get(), &found) == 0 && std::time(nullptr) - found.st_mtime < secondsToWrite;
}

FileHandle openToRead(const std::string& path) {
    return FileHandle(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
}

std::optional<int> ownerIn(const FileHandle& file) {
    std::array<char, 64> content{};
    const auto count = ::read(file.get(), content.data(), content.size());
    return ownerInLockFile({content.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))});
}

/// Whether the lock file at `path` stands for somebody. One that cannot be read does: nobody can tell that it
/// does not.
bool isHeld(const std::string& path) {
    const FileHandle file = openToRead(path);
    if (!file.isOpen()) {
        // no right to read it, other than no right to look into its folder
        return errno == EACCES && ::access(path.c_str(), F_OK) == 0;
    }
    const auto owner = ownerIn(file);
    if (owner == ::getpid()) {
        return ownLockFiles().contains(identityOf(file));
    }
    return owner ? isAlive(*owner) : isBeingWritten(file);
}

bool isFile(const std::string& path) {
    struct stat found {};
    return ::lstat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode);
}

/// What to call a lock file that nobody holds any more.
std::string leftBehind(const std::string& path) {
    const FileHandle file = openToRead(path);
    const auto owner = file.isOpen() ? ownerIn(file) : std::nullopt;
    return owner ? "The lock of process " + std::to_string(*owner) + ", which has ended,"
                 : "A lock that names no process";
}

/// A file of its own name first, so that nobody ever sees a lock file that is not written yet.
/// @return 0, or the system's error
int makeNew(const std::string& path, FileIdentity& identity) {
    const std::string made = path + '.' + std::to_string(::getpid());
    ::unlink(made.c_str());
    const FileHandle file(::open(made.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    if (!file.isOpen()) {
        return errno;
    }
    const ScopeExit gone([&made] { ::unlink(made.c_str()); });
    std::array<char, 16> text{};
    const auto length = std::snprintf(text.data(), text.size(), "%10d\n", static_cast<int>(::getpid()));
    identity = identityOf(file);
    errno = 0; // a write that stops short sets none
    const bool isMade = ::write(file.get(), text.data(), static_cast<std::size_t>(length)) == length &&
                        ::fchmod(file.get(), 0644) == 0 && ::link(made.c_str(), path.c_str()) == 0;
    return isMade ? 0 : errno != 0 ? errno : EIO;
}

/// Takes a dead owner's file away. Another program may have done so since it was judged, and have made its
/// own: what was taken is looked at again, and given back where it is held.
bool takeAway(const std::string& path) {
    const std::string taken = path + ".stale." + std::to_string(::getpid());
    if (::rename(path.c_str(), taken.c_str()) != 0) {
        return false;
    }
    const ScopeExit gone([&taken] { ::unlink(taken.c_str()); });
    return !isHeld(taken) || ::link(taken.c_str(), path.c_str()) != 0;
}

} // namespace

std::optional<int> ownerInLockFile(std::string_view content) {
    const auto head = content.substr(0, sizeof(int));
    // No process id fills the four bytes of the number, so one of them is 0; a text has none there.
    const bool isNumber = head.size() == sizeof(int) && head.find('\0') != std::string_view::npos;
    return isNumber ? ownerOfNumber(head) : ownerOfText(content);
}

std::vector<std::string> lockFileNames(const std::string& node) {
    constexpr std::string_view devices = "/dev/";
    const std::string inDevices = node.starts_with(devices) ? node.substr(devices.size()) : node;
    std::vector<std::string> names;
    for (const std::string& name : {replaced(inDevices, '/', '_'), replaced(inDevices, '/', ':'),
                                    inDevices.substr(inDevices.rfind('/') + 1)}) {
        names.push_back("LCK.." + name);
    }
    return names;
}

std::vector<std::string> LockFile::usualFolders() {
    return {"/var/lock",       "/run/lock",       "/var/lock/lockdev", "/run/lock/lockdev",
            "/var/spool/lock", "/var/spool/uucp", "/etc/locks"};
}

LockFile::LockFile(const std::string& node, const std::string& name,
                   const std::vector<std::string>& folders) {
    auto names = lockFileNames(node);
    std::ranges::copy(lockFileNames(name), std::back_inserter(names));
    for (const std::string& folder : folders) {
        for (const std::string& file : names) {
            isTaken_ = isTaken_ || isHeld(pathOf(folder, file));
        }
    }
    for (const std::string& folder : folders) {
        for (const std::string& file : names) {
            if (!isTaken_) {
                takeOver(pathOf(folder, file));
            }
        }
    }
    for (const std::string& folder : folders) {
        if (!isTaken_ && own_.empty()) {
            make(pathOf(folder, names.front()));
        }
    }
}

/// Another program may have taken it for left behind, where it does not see this process (as in containers),
/// and have made its own in its place.
LockFile::~LockFile() {
    if (!own_.empty()) {
        if (!isAnother(own_, ownIdentity_)) {
            ::unlink(own_.c_str());
        }
        ownLockFiles().remove(ownIdentity_);
    }
}

/// Where only the owner of a file may remove it, a folder for everybody mostly, it stays and stands for
/// nobody.
void LockFile::takeOver(const std::string& path) {
    if (!isFile(path)) {
        return;
    }
    const std::string found = leftBehind(path);
    if (takeAway(path)) {
        tell(found + " was taken over.");
    } else if (isHeld(path)) { // somebody was quicker
        isTaken_ = true;
    } else if (isFile(path)) {
        tell(found + " was passed over: you may not remove it.");
    }
}

/// One folder may be found by several names.
void LockFile::tell(const std::string& news) {
    if (takeOver_.find(news) == std::string::npos) {
        takeOver_ += (takeOver_.empty() ? "" : " ") + news;
    }
}

void LockFile::make(const std::string& path) {
    const int error = makeNew(path, ownIdentity_);
    if (error == EEXIST) {
        isTaken_ = isHeld(path); // somebody was quicker, or it is not ours to remove
    } else if (error == 0) {
        own_ = path;
        ownLockFiles().add(ownIdentity_);
    }
}

} // namespace varda::device
