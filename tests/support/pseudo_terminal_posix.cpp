#include "support/pseudo_terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace varda::test {

namespace {

using std::chrono::steady_clock;

std::system_error failure(int systemError, const char* what) {
    return {systemError, std::generic_category(), what};
}

/// Waits until the handle is ready for `events`; false where the time ran out or the line is gone.
bool isReady(int handle, short events, steady_clock::time_point until) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - steady_clock::now());
    pollfd request{handle, events, 0};
    const int wait = left.count() > 0 ? static_cast<int>(left.count()) : 0;
    return ::poll(&request, 1, wait) == 1 && (request.revents & events) != 0;
}

void makeRaw(int handle) {
    termios settings{};
    ::tcgetattr(handle, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(handle, TCSANOW, &settings);
}

} // namespace

PseudoTerminal::PseudoTerminal() {
    std::array<char, 128> name{};
    if (::openpty(&farEnd_, &nearEnd_, name.data(), nullptr, nullptr) != 0) {
        throw failure(errno, "no pseudo-terminal");
    }
    path_ = name.data();
    makeRaw(nearEnd_);
    ::fcntl(farEnd_, F_SETFL, O_NONBLOCK);
}

PseudoTerminal::~PseudoTerminal() {
    closeFarEnd();
    ::close(nearEnd_);
}

void PseudoTerminal::write(const std::vector<std::uint8_t>& bytes, std::chrono::milliseconds limit) const {
    const auto until = steady_clock::now() + limit;
    std::size_t done = 0;
    while (done < bytes.size()) {
        if (!isReady(farEnd_, POLLOUT, until)) {
            throw failure(ETIMEDOUT, "the near end accepts no more bytes");
        }
        const auto written = ::write(farEnd_, bytes.data() + done, bytes.size() - done);
        done += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
}

std::vector<std::uint8_t> PseudoTerminal::readAvailable() const {
    std::vector<std::uint8_t> bytes;
    std::array<std::uint8_t, 4096> part{};
    for (auto count = ::read(farEnd_, part.data(), part.size()); count > 0;
         count = ::read(farEnd_, part.data(), part.size())) {
        bytes.insert(bytes.end(), part.begin(), part.begin() + count);
    }
    return bytes;
}

std::vector<std::uint8_t> PseudoTerminal::read(std::size_t count, std::chrono::milliseconds limit) const {
    const auto until = steady_clock::now() + limit;
    auto bytes = readAvailable();
    while (bytes.size() < count && isReady(farEnd_, POLLIN, until)) {
        const auto more = readAvailable();
        bytes.insert(bytes.end(), more.begin(), more.end());
    }
    return bytes;
}

void PseudoTerminal::closeFarEnd() {
    if (farEnd_ != none) {
        ::close(farEnd_);
        farEnd_ = none;
    }
}

} // namespace varda::test
