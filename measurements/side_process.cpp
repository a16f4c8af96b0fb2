#include "side_process.h"

#include <csignal>
#include <cstdio>
#include <exception>

#ifdef __linux__
#include <sys/prctl.h>
#endif
#include <sys/wait.h>
#include <unistd.h>

namespace varda::bench {
namespace {

[[noreturn]] void runToTheEnd(const std::function<void()>& work) {
#ifdef __linux__
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // also where the measurement breaks off
#endif
    try {
        work();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    ::_exit(1);
}

} // namespace

SideProcess::SideProcess(const std::function<void()>& work) : process_(::fork()) {
    if (process_ == 0) {
        runToTheEnd(work);
    }
    ::clock_getcpuclockid(process_, &clock_);
}

SideProcess::~SideProcess() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
}

std::chrono::duration<double> SideProcess::processorTime() const {
    timespec time{};
    ::clock_gettime(clock_, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace varda::bench
