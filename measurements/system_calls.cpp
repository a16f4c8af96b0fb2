#include "system_calls.h"

#include "support/temporary_folder.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace varda::bench {
namespace {

using namespace std::chrono_literals;

bool isTraced(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    std::string word;
    while (status >> word && word != "TracerPid:") {
    }
    pid_t tracer = 0;
    status >> tracer;
    return tracer != 0;
}

pid_t startStrace(pid_t process, const std::string& file) {
    ::prctl(PR_SET_PTRACER, PR_SET_PTRACER_ANY); // a child may not look at its parent otherwise
    const pid_t strace = ::fork();
    if (strace == 0) {
        ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
        ::execlp("strace", "strace", "-f", "-c", "-o", file.c_str(), "-p", std::to_string(process).c_str(),
                 nullptr);
        ::_exit(1);
    }
    return strace;
}

bool comesToTrace(pid_t strace, pid_t process) {
    while (!isTraced(process)) {
        if (::waitpid(strace, nullptr, WNOHANG) != 0) {
            return false;
        }
        std::this_thread::sleep_for(1ms);
    }
    std::this_thread::sleep_for(100ms); // for the process's other threads
    return true;
}

/// The fourth column of the line that ends in "total".
std::optional<long long> totalOf(const std::string& file) {
    std::ifstream table(file);
    for (std::string line; std::getline(table, line);) {
        std::istringstream columns(line);
        std::string skipped;
        long long calls = 0;
        if (line.ends_with(" total") && columns >> skipped >> skipped >> skipped >> calls) {
            return calls;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<long long> systemCalls(pid_t process, const std::function<void()>& meanwhile) {
    const test::TemporaryFolder folder;
    const std::string file = folder.file("calls");
    const pid_t strace = startStrace(process, file);
    if (!comesToTrace(strace, process)) {
        return std::nullopt;
    }
    meanwhile();
    ::kill(strace, SIGINT);
    ::waitpid(strace, nullptr, 0);
    return totalOf(file);
}

} // namespace varda::bench
