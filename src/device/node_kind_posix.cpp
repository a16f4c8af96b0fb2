#include "device/node_kind_posix.h"

#include "device/refusals.h"

#ifdef __linux__
#include <sys/sysmacros.h>
#endif

namespace varda::device {
namespace {

const char* kindOfFile(const struct stat& node) {
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

/// Consoles look like serial ports to those who open them, but are this computer's keyboard and screen, or
/// those that its host shows of it.
const char* kindOfTerminal(const struct stat& node) {
#ifdef __linux__
    constexpr unsigned terminals = 4; // tty0 .. tty63, behind them ttyS0 ..
    constexpr unsigned others = 5;    // tty, console, ptmx ..
    constexpr unsigned consoles = 64;
    constexpr unsigned hostConsoles = 229; // hvc0 ..
    const unsigned kind = major(node.st_rdev);
    const unsigned number = minor(node.st_rdev);
    if ((kind == terminals && number < consoles) || (kind == others && number <= 1) || kind == hostConsoles) {
        return refusal::console;
    }
    return kind == others && number < consoles ? refusal::anotherDevice : nullptr;
#else
    static_cast<void>(node);
    return nullptr;
#endif
}

} // namespace

const char* otherKind(const struct stat& node) {
    const char* const kind = kindOfFile(node);
    return kind != nullptr ? kind : kindOfTerminal(node);
}

bool keepsClaims(const std::string& node) { return node.starts_with("/dev/pts/"); }

} // namespace varda::device
