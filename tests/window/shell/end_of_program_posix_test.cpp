#include "core/base/runtime_error.h"
#include "device/node_claim.h"
#include "support/event_loop.h"
#include "support/pseudo_terminal.h"
#include "support/temporary_folder.h"
#include "window/shell/own_run.h"

#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>

namespace varda::test {
namespace {

/// The program itself, in a process of its own, without a screen.
class RunningProgram {
public:
    explicit RunningProgram(const QStringList& arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        process_.setProcessEnvironment(environment);
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(QStringLiteral(VARDA_PROGRAM), arguments);
        process_.waitForStarted();
    }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram() {
        process_.kill();
        process_.waitForFinished();
    }

    void signal(int number) const { ::kill(static_cast<pid_t>(process_.processId()), number); }

    bool ends() {
        return runUntil([this] { return process_.state() == QProcess::NotRunning; }, longEnough);
    }
    bool endedWell() const {
        return process_.exitStatus() == QProcess::NormalExit && process_.exitCode() == 0;
    }
    int exitCode() const { return process_.exitCode(); }
    std::string output() { return process_.readAllStandardOutput().toStdString(); }

private:
    QProcess process_;
};

/// Whether a program has the line for itself, seen from another one that has it open.
bool isTaken(int nearEnd) {
    int exclusive = 0;
    return ::ioctl(nearEnd, TIOCGEXCL, &exclusive) == 0 && exclusive != 0;
}

/// Empty where the port can be had and nothing was left behind on it, else what is told.
std::string leftBehind(const std::string& path) {
    try {
        return device::NodeClaim(path, path).takeOver();
    } catch (const RuntimeError& error) {
        return error.what();
    }
}

QStringList openOn(const std::string& port) {
    return {QStringLiteral("--port"), QString::fromStdString(port), QStringLiteral("--open")};
}

class EndOfProgramTest : public testing::TestWithParam<int> {
protected:
    /// Starts the program on a line, ends it by the signal, and looks whether the line is free.
    static void expectFreeAfterwards(const std::string& path, int nearEnd) {
        RunningProgram program(openOn(path));
        ASSERT_TRUE(runUntil([nearEnd] { return isTaken(nearEnd); }, longEnough));
        program.signal(GetParam());
        ASSERT_TRUE(program.ends());
        EXPECT_TRUE(program.endedWell());
        EXPECT_FALSE(isTaken(nearEnd));
        EXPECT_EQ(leftBehind(path), "");
    }
};

TEST_P(EndOfProgramTest, BySignalGivesALineBackWhoseFarEndStaysOpen) {
    const PseudoTerminal line;
    expectFreeAfterwards(line.path(), line.nearEnd());
}

TEST_P(EndOfProgramTest, BySignalGivesALineOfSocatBack) {
    if (QStandardPaths::findExecutable(QStringLiteral("socat")).isEmpty()) {
        GTEST_SKIP() << "notice: there is no socat";
    }
    const TemporaryFolder folder;
    const std::string nearPath = folder.file("near");
    QProcess socat;
    socat.start(QStringLiteral("socat"),
                {QStringLiteral("pty,raw,echo=0,link=") + QString::fromStdString(nearPath),
                 QStringLiteral("pty,raw,echo=0,link=") + QString::fromStdString(folder.file("far"))});
    ASSERT_TRUE(runUntil([&] { return folder.entries() == 2; }, longEnough));
    const int nearEnd = ::open(nearPath.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(nearEnd, 0);
    expectFreeAfterwards(nearPath, nearEnd);
    ::close(nearEnd);
    socat.terminate();
    socat.waitForFinished();
}

class OwnRunTest : public testing::TestWithParam<int> {};

TEST_P(OwnRunTest, EndsBySignalWithItsLogWholeAndItsPortGivenBack) {
    OwnRun run;
    EXPECT_EQ(run.untilEndedBy([](const QWidget&) { ::raise(GetParam()); }), 0);
    EXPECT_EQ(bytesOf(run.log()), "01 02 03 \n");
    EXPECT_FALSE(isTaken(run.line().nearEnd()));
    EXPECT_EQ(leftBehind(run.line().path()), "");
}

constexpr auto nameOfSignal = [](const auto& tested) { return "Signal" + std::to_string(tested.param); };

INSTANTIATE_TEST_SUITE_P(Of, OwnRunTest, testing::Values(SIGINT, SIGTERM, SIGHUP), nameOfSignal);
INSTANTIATE_TEST_SUITE_P(Of, EndOfProgramTest, testing::Values(SIGINT, SIGTERM, SIGHUP), nameOfSignal);

TEST(CommandLineOfProgram, IsAnsweredWithoutAWindow) {
    RunningProgram program(
        {QStringLiteral("--platform"), QStringLiteral("none"), QStringLiteral("--version")});
    ASSERT_TRUE(program.ends());
    EXPECT_TRUE(program.endedWell());
    EXPECT_EQ(program.output(), "varda " VARDA_VERSION "\n");
}

TEST(CommandLineOfProgram, ThatIsNotUnderstoodEndsItBeforeItIsSeen) {
    RunningProgram program({QStringLiteral("--speed")});
    ASSERT_TRUE(program.ends());
    EXPECT_EQ(program.exitCode(), 2);
}

} // namespace
} // namespace varda::test
