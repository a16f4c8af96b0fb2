#include "support/pseudo_terminal.h"

// In this order: the second wants to be read before the system's other headers.
#include <winsock2.h>
#include <ws2tcpip.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace varda::test {
namespace {

using std::chrono::steady_clock;

std::runtime_error failure(const char* what) {
    return std::runtime_error(std::string(what) + ", error " + std::to_string(::WSAGetLastError()));
}

void startSockets() {
    static const bool isStarted = [] {
        WSADATA data{};
        return ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    if (!isStarted) {
        throw failure("no sockets");
    }
}

/// A connection to varda_line_maker, which this system's tests are started beside.
SOCKET connectedSocket() {
    const char* const place = std::getenv("VARDA_LINE_MAKER");
    if (place == nullptr) {
        throw std::runtime_error("VARDA_LINE_MAKER names no port of varda_line_maker");
    }
    startSockets();
    const SOCKET socket = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = ::htons(static_cast<u_short>(std::atoi(place)));
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    sockaddr generic{};
    std::memcpy(&generic, &address, sizeof(generic));
    if (socket == INVALID_SOCKET || ::connect(socket, &generic, sizeof(generic)) != 0) {
        throw failure("varda_line_maker does not answer");
    }
    const int atOnce = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&atOnce), sizeof(atOnce));
    return socket;
}

/// The first line that comes over the connection is the name of the near end.
std::string nameOfNearEnd(SOCKET socket) {
    std::string name;
    for (char letter = 0; ::recv(socket, &letter, 1, 0) == 1 && letter != '\n';) {
        name.push_back(letter);
    }
    if (name.empty()) {
        throw failure("varda_line_maker has no line left");
    }
    return name;
}

/// Waits until the socket is ready; false where the time ran out or the line is gone.
bool isReady(SOCKET socket, short events, steady_clock::time_point until) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - steady_clock::now());
    WSAPOLLFD request{socket, events, 0};
    return ::WSAPoll(&request, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0) == 1 &&
           (request.revents & events) != 0;
}

} // namespace

PseudoTerminal::PseudoTerminal() {
    farEnd_ = connectedSocket();
    path_ = nameOfNearEnd(farEnd_);
    u_long doesNotBlock = 1;
    ::ioctlsocket(farEnd_, FIONBIO, &doesNotBlock);
}

PseudoTerminal::~PseudoTerminal() { closeFarEnd(); }

void PseudoTerminal::write(const std::vector<std::uint8_t>& bytes, std::chrono::milliseconds limit) const {
    const auto until = steady_clock::now() + limit;
    std::size_t done = 0;
    while (done < bytes.size()) {
        if (!isReady(farEnd_, POLLOUT, until)) {
            throw failure("the near end accepts no more bytes");
        }
        const int written = ::send(farEnd_, reinterpret_cast<const char*>(bytes.data()) + done,
                                   static_cast<int>(bytes.size() - done), 0);
        done += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
}

std::vector<std::uint8_t> PseudoTerminal::readAvailable() const {
    std::vector<std::uint8_t> bytes;
    std::array<std::uint8_t, 4096> part{};
    for (int count = 1; count > 0;) {
        count = ::recv(farEnd_, reinterpret_cast<char*>(part.data()), static_cast<int>(part.size()), 0);
        bytes.insert(bytes.end(), part.begin(), part.begin() + (count > 0 ? count : 0));
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
        ::closesocket(farEnd_);
        farEnd_ = none;
    }
}

} // namespace varda::test
