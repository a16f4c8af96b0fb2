#include "report.h"

#include <gtest/gtest.h>

#include <csignal>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace varda::bench {
namespace {

/// What memory() throws for a process; empty where it does not.
std::string complaint(const std::string& process) {
    try {
        memory(process);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

TEST(MemoryOfAProcess, OfThisOneGrowsWithWhatItWrites) {
    constexpr long mebibytes = 32;
    const Memory before = memory();
    const std::vector<char> written(mebibytes * 1024 * 1024, 'x');
    const Memory behind = memory();
    EXPECT_GE(behind.own - before.own, mebibytes * 1000) << written.size();
    EXPECT_GE(behind.resident, behind.own);
}

TEST(MemoryOfAProcess, IsThatOfTheProcessThatIsNamed) {
    const pid_t other = ::fork();
    if (other == 0) {
        ::pause();
        ::_exit(0);
    }
    const std::vector<char> written(std::size_t{32} * 1024 * 1024, 'x');
    const long ours = memory(std::to_string(::getpid())).own;
    const long theirs = memory(std::to_string(other)).own;
    ::kill(other, SIGKILL);
    ::waitpid(other, nullptr, 0);
    EXPECT_GT(theirs, 0);
    EXPECT_GT(ours, theirs + 30L * 1024) << written.size();
}

TEST(MemoryOfAProcess, OfNoneIsNoFigure) {
    EXPECT_EQ(complaint("none"),
              "The memory of process none is not known: /proc/none/smaps_rollup does not tell.");
}

/// It is still listed, but has no memory any more.
TEST(MemoryOfAProcess, OfOneThatHasEndedIsNoFigure) {
    const pid_t ended = ::fork();
    if (ended == 0) {
        ::_exit(0);
    }
    siginfo_t ignored{};
    ::waitid(P_PID, static_cast<id_t>(ended), &ignored, WEXITED | WNOWAIT);
    EXPECT_NE(complaint(std::to_string(ended)), "");
    ::waitpid(ended, nullptr, 0);
}

} // namespace
} // namespace varda::bench
