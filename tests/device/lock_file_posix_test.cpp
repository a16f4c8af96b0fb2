#include "device/lock_file.h"

#include "core/base/scope_exit.h"
#include "support/dead_process.h"
#include "support/ordinary_user.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <utime.h>

#include <cstring>
#include <filesystem>
#include <memory>

namespace varda {

using namespace device;
namespace {

using test::bytesOf;
using test::deadProcess;
using test::OrdinaryUser;
using test::TemporaryFolder;
using test::writeBytes;

std::string binary(int process) {
    std::string bytes(sizeof(process), '\0');
    std::memcpy(bytes.data(), &process, sizeof(process));
    return bytes;
}

/// Ten characters wide, as the Filesystem Hierarchy Standard has it.
std::string standard(int process) {
    const std::string digits = std::to_string(process);
    return std::string(10 - digits.size(), ' ') + digits + '\n';
}

TEST(OwnerInALockFile, IsReadInEveryUsualForm) {
    for (const int owner : {1, 7, 49, 12345, 4194303}) {
        const std::string text = std::to_string(owner);
        for (const std::string& content :
             {standard(owner), text, text + "\n", standard(owner) + "minicom root\n",
              text + " minicom root\n", text + "\nprogram\nhost\n", "     " + text + " cu\n", binary(owner),
              binary(owner) + "cu root\n", binary(owner) + std::string(8, '\0')}) {
            EXPECT_EQ(ownerInLockFile(content), owner) << '"' << content << '"';
        }
    }
}

TEST(OwnerInALockFile, IsNobodyWhereNoneIsNamed) {
    for (const char* const content : {"", " ", "\n", "minicom", "12x", "0\n", "-1\n", "99999999999999\n"}) {
        EXPECT_FALSE(ownerInLockFile(content)) << '"' << content << '"';
    }
    EXPECT_FALSE(ownerInLockFile(std::string(4, '\0')));
    EXPECT_FALSE(ownerInLockFile(std::string_view("\0\1", 2)));
}

class LockFileTest : public testing::Test {
protected:
    std::unique_ptr<LockFile> lock(const std::string& node = "/dev/ttyUSB0", const std::string& name = {}) {
        return std::make_unique<LockFile>(node, name.empty() ? node : name,
                                          std::vector<std::string>{folder.path()});
    }

    bool isTaken(const std::string& node = "/dev/ttyUSB0", const std::string& name = {}) {
        return lock(node, name)->isTakenByAnother();
    }

    /// Of long ago.
    void writeOld(const std::string& name, const std::string& content) {
        writeBytes(folder.file(name), content);
        makeOld(name);
    }
    void makeOld(const std::string& name) {
        const utimbuf longAgo{1000000000, 1000000000};
        ASSERT_EQ(::utime(folder.file(name).c_str(), &longAgo), 0);
    }

    static std::string told(int dead) {
        return "The lock of process " + std::to_string(dead) + ", which has ended, was taken over.";
    }

    const int living = ::getppid();
    TemporaryFolder folder;
};

TEST_F(LockFileTest, StandsWhileTheObjectDoes) {
    auto held = lock();
    EXPECT_FALSE(held->isTakenByAnother());
    EXPECT_EQ(bytesOf(folder.file("LCK..ttyUSB0")), standard(::getpid()));
    EXPECT_EQ(folder.entries(), 1);
    held.reset();
    EXPECT_EQ(folder.entries(), 0);
}

TEST_F(LockFileTest, CanBeReadByEverybody) {
    const auto held = lock();
    EXPECT_EQ(std::filesystem::status(folder.file("LCK..ttyUSB0")).permissions(),
              std::filesystem::perms(0644));
}

TEST_F(LockFileTest, OfAnotherIsRespectedAndLeftAloneWhateverItsAgeAndForm) {
    for (const std::string& content :
         {standard(living), std::to_string(living), binary(living), standard(living) + "minicom root\n",
          binary(living) + "cu root\n", std::to_string(living) + "\nprogram\nhost\n"}) {
        writeOld("LCK..ttyUSB0", content);
        EXPECT_TRUE(isTaken());
        EXPECT_EQ(bytesOf(folder.file("LCK..ttyUSB0")), content);
    }
}

TEST_F(LockFileTest, OfAnotherThatTookItOverIsLeftAlone) {
    auto own = lock();
    const std::string path = folder.file("LCK..ttyUSB0");
    ASSERT_EQ(bytesOf(path), standard(::getpid()));
    writeBytes(folder.file("other"), standard(::getppid()));
    std::filesystem::rename(folder.file("other"), path);
    own.reset();
    EXPECT_EQ(bytesOf(path), standard(::getppid()));
}

TEST_F(LockFileTest, OfADeadProcessIsTakenOver) {
    const int dead = deadProcess();
    for (const std::string& content : {standard(dead), binary(dead), std::to_string(dead) + " cu root\n"}) {
        writeBytes(folder.file("LCK..ttyUSB0"), content);
        const auto held = lock();
        EXPECT_FALSE(held->isTakenByAnother());
        EXPECT_EQ(bytesOf(folder.file("LCK..ttyUSB0")), standard(::getpid()));
        EXPECT_EQ(held->takeOver(), told(dead));
    }
}

/// In a container the next program mostly has the number of the one before.
TEST_F(LockFileTest, OfADeadProcessThatHadTheNumberOfThisOneIsTakenOver) {
    writeOld("LCK..ttyUSB0", standard(::getpid()));
    const auto held = lock();
    EXPECT_FALSE(held->isTakenByAnother());
    EXPECT_EQ(held->takeOver(), told(::getpid()));
}

TEST_F(LockFileTest, OfThisProcessIsRespectedWhileItStandsUnderWhateverName) {
    const std::string link = folder.file("link");
    auto held = lock();
    std::filesystem::create_directory_symlink(folder.path(), link);
    EXPECT_TRUE(isTaken());
    EXPECT_TRUE(LockFile("/dev/ttyUSB0", "/dev/ttyUSB0", {link}).isTakenByAnother());
    EXPECT_EQ(bytesOf(folder.file("LCK..ttyUSB0")), standard(::getpid()));
    held.reset();
    EXPECT_FALSE(isTaken());
}

TEST_F(LockFileTest, OfADeadProcessIsTakenOverUnderEveryName) {
    const int dead = deadProcess();
    for (const char* const name : {"LCK..pts_5", "LCK..pts:5", "LCK..5", "LCK..modem"}) {
        writeBytes(folder.file(name), standard(dead));
        const auto held = lock("/dev/pts/5", "/dev/modem");
        EXPECT_FALSE(held->isTakenByAnother()) << name;
        EXPECT_EQ(held->takeOver(), told(dead)) << name;
        EXPECT_EQ(folder.names(), std::vector<std::string>{"LCK..pts_5"}) << name;
    }
}

TEST_F(LockFileTest, OfADeadProcessIsTakenOverInEveryFolder) {
    const int dead = deadProcess();
    const TemporaryFolder other;
    writeBytes(other.file("LCK..ttyUSB0"), standard(dead));
    const LockFile held("/dev/ttyUSB0", "/dev/ttyUSB0", {folder.path(), other.path()});
    EXPECT_EQ(held.takeOver(), told(dead));
    EXPECT_EQ(other.entries(), 0);
    EXPECT_EQ(bytesOf(folder.file("LCK..ttyUSB0")), standard(::getpid()));
}

TEST_F(LockFileTest, OfSeveralDeadProcessesEachIsTold) {
    const int first = deadProcess();
    const int second = deadProcess();
    writeBytes(folder.file("LCK..pts_5"), standard(first));
    writeBytes(folder.file("LCK..5"), standard(second));
    writeBytes(folder.file("LCK..modem"), standard(first));
    EXPECT_EQ(lock("/dev/pts/5", "/dev/modem")->takeOver(), told(first) + ' ' + told(second));
}

/// As the folder for all lock files mostly is: everybody makes files there, and removes only their own.
TEST_F(LockFileTest, ThatOnlyItsOwnerMayRemoveIsPassedOverAndTold) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "notice: the file of another user is left out: only the administrator can make one";
    }
    const int dead = deadProcess();
    const TemporaryFolder next;
    std::filesystem::permissions(folder.path(), std::filesystem::perms(01777));
    std::filesystem::permissions(next.path(), std::filesystem::perms(01777));
    writeBytes(folder.file("LCK..ttyUSB0"), standard(dead));
    const OrdinaryUser user;
    const LockFile held("/dev/ttyUSB0", "/dev/ttyUSB0", {folder.path(), next.path()});
    EXPECT_FALSE(held.isTakenByAnother());
    EXPECT_EQ(held.takeOver(), "The lock of process " + std::to_string(dead) +
                                   ", which has ended, was passed over: you may not remove it.");
    EXPECT_EQ(bytesOf(folder.file("LCK..ttyUSB0")), standard(dead));
    EXPECT_EQ(bytesOf(next.file("LCK..ttyUSB0")), standard(::getpid()));
}

TEST_F(LockFileTest, OfOneThatLivesLeavesTheOthersAlone) {
    const int dead = deadProcess();
    writeBytes(folder.file("LCK..ttyUSB0"), standard(dead));
    writeBytes(folder.file("LCK..modem"), standard(living));
    const auto held = lock("/dev/ttyUSB0", "/dev/modem");
    EXPECT_TRUE(held->isTakenByAnother());
    EXPECT_EQ(held->takeOver(), "");
    EXPECT_EQ(bytesOf(folder.file("LCK..ttyUSB0")), standard(dead));
}

TEST_F(LockFileTest, IsNoFolderOfThatName) {
    std::filesystem::create_directory(folder.file("LCK..ttyUSB0"));
    makeOld("LCK..ttyUSB0");
    const auto held = lock();
    EXPECT_FALSE(held->isTakenByAnother());
    EXPECT_EQ(held->takeOver(), "");
    EXPECT_TRUE(std::filesystem::is_directory(folder.file("LCK..ttyUSB0")));
}

TEST_F(LockFileTest, ThatNamesNobodyIsTakenOverWithoutAName) {
    writeOld("LCK..ttyUSB0", "");
    EXPECT_EQ(lock()->takeOver(), "A lock that names no process was taken over.");
}

TEST_F(LockFileTest, TellsOfNoTakeOverWhereThereWasNone) {
    EXPECT_EQ(lock()->takeOver(), "");
    writeBytes(folder.file("LCK..ttyUSB0"), standard(living));
    EXPECT_EQ(lock()->takeOver(), "");
}

TEST_F(LockFileTest, ThatNamesNobodyStandsOnlyWhileItMayBeInWriting) {
    writeBytes(folder.file("LCK..ttyUSB0"), "");
    EXPECT_TRUE(isTaken());
    writeOld("LCK..ttyUSB0", "");
    EXPECT_FALSE(isTaken());
}

TEST_F(LockFileTest, IsLookedForUnderEveryNameThatOthersGiveIt) {
    for (const char* const name : {"LCK..pts_5", "LCK..pts:5", "LCK..5", "LCK..modem"}) {
        writeBytes(folder.file(name), standard(living));
        EXPECT_TRUE(isTaken("/dev/pts/5", "/dev/modem")) << name;
        std::filesystem::remove(folder.file(name));
    }
    EXPECT_FALSE(isTaken("/dev/pts/5", "/dev/modem"));
}

TEST_F(LockFileTest, OfAnotherPortDoesNotMatter) {
    writeBytes(folder.file("LCK..ttyUSB1"), standard(living));
    EXPECT_FALSE(isTaken());
}

TEST_F(LockFileTest, IsDoneWithoutWhereItCannotBeMade) {
    const LockFile none("/dev/ttyUSB0", "/dev/ttyUSB0", {folder.file("missing")});
    EXPECT_FALSE(none.isTakenByAnother());
}

TEST_F(LockFileTest, InAFolderThatMayNotBeSearchedIsNobodys) {
    writeBytes(folder.file("LCK..ttyUSB0"), standard(living));
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0));
    const ScopeExit reopened(
        [this] { std::filesystem::permissions(folder.path(), std::filesystem::perms(0755)); });
    const OrdinaryUser user;
    EXPECT_FALSE(isTaken()) << "nobody could use a port of a system that is so set up";
}

TEST_F(LockFileTest, ThatMayNotBeReadStandsForSomebody) {
    writeBytes(folder.file("LCK..ttyUSB0"), standard(living));
    std::filesystem::permissions(folder.file("LCK..ttyUSB0"), std::filesystem::perms(0));
    const OrdinaryUser user;
    EXPECT_TRUE(isTaken());
}

} // namespace
} // namespace varda
