#include "device/device_line.h"

#include "core/base/scope_exit.h"
#include "device/line_opening.h"
#include "device/serial_node.h"
#include "support/ordinary_user.h"
#include "support/pseudo_terminal.h"
#include "support/raises.h"
#include "support/sanitized.h"
#include "support/task_loop.h"
#include "support/temporary_folder.h"

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <termios.h>
#include <unistd.h>

#include <filesystem>

namespace varda {

using namespace device;
namespace {

using test::fails;
using test::ignoreTasks;
using test::inUse;
using test::lockFileOf;
using test::openError;
using test::OrdinaryUser;
using test::PseudoTerminal;
using test::raisedBy;
using test::TemporaryFolder;

std::string noSuchDevice(const std::string& label) {
    return "No such device: " + label + ". Check its name, and that it is plugged in.";
}

std::string groupOf(const std::string& path) {
    struct stat found {};
    ::stat(path.c_str(), &found);
    const group* entry = ::getgrgid(found.st_gid);
    return entry == nullptr ? std::to_string(found.st_gid) : entry->gr_name;
}

TEST(DeviceLineOpen, OfNoNameIsAnInvalidPort) {
    EXPECT_TRUE(fails("", 8002, "No port is chosen. Type or choose its name."));
    EXPECT_TRUE(fails("  ", 8002, "No port is chosen. Type or choose its name."));
}

TEST(DeviceLineOpen, OfANodeThatIsNotThereIsNoSuchDevice) {
    EXPECT_TRUE(fails("/dev/ttyUSB_none", 8002, noSuchDevice("/dev/ttyUSB_none")));
    EXPECT_TRUE(fails("ttyUSB_none", 8002, noSuchDevice("ttyUSB_none (/dev/ttyUSB_none)")));
    EXPECT_TRUE(fails("COM20000", 8002, noSuchDevice("COM20000 (/dev/ttyS19999)")));
    EXPECT_TRUE(fails("/dev/null/x", 8002, noSuchDevice("/dev/null/x")));
    EXPECT_TRUE(fails("/" + std::string(5000, 'x'), 8002, noSuchDevice("/" + std::string(5000, 'x'))));
}

TEST(DeviceLineOpen, OfANameInSmallLettersAsksForTheOneInCapitals) {
    EXPECT_TRUE(fails("virtual", 8002,
                      noSuchDevice("virtual (/dev/virtual)") + " Did you mean VIRTUAL, in capitals?"));
    EXPECT_TRUE(fails("com1", 8002, noSuchDevice("com1 (/dev/com1)") + " Did you mean COM1, in capitals?"));
}

TEST(DeviceLineOpen, OfALinkToNothingIsNoSuchDevice) {
    const TemporaryFolder folder;
    const auto link = folder.file("adapter");
    std::filesystem::create_symlink("/dev/ttyUSB_none", link);
    EXPECT_TRUE(fails(link, 8002, noSuchDevice(link)));
}

TEST(DeviceLineOpen, OfADirectoryIsNoSerialPort) {
    EXPECT_TRUE(fails("/dev", 8002, "/dev is a directory, not a serial port."));
}

TEST(DeviceLineOpen, OfARegularFileIsNoSerialPort) {
    const auto path = std::filesystem::read_symlink("/proc/self/exe").string();
    EXPECT_TRUE(fails(path, 8002, path + " is a regular file, not a serial port."));
}

TEST(DeviceLineOpen, OfABlockDeviceIsNoSerialPort) {
    const TemporaryFolder folder;
    const auto disk = folder.file("disk");
    if (::mknod(disk.c_str(), S_IFBLK | 0600, makedev(7, 200)) != 0) {
        GTEST_SKIP() << "no device node can be made here";
    }
    EXPECT_TRUE(fails(disk, 8002, disk + " is a block device, not a serial port."));
}

TEST(DeviceLineOpen, OfASocketIsNoSerialPort) {
    const TemporaryFolder folder;
    const auto path = folder.file("socket");
    ASSERT_EQ(::mknod(path.c_str(), S_IFSOCK | 0600, 0), 0);
    EXPECT_TRUE(fails(path, 8002, path + " is a socket, not a serial port."));
}

TEST(DeviceLineOpen, OfALoopOfLinksTellsTheSystemsReason) {
    const TemporaryFolder folder;
    const auto link = folder.file("adapter");
    std::filesystem::create_symlink("adapter", link);
    EXPECT_TRUE(fails(link, 8015, link + " cannot be opened: Too many levels of symbolic links."));
}

TEST(DeviceLineOpen, OfAPipeIsNoSerialPort) {
    const TemporaryFolder folder;
    const auto path = folder.file("pipe");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_TRUE(fails(path, 8002, path + " is a pipe, not a serial port."));
}

TEST(DeviceLineOpen, OfAnotherKindOfDeviceIsNoSerialPort) {
    EXPECT_TRUE(fails("/dev/null", 8002, "/dev/null is another kind of device, not a serial port."));
}

TEST(DeviceLineOpen, WithoutPermissionNamesTheNodeAndTheGroupToJoin) {
    const PseudoTerminal terminal;
    ASSERT_EQ(::chmod(terminal.path().c_str(), ::geteuid() == 0 ? 0660 : 0060), 0);
    const std::string group = groupOf(terminal.path());
    const OrdinaryUser user;
    EXPECT_TRUE(fails(terminal.path(), 8002,
                      "No permission to use " + terminal.path() + " of the group \"" + group +
                          "\". Join that group (sudo usermod -aG " + group + " USER) and log in again."));
}

TEST(DeviceLineOpen, WithoutPermissionForTheGroupEitherSendsToTheAdministrator) {
    const PseudoTerminal terminal;
    ASSERT_EQ(::chmod(terminal.path().c_str(), 0), 0);
    const std::string group = groupOf(terminal.path());
    const OrdinaryUser user;
    EXPECT_TRUE(
        fails(terminal.path(), 8002,
              "No permission to use " + terminal.path() + " of the group \"" + group +
                  "\". Its permissions leave that group out, too: ask the administrator for access."));
}

TEST(DeviceLineOpen, BehindAClosedFolderIsNotPermitted) {
    const TemporaryFolder folder;
    const auto path = folder.file("line");
    ASSERT_EQ(::chmod(folder.path().c_str(), 0), 0);
    const ScopeExit reopened([&folder] { ::chmod(folder.path().c_str(), 0700); });
    const OrdinaryUser user;
    EXPECT_TRUE(fails(path, 8002,
                      "No permission to look up " + path + ": a folder on the way to it is closed to you."));
}

TEST(DeviceLineOpen, ByASecondHandleIsInUseUntilTheFirstCloses) {
    const PseudoTerminal terminal;
    DeviceLine first(terminal.path(), ignoreTasks);
    first.open({});
    EXPECT_TRUE(fails(terminal.path(), 8005, inUse(terminal.path())));
    first.close();
    EXPECT_FALSE(openError(terminal.path()));
}

TEST(DeviceLineOpen, TwiceIsInUseAndLeavesTheLineOpen) {
    const PseudoTerminal terminal;
    DeviceLine line(terminal.path(), ignoreTasks);
    line.open({});
    const auto error = raisedBy([&line] { line.open({}); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), 8005);
    EXPECT_NE(::flock(terminal.nearEnd(), LOCK_EX | LOCK_NB), 0) << "the claim still stands";
    EXPECT_FALSE(raisedBy([&line] { line.write({1}); }));
}

TEST(DeviceLineOpen, ByALinkToAnOpenNodeIsInUse) {
    const PseudoTerminal terminal;
    const TemporaryFolder folder;
    const auto link = folder.file("adapter");
    std::filesystem::create_symlink(terminal.path(), link);
    DeviceLine first(terminal.path(), ignoreTasks);
    first.open({});
    EXPECT_TRUE(fails(link, 8005, inUse(link)));
}

TEST(DeviceLineOpen, OfANodeLockedByAnotherProgramIsInUse) {
    const PseudoTerminal terminal;
    ASSERT_EQ(::flock(terminal.nearEnd(), LOCK_EX | LOCK_NB), 0);
    EXPECT_TRUE(fails(terminal.path(), 8005, inUse(terminal.path())));
    ASSERT_EQ(::flock(terminal.nearEnd(), LOCK_UN), 0);
    EXPECT_FALSE(openError(terminal.path()));
}

TEST(DeviceLineOpen, OfANodeThatAnotherProgramHoldsExclusivelyIsInUse) {
    const PseudoTerminal terminal;
    ASSERT_EQ(::ioctl(terminal.nearEnd(), TIOCEXCL), 0);
    EXPECT_TRUE(fails(terminal.path(), 8005, inUse(terminal.path())));
    ASSERT_EQ(::ioctl(terminal.nearEnd(), TIOCNXCL), 0);
    EXPECT_FALSE(openError(terminal.path()));
}

std::string lockFile(const PseudoTerminal& terminal) { return lockFileOf(terminal.path()); }

testing::AssertionResult canLock() {
    return ::access("/var/lock", W_OK) == 0 ? testing::AssertionSuccess()
                                            : testing::AssertionFailure() << "no lock files can be made here";
}

TEST(DeviceLineOpen, OfANodeWithTheLockFileOfAnotherProgramIsInUse) {
    if (!canLock()) {
        GTEST_SKIP() << canLock().message();
    }
    const PseudoTerminal terminal;
    test::writeBytes(lockFile(terminal), std::to_string(::getppid()) + "\n");
    EXPECT_TRUE(fails(terminal.path(), 8005, inUse(terminal.path())));
    EXPECT_TRUE(std::filesystem::remove(lockFile(terminal))) << "it is not ours to delete";
    EXPECT_FALSE(openError(terminal.path()));
}

TEST(DeviceLineOpen, ShowsOtherProgramsThatTheNodeIsTaken) {
    const PseudoTerminal terminal;
    DeviceLine line(terminal.path(), ignoreTasks);
    line.open({});
    EXPECT_NE(::flock(terminal.nearEnd(), LOCK_EX | LOCK_NB), 0);
    int exclusive = 0;
    EXPECT_EQ(::ioctl(terminal.nearEnd(), TIOCGEXCL, &exclusive), 0);
    EXPECT_NE(exclusive, 0);
    line.close();
    EXPECT_EQ(::flock(terminal.nearEnd(), LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(::ioctl(terminal.nearEnd(), TIOCGEXCL, &exclusive), 0);
    EXPECT_EQ(exclusive, 0);
}

TEST(DeviceLineOpen, MakesALockFileForTheTimeThatItIsOpen) {
    if (!canLock()) {
        GTEST_SKIP() << canLock().message();
    }
    const PseudoTerminal terminal;
    DeviceLine line(terminal.path(), ignoreTasks);
    line.open({});
    std::string id = std::to_string(::getpid());
    id.insert(0, 10 - id.size(), ' ');
    EXPECT_EQ(test::bytesOf(lockFile(terminal)), id + "\n");
    line.close();
    EXPECT_FALSE(std::filesystem::exists(lockFile(terminal)));
}

TEST(DeviceLineOpen, ByALinkShowsOtherProgramsThatTheNodeItselfIsTaken) {
    if (!canLock()) {
        GTEST_SKIP() << canLock().message();
    }
    const PseudoTerminal terminal;
    const TemporaryFolder folder;
    const auto link = folder.file("adapter");
    std::filesystem::create_symlink(terminal.path(), link);
    DeviceLine line(link, ignoreTasks);
    line.open({});
    EXPECT_TRUE(std::filesystem::exists(lockFile(terminal)));
}

TEST(DeviceLineOpen, LeavesNoClaimWhereItFails) {
    const PseudoTerminal terminal;
    ASSERT_EQ(::flock(terminal.nearEnd(), LOCK_EX | LOCK_NB), 0);
    DeviceLine line(terminal.path(), ignoreTasks);
    ASSERT_TRUE(raisedBy([&line] { line.open({}); }));
    ASSERT_EQ(::flock(terminal.nearEnd(), LOCK_UN), 0);
    int exclusive = 0;
    EXPECT_EQ(::ioctl(terminal.nearEnd(), TIOCGEXCL, &exclusive), 0);
    EXPECT_EQ(exclusive, 0);
    EXPECT_FALSE(std::filesystem::exists(lockFile(terminal)));
}

TEST(DeviceLineOpen, OfAConsoleIsNoSerialPort) {
    EXPECT_TRUE(fails("/dev/tty", 8002, "/dev/tty is a console, not a serial port."));
}

TEST(DeviceLineOpen, OfEveryConsoleIsNoSerialPort) {
    const std::vector<dev_t> consoles = {makedev(4, 0), makedev(4, 1), makedev(4, 63),
                                         makedev(5, 0), makedev(5, 1), makedev(229, 0)};
    for (const dev_t console : consoles) {
        const TemporaryFolder folder;
        const auto node = folder.file("console");
        if (::mknod(node.c_str(), S_IFCHR | 0600, console) != 0) {
            GTEST_SKIP() << "no device node can be made here";
        }
        EXPECT_TRUE(fails(node, 8002, node + " is a console, not a serial port."))
            << major(console) << ':' << minor(console);
    }
}

TEST(DeviceLineOpen, OfTheMakerOfPseudoTerminalsIsNoSerialPort) {
    const TemporaryFolder folder;
    const auto maker = folder.file("ptmx");
    if (::mknod(maker.c_str(), S_IFCHR | 0600, makedev(5, 2)) != 0) {
        GTEST_SKIP() << "no device node can be made here";
    }
    EXPECT_TRUE(fails(maker, 8002, maker + " is another kind of device, not a serial port."));
}

/// Limits this process to the files it has open now and `more` of them.
class FileLimit {
public:
    explicit FileLimit(rlim_t more) {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const int lowestFree = ::dup(STDERR_FILENO);
        ::close(lowestFree);
        const rlimit limit{static_cast<rlim_t>(lowestFree) + more, before_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    FileLimit(const FileLimit&) = delete;
    FileLimit& operator=(const FileLimit&) = delete;
    ~FileLimit() { ::setrlimit(RLIMIT_NOFILE, &before_); }

private:
    rlimit before_{};
};

TEST(DeviceLineOpen, WithoutFileHandlesLeftSaysSo) {
    if (isSanitized) {
        GTEST_SKIP() << "a sanitizer looks at objects through file handles, and this test takes them all";
    }
    const PseudoTerminal terminal;
    std::vector<std::optional<RuntimeError>> errors;
    for (rlim_t more = 0; errors.empty() || errors.back(); ++more) {
        const FileLimit limit(more);
        errors.push_back(openError(terminal.path()));
    }
    ASSERT_GT(errors.size(), 2U) << "the node's handle and Asio's";
    errors.pop_back();
    for (const auto& error : errors) {
        EXPECT_EQ(error->number(), 8015);
        EXPECT_STREQ(error->what(), (terminal.path() + " cannot be opened: Too many open files.").c_str());
    }
    EXPECT_FALSE(openError(terminal.path()));
}

TEST(DeviceLineOpen, GivesTheDriverTheLineSettings) {
    const PseudoTerminal terminal;
    DeviceLine line(terminal.path(), ignoreTasks);
    line.open({.baudRate = 19200, .parity = 'o', .dataBits = 8, .stopBits = 2});
    termios settings{};
    ASSERT_EQ(::tcgetattr(terminal.nearEnd(), &settings), 0);
    EXPECT_EQ(::cfgetospeed(&settings), static_cast<speed_t>(B19200));
    EXPECT_EQ(::cfgetispeed(&settings), static_cast<speed_t>(B19200));
    EXPECT_TRUE(settings.c_cflag & CSTOPB);
    EXPECT_TRUE(settings.c_cflag & PARODD) << "the rest of the parity is not kept by a pseudo-terminal";
    EXPECT_FALSE(settings.c_cflag & CRTSCTS);
    EXPECT_FALSE(settings.c_iflag & (IXON | IXOFF | IXANY | ICRNL | ISTRIP));
}

TEST(DeviceLineOpen, TakesTheBlanksAroundANameAway) {
    const PseudoTerminal terminal;
    EXPECT_FALSE(openError("  " + terminal.path() + " "));
}

TEST(DeviceLineOpen, CanFollowAClosingAnyNumberOfTimes) {
    const PseudoTerminal terminal;
    DeviceLine line(terminal.path(), ignoreTasks);
    for (int round = 0; round < 100; ++round) {
        ASSERT_FALSE(raisedBy([&line] { line.open({}); })) << "round " << round;
        line.close();
    }
}

} // namespace
} // namespace varda
