#include "device/driver.h"

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/sysmacros.h>
#endif

#include <cerrno>
#include <limits>
#include <system_error>

namespace varda::device::driver {
namespace {

template <typename Change>
void changeSettings(int handle, Change&& change) {
    termios settings{};
    if (::tcgetattr(handle, &settings) == 0) {
        change(settings);
        if (::tcsetattr(handle, TCSANOW, &settings) == 0) {
            return;
        }
    }
    throw std::system_error(errno, std::generic_category());
}

} // namespace

/// An input or output error is what this system says of the node of a serial port that the computer does not
/// have.
bool isOfNoDevice(const std::error_code& error) noexcept {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
           error == std::errc::filename_too_long || error == std::errc::no_such_device ||
           error == std::errc::no_such_device_or_address || error == std::errc::io_error;
}

void makeRaw(int handle) {
    changeSettings(handle, [](termios& settings) {
        ::cfmakeraw(&settings);
        settings.c_cflag |= CLOCAL | CREAD;
        settings.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS);
        settings.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY);
        settings.c_cc[VMIN] = 1;
        settings.c_cc[VTIME] = 0;
    });
}

void ignoreParityErrors(int handle) {
    changeSettings(handle, [](termios& settings) {
        settings.c_iflag &= ~static_cast<tcflag_t>(PARMRK | INPCK);
        settings.c_iflag |= IGNPAR;
    });
}

void raiseControlLines(int handle) noexcept {
    const int lines = TIOCM_DTR | TIOCM_RTS;
    ::ioctl(handle, TIOCMBIS, &lines);
}

bool isPseudoTerminal(int handle) noexcept {
#ifdef __linux__
    constexpr unsigned firstMajor = 136;
    constexpr unsigned lastMajor = 143;
    struct stat node {};
    return ::fstat(handle, &node) == 0 && major(node.st_rdev) >= firstMajor &&
           major(node.st_rdev) <= lastMajor;
#else
    static_cast<void>(handle);
    return false; // theirs hold whatever they are given elsewhere
#endif
}

std::size_t mostToAskFor(int /*handle*/) noexcept { return std::numeric_limits<std::size_t>::max(); }

std::size_t writeAtOnce(int handle, std::span<const std::uint8_t> bytes) noexcept {
    const auto written = ::write(handle, bytes.data(), bytes.size());
    return written > 0 ? static_cast<std::size_t>(written) : 0;
}

void discardInput(int handle) noexcept { ::tcflush(handle, TCIFLUSH); }

void prepareToClose(int handle) noexcept {
    ::ioctl(handle, TIOCNXCL);
    int waiting = 0;
    if (::ioctl(handle, TIOCOUTQ, &waiting) == 0 && waiting > 0) {
        ::tcflush(handle, TCOFLUSH);
    }
}

} // namespace varda::device::driver
