#pragma once

#include "device/node_claim.h"
#include "support/child_process_posix.h"

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace varda::test {

/// A process that says something about itself, and then waits to be killed.
class WaitingProcess {
public:
    /// @param begin runs in that process; what it returns, said() tells here
    explicit WaitingProcess(const std::function<std::string()>& begin) {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) {
            throw std::runtime_error("no pipe");
        }
        id_ = divideProcess();
        if (id_ == 0) {
            beginAndWait(begin, ends[1]);
        }
        ::close(ends[1]);
        std::array<char, 128> text{};
        const auto length = ::read(ends[0], text.data(), text.size());
        ::close(ends[0]);
        said_.assign(text.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    }
    WaitingProcess(const WaitingProcess&) = delete;
    WaitingProcess& operator=(const WaitingProcess&) = delete;
    ~WaitingProcess() { kill(); }

    int id() const { return id_; }
    /// Empty where it failed.
    const std::string& said() const { return said_; }
    void kill() {
        if (isRunning_) { // its id may be another one's afterwards
            ::kill(id_, SIGKILL);
            ::waitpid(id_, nullptr, 0);
            isRunning_ = false;
        }
    }

private:
    [[noreturn]] static void beginAndWait(const std::function<std::string()>& begin, int output) {
        try {
            const std::string text = begin();
            [[maybe_unused]] const auto written = ::write(output, text.data(), text.size());
            ::close(output);
            for (;;) {
                ::pause();
            }
        } catch (...) {
            ::_exit(1);
        }
    }

    int id_ = -1;
    bool isRunning_ = true;
    std::string said_;
};

/// A pseudo-terminal whose maker keeps both ends open, as makers do, and which a program had that was killed:
/// it left its lock file and its claim on the node.
class KilledProgram {
public:
    KilledProgram() { program_.kill(); }

    const std::string& path() const { return maker_.said(); }
    int process() const { return program_.id(); }
    /// Not where the port was not to be had in the first place.
    bool hasClaimed() const { return !program_.said().empty(); }

private:
    static std::string makeLine() {
        std::array<char, 128> name{};
        int farEnd = -1;
        int nearEnd = -1;
        if (::openpty(&farEnd, &nearEnd, name.data(), nullptr, nullptr) != 0) {
            throw std::runtime_error("no pseudo-terminal");
        }
        return name.data();
    }
    /// The claim goes with the process.
    std::string claim() const {
        static const device::NodeClaim held(path(), path());
        return path();
    }

    WaitingProcess maker_{makeLine};
    WaitingProcess program_{[this] { return claim(); }};
};

} // namespace varda::test
