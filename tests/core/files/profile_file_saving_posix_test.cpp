#include "core/base/scope_exit.h"
#include "core/files/atomic_file.h"
#include "core/files/profile_file.h"

#include "support/child_process_posix.h"
#include "support/few_handles_posix.h"
#include "support/ordinary_user.h"
#include "support/profile_file_checks.h"
#include "support/raises.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace varda {
namespace {

using test::bytesOf;
using test::expectRefused;
using test::newContent;
using test::newFile;
using test::oldContent;
using test::OrdinaryUser;
using test::writeBytes;

namespace fs = std::filesystem;

unsigned modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777U;
}

class ProfileFileSavingPosix : public test::ProfileFileTest {};

TEST_F(ProfileFileSavingPosix, CreatesAFileWithThePermissionsOfANewFile) {
    const mode_t oldMask = ::umask(027);
    const ScopeExit restore([&] { ::umask(oldMask); });
    newFile().save(path_);
    EXPECT_EQ(bytesOf(path_), newContent);
    EXPECT_EQ(modeOf(path_), 0640U);
    EXPECT_EQ(folder_.entries(), 1);
}

TEST_F(ProfileFileSavingPosix, KeepsThePermissions) {
    for (const unsigned mode : {0600U, 0640U, 0664U, 0666U, 0755U}) {
        writeBytes(path_, oldContent);
        fs::permissions(path_, fs::perms(mode));
        newFile().save(path_);
        EXPECT_EQ(modeOf(path_), mode);
    }
}

TEST_F(ProfileFileSavingPosix, KeepsTheOwnerWhereTheSystemAllowsIt) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the administrator may give files away";
    }
    writeBytes(path_, oldContent);
    ASSERT_EQ(::chown(path_.c_str(), 65534, 65534), 0);
    newFile().save(path_);
    struct stat status {};
    ASSERT_EQ(::stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 65534U);
    EXPECT_EQ(status.st_gid, 65534U);
}

TEST_F(ProfileFileSavingPosix, ReplacesTheFileOfAnotherOwnerThatMayBeWritten) {
    fs::permissions(folder_.path(), fs::perms(0777));
    writeBytes(path_, oldContent);
    fs::permissions(path_, fs::perms(0666));
    const OrdinaryUser user;
    newFile().save(path_);
    EXPECT_EQ(bytesOf(path_), newContent);
    EXPECT_EQ(modeOf(path_), 0666U);
}

TEST_F(ProfileFileSavingPosix, KeepsASymbolicLink) {
    fs::create_directory(folder_.file("data"));
    writeBytes(folder_.file("data/target.ini"), oldContent);
    fs::create_symlink("data/second", path_);
    fs::create_symlink("target.ini", folder_.file("data/second"));
    newFile().save(path_);
    EXPECT_EQ(fs::read_symlink(path_), "data/second");
    EXPECT_EQ(fs::read_symlink(folder_.file("data/second")), "target.ini");
    EXPECT_EQ(bytesOf(folder_.file("data/target.ini")), newContent);
}

TEST_F(ProfileFileSavingPosix, CreatesTheTargetOfALinkThatLedToNothing) {
    fs::create_symlink("target.ini", path_);
    newFile().save(path_);
    EXPECT_TRUE(fs::is_symlink(path_));
    EXPECT_EQ(bytesOf(folder_.file("target.ini")), newContent);
}

TEST_F(ProfileFileSavingPosix, ALoopOfLinksIsRefused) {
    fs::create_symlink("table.ini", path_);
    expectRefused(newFile(), path_, 75, "could not be saved");
}

TEST_F(ProfileFileSavingPosix, AFullDiskLeavesTheOldFileWhole) {
    writeBytes(path_, oldContent);
    ProfileFile file = ProfileFile::load(path_);
    file.setValue("S", "k", std::string(100'000, 'F'));
    struct rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit small = {8192, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    expectRefused(file, path_, 61, "the disk is full");
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    static_cast<void>(std::signal(SIGXFSZ, handler));
    EXPECT_EQ(bytesOf(path_), oldContent);
    EXPECT_EQ(folder_.entries(), 1);
    file.save(path_);
    EXPECT_EQ(ProfileFile::load(path_).value("S", "k", "", 200'000), std::string(100'000, 'F'));
}

TEST_F(ProfileFileSavingPosix, AReadOnlyFolderLeavesTheOldFileWhole) {
    writeBytes(path_, oldContent);
    fs::permissions(path_, fs::perms(0666));
    fs::permissions(folder_.path(), fs::perms(0555));
    {
        const OrdinaryUser user;
        expectRefused(newFile(), path_, 70, "permission denied");
        expectRefused(newFile(), folder_.file("new.ini"), 70, "permission denied");
    }
    EXPECT_EQ(bytesOf(path_), oldContent);
    EXPECT_EQ(folder_.entries(), 1);
}

TEST_F(ProfileFileSavingPosix, AReadOnlyFileIsNotReplacedAlthoughItsFolderWouldAllowIt) {
    fs::permissions(folder_.path(), fs::perms(0777));
    writeBytes(path_, oldContent);
    fs::permissions(path_, fs::perms(0444));
    {
        const OrdinaryUser user;
        expectRefused(newFile(), path_, 70, "permission denied");
    }
    EXPECT_EQ(bytesOf(path_), oldContent);
    EXPECT_EQ(folder_.entries(), 1);
}

TEST_F(ProfileFileSavingPosix, AFailureAtTheRenameRemovesTheTemporaryFile) {
    // In a folder like this one only its owner may take the name from a file.
    fs::permissions(folder_.path(), fs::perms(01777));
    writeBytes(path_, oldContent);
    fs::permissions(path_, fs::perms(0666));
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs a file of another owner";
    }
    {
        const OrdinaryUser user;
        expectRefused(newFile(), path_, 70, "permission denied");
    }
    EXPECT_EQ(bytesOf(path_), oldContent);
    EXPECT_EQ(folder_.entries(), 1);
}

TEST_F(ProfileFileSavingPosix, APipeIsRefusedAndDoesNotBlock) {
    ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
    expectRefused(newFile(), path_, 75, "is no regular file");
    EXPECT_TRUE(fs::is_fifo(path_));
}

TEST_F(ProfileFileSavingPosix, ADeviceIsRefused) {
    expectRefused(newFile(), "/dev/null", 75, "is no regular file");
    fs::create_symlink("/dev/full", path_);
    expectRefused(newFile(), path_, 75, "is no regular file");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_TRUE(fs::is_symlink(path_));
}

TEST_F(ProfileFileSavingPosix, ANameThatCannotBe) {
    expectRefused(newFile(), folder_.file(std::string(300, 'x')), 75, "could not be saved");
    EXPECT_EQ(folder_.entries(), 0);
}

TEST_F(ProfileFileSavingPosix, TheLongestNameIsSaved) {
    const std::string longest = folder_.file(std::string(255, 'x'));
    newFile().save(longest);
    EXPECT_EQ(bytesOf(longest), newContent);
}

TEST_F(ProfileFileSavingPosix, SaysWhatHelpsByTheReason) {
    const auto adviceOn = [](const std::string& path) {
        return test::adviceOf([&path] { newFile().save(path); });
    };
    writeBytes(path_, oldContent);
    EXPECT_EQ(adviceOn(folder_.file("none/table.ini")), "Save to a folder that is there.");
    EXPECT_EQ(adviceOn(path_ + "/table.ini"), "Save to a folder that is there.");
    EXPECT_EQ(adviceOn(folder_.path()),
              "A folder, a device or a pipe holds no such file. Choose another name.");
    EXPECT_EQ(adviceOn(std::string(5000, 'x')), "Save to another place.");
    {
        const test::FewHandles none(0);
        EXPECT_EQ(adviceOn(path_), "Close other programs or windows, and try again.");
        const auto problem = ProfileFile::load(path_).problem();
        ASSERT_TRUE(problem);
        EXPECT_EQ(problem->advice(), "Close other programs or windows, and try again.");
    }
    fs::permissions(path_, fs::perms(0));
    const OrdinaryUser user;
    EXPECT_EQ(adviceOn(path_), "Save to a folder that you may write to, as a new file.");
    const auto problem = ProfileFile::load(path_).problem();
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->advice(), "Choose a file that you may read, or ask its owner for access.");
}

/// Saves in a process of its own, which the system kills in the middle of the writing.
void saveAndBeKilled(const ProfileFile& file, const std::string& path) {
    const pid_t child = test::divideProcess();
    if (child == 0) {
        const struct rlimit none = {0, 0};
        const struct rlimit small = {8192, 8192};
        ::setrlimit(RLIMIT_CORE, &none);
        ::setrlimit(RLIMIT_FSIZE, &small);
        static_cast<void>(std::signal(SIGXFSZ, SIG_DFL));
        file.save(path);
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
}

TEST_F(ProfileFileSavingPosix, WhatAKilledSaveLeftIsRemovedByTheNextOneIntoThatFolder) {
    ProfileFile large;
    large.setValue("S", "k", std::string(100'000, 'F'));
    writeBytes(path_, oldContent);
    saveAndBeKilled(large, path_);
    EXPECT_EQ(bytesOf(path_), oldContent);
    EXPECT_EQ(folder_.entries(), 2);
    newFile().save(folder_.file("another.ini"));
    EXPECT_EQ(folder_.entries(), 2); // the old one and the new one
    EXPECT_EQ(bytesOf(path_), oldContent);
}

TEST_F(ProfileFileSavingPosix, TheFileOfALivingWriterStays) {
    const std::string held = folder_.file(".varda-17.tmp");
    const int writer = ::open(held.c_str(), O_WRONLY | O_CREAT, 0600);
    ASSERT_EQ(::flock(writer, LOCK_EX), 0);
    newFile().save(path_);
    EXPECT_TRUE(fs::exists(held));
    ::close(writer);
    newFile().save(path_);
    EXPECT_FALSE(fs::exists(held));
}

TEST_F(ProfileFileSavingPosix, WhatIsNotOursStays) {
    const std::vector<std::string> others = {".varda-.tmp",  ".varda-1a.tmp", ".varda-1.tmp~", "varda-1.tmp",
                                             ".varda-1.TMP", ".varda--1.tmp", ".vardb-1.tmp"};
    for (const std::string& name : others) {
        writeBytes(folder_.file(name), "mine");
    }
    fs::create_directory(folder_.file(".varda-2.tmp"));
    fs::create_symlink(".varda-.tmp", folder_.file(".varda-3.tmp"));
    newFile().save(path_);
    EXPECT_EQ(folder_.entries(), static_cast<std::ptrdiff_t>(others.size()) + 3);
}

/// A file that may be written, in a folder that may not.
class ProfileFileSavingInPlace : public test::ProfileFileTest {
protected:
    ProfileFileSavingInPlace() {
        writeBytes(path_, oldContent);
        fs::permissions(path_, fs::perms(0666));
        fs::permissions(folder_.path(), fs::perms(0555));
    }
};

TEST_F(ProfileFileSavingInPlace, IsOfferedByTheFailureToReplaceIt) {
    const OrdinaryUser user;
    EXPECT_THROW(newFile().save(path_), OnlyInPlace);
    try {
        newFile().save(folder_.file("new.ini"));
        ADD_FAILURE() << "saved";
    } catch (const RuntimeError& error) { // where there is no file, there is none to write into
        EXPECT_EQ(dynamic_cast<const OnlyInPlace*>(&error), nullptr);
    }
    EXPECT_EQ(bytesOf(path_), oldContent);
}

TEST_F(ProfileFileSavingInPlace, WritesTheWholeFileAndNoMore) {
    const OrdinaryUser user;
    ProfileFile longer = newFile();
    longer.setValue("S", "k", std::string(10'000, 'F'));
    for (const ProfileFile& file : {longer, newFile()}) {
        file.saveInPlace(path_);
        EXPECT_EQ(bytesOf(path_), file.text());
    }
}

TEST_F(ProfileFileSavingInPlace, AFullDiskLeavesTheOldFileWhole) {
    ProfileFile file;
    file.setValue("S", "k", std::string(100'000, 'F'));
    struct rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit small = {8192, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const auto error = test::raisedBy([&] { file.saveInPlace(path_); });
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    static_cast<void>(std::signal(SIGXFSZ, handler));
    ASSERT_TRUE(error.has_value());
    test::expectNames(*error, path_, 61, "Nothing was changed on the disk.");
    EXPECT_EQ(bytesOf(path_), oldContent);
}

TEST_F(ProfileFileSavingInPlace, AFileThatMayNotBeWrittenIsRefused) {
    fs::permissions(path_, fs::perms(0444));
    const OrdinaryUser user;
    const auto error = test::raisedBy([&] { newFile().saveInPlace(path_); });
    ASSERT_TRUE(error.has_value());
    test::expectNames(*error, path_, 70, "permission denied");
    EXPECT_EQ(test::numberRaisedBy([&] { newFile().save(path_); }), 70);
}

} // namespace
} // namespace varda
