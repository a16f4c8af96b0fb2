#include <netinet/in.h>
#include <poll.h>
#include <pty.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

/// Makes serial lines for programs under wine, which can make no pseudo-terminals themselves: each connection
/// to its port is the far end of a new one, and takes it along when it ends. The first line that comes over a
/// connection names the near end. Usage: varda_line_maker FOLDER NAME...: the near ends are links of those
/// names in the folder. Prints its port, and ends when it is killed.
namespace {

namespace files = std::filesystem;

std::system_error failure(const char* what) { return {errno, std::generic_category(), what}; }

/// The names that no line has now.
class Names {
public:
    explicit Names(std::vector<std::string> names) : free_(std::move(names)) {}

    /// The one that has been free for longest, so that nobody meets the traces of who had it; empty where
    /// there is none.
    std::string take() {
        const std::lock_guard lock(mutex_);
        if (free_.empty()) {
            return {};
        }
        std::string name = std::move(free_.front());
        free_.erase(free_.begin());
        return name;
    }
    void giveBack(std::string name) {
        const std::lock_guard lock(mutex_);
        free_.push_back(std::move(name));
    }

private:
    std::mutex mutex_;
    std::vector<std::string> free_;
};

/// A name that a line has, given back at the end of the scope; empty where none was free.
class NameInUse {
public:
    explicit NameInUse(Names& names) : names_(names), text_(names.take()) {}
    NameInUse(const NameInUse&) = delete;
    NameInUse& operator=(const NameInUse&) = delete;
    ~NameInUse() {
        if (!text_.empty()) {
            names_.giveBack(std::move(text_));
        }
    }

    const std::string& text() const { return text_; }

private:
    Names& names_;
    std::string text_;
};

class Handle {
public:
    explicit Handle(int handle) : handle_(handle) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { ::close(handle_); }

    int get() const { return handle_; }

private:
    int handle_;
};

/// Both ends of a line without an echo; the near one stays open here, so that the line lives while nobody has
/// it.
std::pair<int, int> openLine(std::string& path) {
    int farEnd = -1;
    int nearEnd = -1;
    std::array<char, 128> name{};
    termios settings{};
    ::cfmakeraw(&settings);
    settings.c_cflag |= CS8 | CREAD;
    if (::openpty(&farEnd, &nearEnd, name.data(), &settings, nullptr) != 0) {
        throw failure("no pseudo-terminal");
    }
    path = name.data();
    return {farEnd, nearEnd};
}

void lead(const files::path& link, const std::string& target) {
    const files::path beside = link.string() + ".new";
    files::create_symlink(target, beside);
    files::rename(beside, link);
}

/// Carries bytes both ways until the connection ends. What the near end does not take yet is no reason to
/// stop listening.
void carry(int connection, int farEnd) {
    std::vector<char> waiting;
    std::array<char, 4096> part{};
    for (;;) {
        const short fromTest = waiting.empty() ? POLLIN : POLLRDHUP;
        const short toLine = waiting.empty() ? 0 : POLLOUT;
        std::array<pollfd, 2> ends = {
            {{connection, fromTest, 0}, {farEnd, static_cast<short>(POLLIN | toLine), 0}}};
        ::poll(ends.data(), ends.size(), -1);
        if ((ends[0].revents & POLLIN) != 0) {
            const auto count = ::read(connection, part.data(), part.size());
            if (count <= 0) {
                return;
            }
            waiting.assign(part.begin(), part.begin() + count);
        } else if (ends[0].revents != 0) {
            return;
        }
        if ((ends[1].revents & POLLOUT) != 0) {
            const auto count = ::write(farEnd, waiting.data(), waiting.size());
            waiting.erase(waiting.begin(), waiting.begin() + (count > 0 ? count : 0));
        }
        if ((ends[1].revents & POLLIN) != 0) {
            const auto count = ::read(farEnd, part.data(), part.size());
            if (count > 0 &&
                ::send(connection, part.data(), static_cast<std::size_t>(count), MSG_NOSIGNAL) < 0) {
                return;
            }
        }
    }
}

/// A line under a name; the name's link goes with it.
void makeLine(int connection, const files::path& folder, const std::string& name) {
    std::string path;
    const auto [farHandle, nearHandle] = openLine(path);
    const Handle farEnd(farHandle);
    const Handle nearEnd(nearHandle);
    lead(folder / name, path);
    const std::string line = name + '\n';
    ::send(connection, line.data(), line.size(), MSG_NOSIGNAL);
    carry(connection, farEnd.get());
    std::error_code ignored;
    files::remove(folder / name, ignored);
}

/// One line from its beginning to its end, on a thread of its own, which nothing may leave: the test whose
/// line it is sees the end of its connection.
void serve(int connection, const files::path& folder, Names& names) noexcept {
    const Handle test(connection);
    try {
        const NameInUse name(names);
        if (!name.text().empty()) {
            makeLine(connection, folder, name.text());
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
}

int listeningSocket() {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    sockaddr generic{};
    std::memcpy(&generic, &address, sizeof(generic));
    if (socket < 0 || ::bind(socket, &generic, sizeof(generic)) != 0 || ::listen(socket, 16) != 0) {
        throw failure("no socket");
    }
    return socket;
}

int portOf(int socket) {
    sockaddr generic{};
    socklen_t length = sizeof(generic);
    ::getsockname(socket, &generic, &length);
    sockaddr_in address{};
    std::memcpy(&address, &generic, sizeof(address));
    return ntohs(address.sin_port);
}

} // namespace

int main(int argc, char** argv) try {
    if (argc < 3) {
        std::fprintf(stderr, "Usage: varda_line_maker FOLDER NAME...\n");
        return 2;
    }
    const files::path folder = argv[1];
    Names names({argv + 2, argv + argc});
    const int socket = listeningSocket();
    std::printf("%d\n", portOf(socket));
    std::fflush(stdout);
    for (;;) {
        const int connection = ::accept4(socket, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection >= 0) {
            std::thread(serve, connection, std::cref(folder), std::ref(names)).detach();
        }
    }
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
