#include "start_up/hidden_screen.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace varda::bench {
namespace {

constexpr std::size_t width = 1280;
constexpr std::size_t bytesOfPixel = 4;
constexpr std::size_t rowStep =
    8; ///< looked at is every so manyth row: a window's frame and every line of text cross one

pid_t spawned(const std::vector<std::string>& command, const posix_spawn_file_actions_t& actions) {
    std::vector<char*> arguments;
    for (const std::string& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    pid_t process = 0;
    if (::posix_spawnp(&process, arguments.front(), &actions, nullptr, arguments.data(), environ) != 0) {
        throw std::runtime_error(command.front() + " does not start");
    }
    return process;
}

/// What the server says when it is ready: the number of its display.
std::string readLine(int handle) {
    std::string line;
    char character = 0;
    while (::read(handle, &character, 1) == 1 && character != '\n') {
        line.push_back(character);
    }
    return line;
}

} // namespace

pid_t started(const std::vector<std::string>& command) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const pid_t process = spawned(command, actions);
    ::posix_spawn_file_actions_destroy(&actions);
    return process;
}

HiddenScreen::HiddenScreen(const std::string& folder) {
    std::array<int, 2> told{};
    if (::pipe(told.data()) != 0) {
        throw std::runtime_error("no pipe");
    }
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, told[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    server_ = spawned(
        {"Xvfb", "-displayfd", "1", "-nocursor", "-screen", "0", "1280x1024x24", "-fbdir", folder}, actions);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(told[1]);
    const std::string display = readLine(told[0]);
    ::close(told[0]);
    if (display.empty()) {
        throw std::runtime_error("Xvfb does not start. Install the package xvfb.");
    }
    ::setenv("DISPLAY", (":" + display).c_str(), 1);
    ::unsetenv("WAYLAND_DISPLAY");
    ::unsetenv("QT_QPA_PLATFORM");
    map(folder + "/Xvfb_screen0");
}

HiddenScreen::~HiddenScreen() {
    ::kill(server_, SIGTERM);
    ::waitpid(server_, nullptr, 0);
}

void HiddenScreen::map(const std::string& file) {
    const int handle = ::open(file.c_str(), O_RDONLY);
    struct stat status {};
    if (handle < 0 || ::fstat(handle, &status) != 0) {
        throw std::runtime_error("the screen's picture is not there");
    }
    size_ = static_cast<std::size_t>(status.st_size);
    void* const mapped = ::mmap(nullptr, size_, PROT_READ, MAP_SHARED, handle, 0);
    ::close(handle);
    if (mapped == MAP_FAILED) {
        throw std::runtime_error("the screen's picture cannot be mapped");
    }
    bytes_ = static_cast<const unsigned char*>(mapped);
}

std::vector<unsigned char> HiddenScreen::picture() const {
    constexpr std::size_t row = width * bytesOfPixel;
    std::vector<unsigned char> rows;
    rows.reserve(size_ / rowStep);
    for (std::size_t place = size_ % row; place + row <= size_; place += rowStep * row) {
        rows.insert(rows.end(), bytes_ + place, bytes_ + place + row);
    }
    return rows;
}

} // namespace varda::bench
