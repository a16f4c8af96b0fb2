#include "core/files/file_path.h"
#include "core/files/profile_file.h"

#include "support/profile_file_checks.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace varda {
namespace {

using test::bytesOf;
using test::expectUnreadable;
using test::oldContent;
using test::totalOf;
using test::writeBytes;

namespace fs = std::filesystem;

class ProfileFileLoading : public test::ProfileFileTest {};

TEST_F(ProfileFileLoading, ReadsAFile) {
    writeBytes(path_, oldContent);
    const ProfileFile file = ProfileFile::load(path_);
    EXPECT_EQ(totalOf(file), "3");
    EXPECT_FALSE(file.problem().has_value());
}

TEST_F(ProfileFileLoading, ReadsAFileWhoseNameIsNotAscii) {
    path_ = folder_.file(test::notAscii);
    writeBytes(path_, oldContent);
    EXPECT_EQ(folder_.names(), std::vector<std::string>{test::notAscii});
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

TEST_F(ProfileFileLoading, AFileWithAZeroByteIsNoText) {
    writeBytes(path_, oldContent + std::string(1, '\0'));
    expectUnreadable(path_, 75, "is no text file");
    EXPECT_EQ(bytesOf(path_), oldContent + std::string(1, '\0'));
}

TEST_F(ProfileFileLoading, AFileJustAboveTheLimitIsUnreadable) {
    writeBytes(path_, oldContent);
    fs::resize_file(filePath(path_), ProfileFile::sizeLimit + 1);
    expectUnreadable(path_, 75, "is too large");
}

TEST_F(ProfileFileLoading, AFileOfJustTheLimitIsRead) {
    std::string text = oldContent + ";";
    text.resize(ProfileFile::sizeLimit, 'x');
    writeBytes(path_, text);
    EXPECT_EQ(totalOf(ProfileFile::load(path_)), "3");
}

TEST_F(ProfileFileLoading, AnEmptyPathIsUnreadable) { expectUnreadable("", 75, "could not be read"); }

TEST_F(ProfileFileLoading, AZeroByteInAPathDoesNotLeadToTheFileNamedBeforeIt) {
    writeBytes(path_, oldContent);
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
