#include "device/driver.h"

// A file of its own: these headers and <termios.h> define the same structures.
#ifdef __linux__
#include <asm/termbits.h>
#include <sys/ioctl.h>

#include <asm/ioctls.h>
#else
#include <termios.h>
#endif

#include <cerrno>
#include <system_error>

namespace varda::device::driver {

#ifdef __linux__

bool setAnyBaudRate(int handle, int rate) {
    termios2 settings{};
    if (::ioctl(handle, TCGETS2, &settings) == 0) {
        settings.c_cflag &= ~static_cast<tcflag_t>(CBAUD | (CBAUD << IBSHIFT));
        settings.c_cflag |= BOTHER | (BOTHER << IBSHIFT);
        settings.c_ispeed = static_cast<speed_t>(rate);
        settings.c_ospeed = static_cast<speed_t>(rate);
        if (::ioctl(handle, TCSETS2, &settings) == 0) {
            return true;
        }
    }
    throw std::system_error(errno, std::generic_category());
}

int heldBaudRate(int handle) noexcept {
    termios2 settings{};
    return ::ioctl(handle, TCGETS2, &settings) == 0 ? static_cast<int>(settings.c_ospeed) : 0;
}

#else

bool setAnyBaudRate(int /*handle*/, int /*rate*/) { return false; }

/// Elsewhere a speed is the rate itself.
int heldBaudRate(int handle) noexcept {
    termios settings{};
    return ::tcgetattr(handle, &settings) == 0 ? static_cast<int>(::cfgetospeed(&settings)) : 0;
}

#endif

} // namespace varda::device::driver
