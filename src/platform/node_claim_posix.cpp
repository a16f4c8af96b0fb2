#include "platform/node_claim.h"

#include "platform/comm_error.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace varda {
namespace {

RuntimeError noSerialDevice(const std::string& label, const std::string& kind) {
    return {comm_error::invalidPort, label + " is " + kind + ", not a serial port."};
}

RuntimeError cannotBeOpened(const std::string& label, int systemError) {
    return {comm_error::cannotBeSetUp,
            label + " cannot be opened: " + std::generic_category().message(systemError) + "."};
}

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
        throw errno == EACCES ? pathNotPermitted(label) : noSuchDevice(label);
    }
    return found;
}

/// Told apart before the node is opened: to open a pipe or a file would leave traces.
void refuseFiles(const struct stat& node, const std::string& label) {
    if (S_ISDIR(node.st_mode)) {
        throw noSerialDevice(label, "a directory");
    }
    if (S_ISREG(node.st_mode)) {
        throw noSerialDevice(label, "a regular file");
    }
    if (!S_ISCHR(node.st_mode)) {
        throw noSerialDevice(label, "no device of characters");
    }
}

RuntimeError openFailure(int systemError, const struct stat& node, const std::string& label) {
    switch (systemError) {
    case EACCES:
    case EPERM:
        return notPermitted(label, node);
    case EBUSY:
        return portInUse(label);
    case ENOENT:
    case ENXIO:
    case ENODEV:
    case EIO: // the node of a serial port that this computer does not have
        return noSuchDevice(label);
    default:
        return cannotBeOpened(label, systemError);
    }
}

void refuseNonSerial(int handle, const std::string& label) {
    if (::isatty(handle) == 1) {
        return;
    }
    throw errno == EIO ? noSuchDevice(label) : noSerialDevice(label, "another kind of device");
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
    if (isExclusive(handle) || ::flock(handle, LOCK_EX | LOCK_NB) != 0) {
        throw portInUse(label);
    }
}

} // namespace

NodeClaim::NodeClaim(const std::string& node, const std::string& label) {
    const auto found = lookedUp(node, label);
    refuseFiles(found, label);
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

NodeClaim::~NodeClaim() { ::close(handle_); }

std::size_t NodeClaim::waitingInDriver() const noexcept {
    int count = 0;
    return ::ioctl(handle_, FIONREAD, &count) == 0 && count > 0 ? static_cast<std::size_t>(count) : 0;
}

} // namespace varda
