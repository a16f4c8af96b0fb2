#include "platform/profile_file.h"

#include "support/ordinary_user.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <sys/stat.h>

namespace varda {
namespace {

using test::bytesOf;
using test::OrdinaryUser;
using test::TemporaryFolder;
using test::writeBytes;

namespace fs = std::filesystem;

const std::string content = "[Information]\r\nTotal=3\r\n";

std::string totalOf(const ProfileFile& file) { return file.value("Information", "Total", "missing", 1024); }

/// A file that cannot be read is empty, says why, and is not written over.
void expectUnreadable(const std::string& path, int number, const std::string& reason) {
    ProfileFile file = ProfileFile::load(path);
    EXPECT_EQ(totalOf(file), "missing");
    ASSERT_TRUE(file.problem().has_value());
    EXPECT_EQ(file.problem()->number(), number);
    EXPECT_NE(std::string(file.problem()->what()).find('"' + path + '"'), std::string::npos)
        << file.problem()->what();
    EXPECT_NE(std::string(file.problem()->what()).find(reason), std::string::npos) << file.problem()->what();
    file.setValue("Information", "Total", "0");
    try {
        file.save(path);
        ADD_FAILURE() << "saved over a file that was not read";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), number);
    }
}

class ProfileFileLoading : public testing::Test {
protected:
    TemporaryFolder folder_;
    std::string path_ = folder_.file("table.ini");
};

TEST_F(ProfileFileLoading, ReadsAFile) {
    writeBytes(path_, content);
    const ProfileFile file = ProfileFile::load(path_);
    EXPECT_EQ(totalOf(file), "3");
    EXPECT_FALSE(file.problem().has_value());
}

TEST_F(ProfileFileLoading, ReadsThroughASymbolicLink) {
    writeBytes(folder_.file("target"), content);
    fs::create_symlink("target", path_);
    EXPECT_EQ(totalOf(ProfileFile::load(path_)), "3");
}

TEST_F(ProfileFileLoading, AMissingFileIsEmptyAndNoProblem) {
    EXPECT_EQ(totalOf(ProfileFile::load(path_)), "missing");
    EXPECT_FALSE(ProfileFile::load(path_).problem().has_value());
}

TEST_F(ProfileFileLoading, AMissingFolderIsEmptyAndNoProblem) {
    EXPECT_FALSE(ProfileFile::load(folder_.file("none/table.ini")).problem().has_value());
}

TEST_F(ProfileFileLoading, AFolderIsUnreadable) {
    expectUnreadable(folder_.path(), 75, "is no regular file");
}

TEST_F(ProfileFileLoading, APipeIsUnreadableAndDoesNotBlock) {
    ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
    expectUnreadable(path_, 75, "is no regular file");
}

TEST_F(ProfileFileLoading, DevicesAreUnreadable) {
    expectUnreadable("/dev/zero", 75, "is no regular file");
    expectUnreadable("/dev/null", 75, "is no regular file");
}

TEST_F(ProfileFileLoading, AFileWithoutTheRightToReadIsUnreadable) {
    writeBytes(path_, content);
    fs::permissions(path_, fs::perms(0200));
    const OrdinaryUser user;
    expectUnreadable(path_, 70, "permission denied");
}

TEST_F(ProfileFileLoading, AFileInAFolderWithoutTheRightToEnterIsUnreadable) {
    fs::create_directory(folder_.file("closed"));
    writeBytes(folder_.file("closed/table.ini"), content);
    fs::permissions(folder_.file("closed"), fs::perms(0600));
    const OrdinaryUser user;
    expectUnreadable(folder_.file("closed/table.ini"), 70, "permission denied");
}

TEST_F(ProfileFileLoading, ALoopOfLinksIsUnreadable) {
    fs::create_symlink("table.ini", path_);
    expectUnreadable(path_, 75, "could not be read");
}

TEST_F(ProfileFileLoading, AFileWithAZeroByteIsNoText) {
    writeBytes(path_, content + std::string(1, '\0'));
    expectUnreadable(path_, 75, "is no text file");
    EXPECT_EQ(bytesOf(path_), content + std::string(1, '\0'));
}

TEST_F(ProfileFileLoading, AFileJustAboveTheLimitIsUnreadable) {
    writeBytes(path_, content);
    fs::resize_file(path_, ProfileFile::sizeLimit + 1);
    expectUnreadable(path_, 75, "is too large");
}

TEST_F(ProfileFileLoading, AFileOfATerabyteIsRefusedWithoutReadingItWhole) {
    writeBytes(path_, content);
    fs::resize_file(path_, std::uintmax_t{1} << 40U);
    expectUnreadable(path_, 75, "is too large");
}

TEST_F(ProfileFileLoading, AFileOfJustTheLimitIsRead) {
    std::string text = content + ";";
    text.resize(ProfileFile::sizeLimit, 'x');
    writeBytes(path_, text);
    EXPECT_EQ(totalOf(ProfileFile::load(path_)), "3");
}

TEST_F(ProfileFileLoading, AFileWhoseSizeTheSystemDoesNotTellIsRead) {
    // The kernel's own files have size 0.
    const ProfileFile file = ProfileFile::load("/proc/self/status");
    EXPECT_FALSE(file.problem().has_value());
    EXPECT_NE(file.text().find("Pid:"), std::string::npos);
}

TEST_F(ProfileFileLoading, PathsThatCannotBeAreUnreadable) {
    expectUnreadable("", 75, "could not be read");
    expectUnreadable(folder_.file(std::string(5000, 'x')), 75, "could not be read");
}

TEST_F(ProfileFileLoading, AZeroByteInAPathDoesNotLeadToTheFileNamedBeforeIt) {
    writeBytes(path_, content);
    const ProfileFile file = ProfileFile::load(path_ + std::string("\0.ini", 5));
    EXPECT_EQ(totalOf(file), "missing");
    ASSERT_TRUE(file.problem().has_value());
    EXPECT_NE(std::string(file.problem()->what()).find("table.ini?.ini\" could not be read"),
              std::string::npos);
}

TEST_F(ProfileFileLoading, ATextAboveTheLimitInMemoryIsRefused) {
    EXPECT_TRUE(ProfileFile::parse(std::string(ProfileFile::sizeLimit + 1, 'x')).problem().has_value());
}

} // namespace
} // namespace varda
