#include "platform/device_line.h"

#include "platform/serial_node.h"
#include "support/pseudo_terminal.h"
#include "support/raises.h"

#include <QCoreApplication>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace varda {
namespace {

using test::PseudoTerminal;
using test::raisedBy;
using testing::IsSubstring;

std::optional<RuntimeError> openError(const std::string& name) {
    DeviceLine line(name);
    return raisedBy([&line] { line.open({}); });
}

testing::AssertionResult fails(const std::string& name, int number, const std::string& description) {
    const auto error = openError(name);
    if (!error) {
        return testing::AssertionFailure() << name << " opened";
    }
    if (error->number() != number || std::string(error->what()) != description) {
        return testing::AssertionFailure() << error->number() << ": " << error->what();
    }
    return testing::AssertionSuccess();
}

std::string inUse(const std::string& label) {
    return label + " is in use by another program. Close it there or choose another port.";
}

std::string noSuchDevice(const std::string& label) {
    return "No such device: " + label + ". Check its name, and that it is plugged in.";
}

std::string groupOf(const std::string& path) {
    struct stat found {};
    ::stat(path.c_str(), &found);
    const group* entry = ::getgrgid(found.st_gid);
    return entry == nullptr ? std::to_string(found.st_gid) : entry->gr_name;
}

/// Gives up the rights of the superuser and of its groups for a while; an ordinary user has none to give up.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (user_ == 0) {
            const int count = ::getgroups(0, nullptr);
            groups_.resize(static_cast<std::size_t>(count));
            ::getgroups(count, groups_.data());
            isOrdinary_ = ::setgroups(0, nullptr) == 0 && ::setegid(nobody) == 0 && ::seteuid(nobody) == 0;
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        const bool isRestored = user_ != 0 || (::seteuid(user_) == 0 && ::setegid(group_) == 0 &&
                                               ::setgroups(groups_.size(), groups_.data()) == 0);
        EXPECT_TRUE(isRestored) << "the tests that follow run without their rights";
    }

    bool isOrdinary() const { return isOrdinary_; }

private:
    static constexpr id_t nobody = 65534;

    uid_t user_ = ::geteuid();
    gid_t group_ = ::getegid();
    std::vector<gid_t> groups_;
    bool isOrdinary_ = true;
};

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

TEST(DeviceLineOpen, OfALinkToNothingIsNoSuchDevice) {
    const QTemporaryDir folder;
    const auto link = folder.filePath(QStringLiteral("adapter"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/ttyUSB_none"), link));
    EXPECT_TRUE(fails(link.toStdString(), 8002, noSuchDevice(link.toStdString())));
}

TEST(DeviceLineOpen, OfADirectoryIsNoSerialPort) {
    EXPECT_TRUE(fails("/dev", 8002, "/dev is a directory, not a serial port."));
}

TEST(DeviceLineOpen, OfARegularFileIsNoSerialPort) {
    const auto path = QCoreApplication::applicationFilePath().toStdString();
    EXPECT_TRUE(fails(path, 8002, path + " is a regular file, not a serial port."));
}

TEST(DeviceLineOpen, OfAPipeIsNoSerialPort) {
    const QTemporaryDir folder;
    const auto path = folder.filePath(QStringLiteral("pipe")).toStdString();
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_TRUE(fails(path, 8002, path + " is no device of characters, not a serial port."));
}

TEST(DeviceLineOpen, OfAnotherKindOfDeviceIsNoSerialPort) {
    EXPECT_TRUE(fails("/dev/null", 8002, "/dev/null is another kind of device, not a serial port."));
}

TEST(DeviceLineOpen, WithoutPermissionNamesTheNodeAndTheGroupToJoin) {
    const PseudoTerminal terminal;
    ASSERT_EQ(::chmod(terminal.path().c_str(), ::geteuid() == 0 ? 0660 : 0060), 0);
    const std::string group = groupOf(terminal.path());
    const OrdinaryUser user;
    if (!user.isOrdinary()) {
        GTEST_SKIP() << "the superuser's rights cannot be given up here";
    }
    EXPECT_TRUE(fails(terminal.path(), 8002,
                      "No permission to use " + terminal.path() + " of the group \"" + group +
                          "\". Join that group (sudo usermod -aG " + group + " USER) and log in again."));
}

TEST(DeviceLineOpen, WithoutPermissionForTheGroupEitherSendsToTheAdministrator) {
    const PseudoTerminal terminal;
    ASSERT_EQ(::chmod(terminal.path().c_str(), 0), 0);
    const std::string group = groupOf(terminal.path());
    const OrdinaryUser user;
    if (!user.isOrdinary()) {
        GTEST_SKIP() << "the superuser's rights cannot be given up here";
    }
    EXPECT_TRUE(
        fails(terminal.path(), 8002,
              "No permission to use " + terminal.path() + " of the group \"" + group +
                  "\". Its permissions leave that group out, too: ask the administrator for access."));
}

TEST(DeviceLineOpen, BehindAClosedFolderIsNotPermitted) {
    const QTemporaryDir folder;
    const auto path = folder.filePath(QStringLiteral("line")).toStdString();
    const auto folderPath = folder.path().toStdString();
    ASSERT_EQ(::chmod(folderPath.c_str(), 0), 0);
    const auto reopened = qScopeGuard([&folderPath] { ::chmod(folderPath.c_str(), 0700); });
    const OrdinaryUser user;
    if (!user.isOrdinary()) {
        GTEST_SKIP() << "the superuser's rights cannot be given up here";
    }
    EXPECT_TRUE(fails(path, 8002,
                      "No permission to look up " + path + ": a folder on the way to it is closed to you."));
}

TEST(DeviceLineOpen, ByASecondHandleIsInUseUntilTheFirstCloses) {
    const PseudoTerminal terminal;
    DeviceLine first(terminal.path());
    first.open({});
    EXPECT_TRUE(fails(terminal.path(), 8005, inUse(terminal.path())));
    first.close();
    EXPECT_FALSE(openError(terminal.path()));
}

TEST(DeviceLineOpen, TwiceIsInUseAndLeavesTheLineOpen) {
    const PseudoTerminal terminal;
    DeviceLine line(terminal.path());
    line.open({});
    const auto error = raisedBy([&line] { line.open({}); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), 8005);
    EXPECT_NE(::flock(terminal.nearEnd(), LOCK_EX | LOCK_NB), 0) << "the claim still stands";
    EXPECT_FALSE(raisedBy([&line] { line.write({1}); }));
}

TEST(DeviceLineOpen, ByALinkToAnOpenNodeIsInUse) {
    const PseudoTerminal terminal;
    const QTemporaryDir folder;
    const auto link = folder.filePath(QStringLiteral("adapter"));
    ASSERT_TRUE(QFile::link(QString::fromStdString(terminal.path()), link));
    DeviceLine first(terminal.path());
    first.open({});
    EXPECT_TRUE(fails(link.toStdString(), 8005, inUse(link.toStdString())));
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

TEST(DeviceLineOpen, OfANodeWithTheLockFileOfAnotherProgramIsInUse) {
    const PseudoTerminal terminal;
    QSerialPort other(QString::fromStdString(terminal.path()));
    ASSERT_TRUE(other.open(QIODevice::ReadWrite));
    ASSERT_EQ(::ioctl(terminal.nearEnd(), TIOCNXCL), 0) << "leaves nothing but the lock file";
    EXPECT_TRUE(fails(terminal.path(), 8005, inUse(terminal.path())));
    other.close();
    EXPECT_FALSE(openError(terminal.path()));
}

TEST(DeviceLineOpen, ShowsOtherProgramsThatTheNodeIsTaken) {
    const PseudoTerminal terminal;
    DeviceLine line(terminal.path());
    line.open({});
    EXPECT_NE(::flock(terminal.nearEnd(), LOCK_EX | LOCK_NB), 0);
    EXPECT_FALSE(QSerialPort(QString::fromStdString(terminal.path())).open(QIODevice::ReadWrite));
    line.close();
    EXPECT_EQ(::flock(terminal.nearEnd(), LOCK_EX | LOCK_NB), 0);
}

TEST(DeviceLineOpen, ByALinkShowsOtherProgramsThatTheNodeItselfIsTaken) {
    const PseudoTerminal terminal;
    const QTemporaryDir folder;
    const auto link = folder.filePath(QStringLiteral("adapter"));
    ASSERT_TRUE(QFile::link(QString::fromStdString(terminal.path()), link));
    DeviceLine line(link.toStdString());
    line.open({});
    ASSERT_EQ(::ioctl(terminal.nearEnd(), TIOCNXCL), 0) << "leaves the lock file and the lock";
    EXPECT_FALSE(QSerialPort(QString::fromStdString(terminal.path())).open(QIODevice::ReadWrite));
}

TEST(DeviceLineOpen, LeavesNoClaimWhereItFails) {
    const PseudoTerminal terminal;
    QSerialPort other(QString::fromStdString(terminal.path()));
    ASSERT_TRUE(other.open(QIODevice::ReadWrite));
    ASSERT_EQ(::ioctl(terminal.nearEnd(), TIOCNXCL), 0);
    DeviceLine line(terminal.path());
    ASSERT_TRUE(raisedBy([&line] { line.open({}); }));
    EXPECT_EQ(::flock(terminal.nearEnd(), LOCK_EX | LOCK_NB), 0);
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

TEST(DeviceLineOpen, WhichTheSystemRefusesForAnotherReasonCannotBeSetUp) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "a sanitizer looks at objects through file handles, and this test takes them all";
#endif
    const PseudoTerminal terminal;
    std::optional<RuntimeError> atTheClaim;
    std::optional<RuntimeError> atTheDriver;
    {
        const FileLimit limit(0);
        atTheClaim = openError(terminal.path());
    }
    {
        const FileLimit limit(2); // for the claim and the lock file
        atTheDriver = openError(terminal.path());
    }
    ASSERT_TRUE(atTheClaim);
    EXPECT_EQ(atTheClaim->number(), 8015);
    EXPECT_EQ(atTheClaim->what(), terminal.path() + " cannot be opened: Too many open files.");
    ASSERT_TRUE(atTheDriver);
    EXPECT_EQ(atTheDriver->number(), 8015);
    EXPECT_PRED_FORMAT2(IsSubstring, terminal.path() + " cannot be set up as 9600,n,8,1 (",
                        atTheDriver->what());
    EXPECT_FALSE(openError(terminal.path()));
}

TEST(DeviceLineOpen, GivesTheDriverTheLineSettings) {
    const PseudoTerminal terminal;
    DeviceLine line(terminal.path());
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
    DeviceLine line(terminal.path());
    for (int round = 0; round < 100; ++round) {
        ASSERT_FALSE(raisedBy([&line] { line.open({}); })) << "round " << round;
        line.close();
    }
}

} // namespace
} // namespace varda
