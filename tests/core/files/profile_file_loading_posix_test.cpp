#include "core/files/profile_file.h"

#include "support/ordinary_user.h"
#include "support/profile_file_checks.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include <sys/stat.h>

namespace varda {
namespace {

using test::expectUnreadable;
using test::oldContent;
using test::OrdinaryUser;
using test::totalOf;
using test::writeBytes;

namespace fs = std::filesystem;

class ProfileFileLoadingPosix : public test::ProfileFileTest {};

TEST_F(ProfileFileLoadingPosix, ReadsAFileWhoseNameIsNoText) {
    path_ = folder_.file("table-\xE4\xFF.ini"); // bytes are a name, whether they are UTF-8 or not
    writeBytes(path_, oldContent);
    EXPECT_EQ(totalOf(ProfileFile::load(path_)), "3");
}

TEST_F(ProfileFileLoadingPosix, ReadsThroughASymbolicLink) {
    writeBytes(folder_.file("target"), oldContent);
    fs::create_symlink("target", path_);
    EXPECT_EQ(totalOf(ProfileFile::load(path_)), "3");
}

TEST_F(ProfileFileLoadingPosix, APipeIsUnreadableAndDoesNotBlock) {
    ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
    expectUnreadable(path_, 75, "is no regular file");
}

TEST_F(ProfileFileLoadingPosix, DevicesAreUnreadable) {
    expectUnreadable("/dev/zero", 75, "is no regular file");
    expectUnreadable("/dev/null", 75, "is no regular file");
}

TEST_F(ProfileFileLoadingPosix, AFileWithoutTheRightToReadIsUnreadable) {
    writeBytes(path_, oldContent);
    fs::permissions(path_, fs::perms(0200));
    const OrdinaryUser user;
    expectUnreadable(path_, 70, "permission denied");
}

TEST_F(ProfileFileLoadingPosix, AFileInAFolderWithoutTheRightToEnterIsUnreadable) {
    fs::create_directory(folder_.file("closed"));
    writeBytes(folder_.file("closed/table.ini"), oldContent);
    fs::permissions(folder_.file("closed"), fs::perms(0600));
    const OrdinaryUser user;
    expectUnreadable(folder_.file("closed/table.ini"), 70, "permission denied");
}

TEST_F(ProfileFileLoadingPosix, ALoopOfLinksIsUnreadable) {
    fs::create_symlink("table.ini", path_);
    expectUnreadable(path_, 75, "could not be read");
}

TEST_F(ProfileFileLoadingPosix, AFileOfATerabyteIsRefusedWithoutReadingItWhole) {
    writeBytes(path_, oldContent);
    fs::resize_file(path_, std::uintmax_t{1} << 40U);
    expectUnreadable(path_, 75, "is too large");
}

TEST_F(ProfileFileLoadingPosix, AFileWhoseSizeTheSystemDoesNotTellIsRead) {
    // The kernel's own files have size 0.
    const ProfileFile file = ProfileFile::load("/proc/self/status");
    EXPECT_FALSE(file.problem().has_value());
    EXPECT_NE(file.text().find("Pid:"), std::string::npos);
}

TEST_F(ProfileFileLoadingPosix, ANameThatCannotBeIsUnreadable) {
    expectUnreadable(folder_.file(std::string(5000, 'x')), 75, "could not be read");
}

} // namespace
} // namespace varda
