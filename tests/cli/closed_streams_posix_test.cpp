#include "cli/program_fixture.h"

#include "support/child_process_posix.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace varda::test {
namespace {

using namespace std::chrono_literals;

/// The program itself, whose standard output is closed, or its input as well.
class ClosedStreams : public ProgramTest, public testing::WithParamInterface<std::vector<int>> {
protected:
    /// Listens on the line, with its standard error at the file. @return the process
    int listen(const std::string& told, const std::string& log) {
        const int process = divideProcess();
        if (process == 0) {
            ::dup2(::open(told.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
            for (const int handle : GetParam()) {
                ::close(handle);
            }
            ::execl(VARDA_CLI_PROGRAM, "varda-cli", "monitor", "-p", line.path().c_str(), "--log",
                    log.c_str(), nullptr);
            ::_exit(127);
        }
        return process;
    }
};

/// @return how a process ended, which is given some time for that and killed then
int endOf(int process) {
    int end = 0;
    for (int wait = 0; wait < 500; ++wait) {
        if (::waitpid(process, &end, WNOHANG) == process) {
            return end;
        }
        std::this_thread::sleep_for(20ms);
    }
    ::kill(process, SIGKILL);
    ::waitpid(process, &end, 0);
    return end;
}

TEST_P(ClosedStreams, AreNoPlaceForAPortNorForALog) {
    const std::string told = file("told.txt", "");
    const std::string log = folder.file("line.log");
    const int process = listen(told, log);
    for (int wait = 0; wait < 500 && bytesOf(told).empty(); ++wait) {
        std::this_thread::sleep_for(20ms);
    }
    line.write({'a', 'b', 'c'});
    const int end = endOf(process);
    EXPECT_TRUE(WIFEXITED(end));
    EXPECT_EQ(WEXITSTATUS(end), 4) << bytesOf(told);
    EXPECT_NE(bytesOf(told).find("Standard output takes no more"), std::string::npos) << bytesOf(told);
    EXPECT_EQ(line.readAvailable(), std::vector<std::uint8_t>()) << "what is told is not for the far end";
    EXPECT_EQ(bytesOf(log), "61 62 63 \n");
}

INSTANTIATE_TEST_SUITE_P(Each, ClosedStreams,
                         testing::Values(std::vector<int>{STDOUT_FILENO},
                                         std::vector<int>{STDIN_FILENO, STDOUT_FILENO}));

} // namespace
} // namespace varda::test
