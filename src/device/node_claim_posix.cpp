#include "device/node_claim.h"

#include "device/driver.h"
#include "device/group_name_posix.h"
#include "device/lock_file.h"
#include "device/node_kind_posix.h"
#include "device/node_target.h"
#include "device/port_holders_posix.h"
#include "device/refusals.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace varda::device {
namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

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

void refuseOthers(const struct stat& node, const std::string& label) {
    if (const char* const kind = otherKind(node)) {
        throw noSerialPort(label, kind);
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

/// Whether nobody has the node open but by this one handle, as far as every process could be seen.
bool isHeldByNobodyElse(const std::string& target) {
    const PortHolders holders{std::string()};
    return holders.sawAll() && holders.handlesOf(target) == 1;
}

/// What to tell of a port that is in use. Where no program is seen that has it, but other users' programs may
/// not be seen, only the user can tell whether one of them does or a killed one left its claim.
std::string adviceOnUse(const std::string& target, const std::string& takeOver) {
    if (!keepsClaims(target) || PortHolders{std::string()}.handlesOf(target) > 0) {
        return takeOver;
    }
    return takeOver + (takeOver.empty() ? "" : " ") + "If nothing has it open, " + refusal::claimLeftBehind;
}

/// A port as it was asked for.
struct Asked {
    const std::string& node;
    const std::string& label;
    std::string target; ///< the node without links
};

/// The administrator, whom the driver lets pass, gets what a program left behind that was killed.
/// @param takeOver told of it, where no lock file has told already
void take(int handle, const Asked& asked, std::string& takeOver) {
    refuseNonSerial(handle, asked.label);
    const bool isClaimed = isExclusive(handle);
    if (isClaimed && !(keepsClaims(asked.target) && isHeldByNobodyElse(asked.target))) {
        throw portInUse(asked.label);
    }
    if (::flock(handle, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        throw portInUse(asked.label);
    }
    ::ioctl(handle, TIOCEXCL);
    if (isClaimed && takeOver.empty()) {
        takeOver = "The claim of a program that was killed was taken over.";
    }
}

int claimed(const Asked& asked, const struct stat& found, std::string& takeOver) {
    const int handle = ::open(asked.node.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (handle < 0) {
        throw openFailure(errno, found, asked.label);
    }
    try {
        take(handle, asked, takeOver);
    } catch (...) {
        ::close(handle);
        throw;
    }
    return handle;
}

} // namespace

NodeClaim::NodeClaim(const std::string& node, const std::string& label) {
    const auto found = lookedUp(node, label);
    refuseOthers(found, label);
    const Asked asked{node, label, nodeTarget(node)};
    // other programs name theirs after the path behind all links, also where the node was chosen by a link
    lockFile_ = std::make_unique<LockFile>(asked.target, node);
    if (lockFile_->isTakenByAnother()) {
        throw portInUse(label);
    }
    takeOver_ = lockFile_->takeOver();
    advised([&] { handle_ = claimed(asked, found, takeOver_); },
            [&](const RuntimeError& error) {
                return error.number() == comm_error::inUse ? adviceOnUse(asked.target, takeOver_)
                                                           : std::string();
            });
}

NodeClaim::~NodeClaim() {
    if (!isHandedOver_) {
        driver::prepareToClose(handle_);
        ::close(handle_);
    }
}

} // namespace varda::device
