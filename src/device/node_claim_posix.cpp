#include "device/node_claim.h"

#include "device/driver.h"
#include "device/lock_file.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/sysmacros.h>
#endif

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace varda::device {
namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

std::string groupName(gid_t id) {
    const group* entry = ::getgrgid(id);
    return entry == nullptr ? std::to_string(id) : entry->gr_name;
}

/// Joining the node's group is a remedy only where that group may read and write.
RuntimeError notPermitted(const std::string& label, const struct stat& node) {
    const std::string name = groupName(node.st_gid);
    const std::string problem = "No permission to use " + label + " of the group \"" + name + "\". ";
    const bool groupMayUse = (node.st_mode & (S_IRGRP | S_IWGRP)) == (S_IRGRP | S_IWGRP);
    const std::string remedy =
        groupMayUse ? "Join that group (sudo usermod -aG " + name + " USER) and log in again."
                    : "Its permissions leave that group out, too: ask the administrator for access.";
    return {comm_error::invalidPort, problem + remedy};
}

RuntimeError pathNotPermitted(const std::string& label) {
    return {comm_error::invalidPort,
            "No permission to look up " + label + ": a folder on the way to it is closed to you."};
}

struct stat lookedUp(const std::string& node, const std::string& label) {
    struct stat found {};
    if (::stat(node.c_str(), &found) != 0) {
        throw errno == EACCES ? pathNotPermitted(label) : cannotBeOpened(label, lastError());
    }
    return found;
}

/// What the node is instead of a serial port; null where it may be one. Told apart before the node is opened:
/// to open a pipe or a file would leave traces.
const char* otherKind(const struct stat& node) {
    if (S_ISDIR(node.st_mode)) {
        return refusal::directory;
    }
    if (S_ISREG(node.st_mode)) {
        return refusal::regularFile;
    }
    if (S_ISBLK(node.st_mode)) {
        return refusal::blockDevice;
    }
    if (S_ISFIFO(node.st_mode)) {
        return refusal::pipe;
    }
    return S_ISCHR(node.st_mode) ? nullptr : refusal::socket;
}

/// Consoles look like serial ports to those who open them, but are this computer's keyboard and screen.
const char* kindOfTerminal(const struct stat& node) {
#ifdef __linux__
    constexpr unsigned terminals = 4; // tty0 .. tty63, behind them ttyS0 ..
    constexpr unsigned others = 5;    // tty, console, ptmx ..
    constexpr unsigned consoles = 64;
    const unsigned kind = major(node.st_rdev);
    const unsigned number = minor(node.st_rdev);
    if ((kind == terminals && number < consoles) || (kind == others && number <= 1)) {
        return refusal::console;
    }
    return kind == others && number < consoles ? refusal::anotherDevice : nullptr;
#else
    static_cast<void>(node);
    return nullptr;
#endif
}

void refuseOthers(const struct stat& node, const std::string& label) {
    const char* const kind = otherKind(node);
    if (const char* const found = kind != nullptr ? kind : kindOfTerminal(node)) {
        throw noSerialPort(label, found);
    }
}

RuntimeError openFailure(int systemError, const struct stat& node, const std::string& label) {
    switch (systemError) {
    case EACCES:
    case EPERM:
        return notPermitted(label, node);
    case EBUSY:
        return portInUse(label);
    default:
        return cannotBeOpened(label, {systemError, std::generic_category()});
    }
}

void refuseNonSerial(int handle, const std::string& label) {
    if (::isatty(handle) == 1) {
        return;
    }
    throw driver::isOfNoDevice(lastError()) ? noSuchDevice(label)
                                            : noSerialPort(label, refusal::anotherDevice);
}

/// The driver turns other programs away by itself, except that it lets the superuser pass.
bool isExclusive(int handle) {
#ifdef TIOCGEXCL
    int exclusive = 0;
    return ::ioctl(handle, TIOCGEXCL, &exclusive) == 0 && exclusive != 0;
#else
    static_cast<void>(handle);
    return false;
#endif
}

void take(int handle, const std::string& label) {
    refuseNonSerial(handle, label);
    if (isExclusive(handle) || (::flock(handle, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)) {
        throw portInUse(label);
    }
    ::ioctl(handle, TIOCEXCL);
}

/// The path that other programs name their lock files after, also where the node was chosen by a link to it.
std::string withoutLinks(const std::string& node) {
    std::error_code error;
    const auto path = std::filesystem::canonical(node, error);
    return error ? node : path.string();
}

} // namespace

NodeClaim::NodeClaim(const std::string& node, const std::string& label) {
    const auto found = lookedUp(node, label);
    refuseOthers(found, label);
    lockFile_ = std::make_unique<LockFile>(withoutLinks(node), node);
    if (lockFile_->isTakenByAnother()) {
        throw portInUse(label);
    }
    takeOver_ = lockFile_->takeOver();
    handle_ = ::open(node.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (handle_ < 0) {
        throw openFailure(errno, found, label);
    }
    try {
        take(handle_, label);
    } catch (...) {
        ::close(handle_);
        throw;
    }
}

NodeClaim::~NodeClaim() {
    if (!isHandedOver_) {
        driver::prepareToClose(handle_);
        ::close(handle_);
    }
}

} // namespace varda::device
