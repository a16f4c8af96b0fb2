#include "core/base/scope_exit.h"
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
using test::expectRefused;
using test::newContent;
using test::newFile;
using test::oldContent;
using test::writeBytes;

namespace fs = std::filesystem;

class ProfileFileSaving : public test::ProfileFileTest {};

TEST_F(ProfileFileSaving, ReplacesAFileByAnotherOneOfTheSameName) {
    writeBytes(path_, oldContent);
    const std::string second = folder_.file("second name");
    fs::create_hard_link(filePath(path_), filePath(second));
    newFile().save(path_);
    EXPECT_EQ(bytesOf(path_), newContent);
    EXPECT_EQ(bytesOf(second), oldContent) << "the old file was written to";
    EXPECT_EQ(folder_.entries(), 2);
}

TEST_F(ProfileFileSaving, SavesIntoTheCurrentFolder) {
    const fs::path before = fs::current_path();
    const ScopeExit restore([&] { fs::current_path(before); });
    fs::current_path(filePath(folder_.path()));
    newFile().save("table.ini");
    newFile().save("table.ini");
    EXPECT_EQ(bytesOf(path_), newContent);
    EXPECT_EQ(folder_.entries(), 1);
}

TEST_F(ProfileFileSaving, SavesUnderANameThatIsNotAscii) {
    path_ = folder_.file(test::notAscii);
    newFile().save(path_);
    newFile().save(path_);
    EXPECT_EQ(bytesOf(path_), newContent);
    EXPECT_EQ(folder_.names(), std::vector<std::string>{test::notAscii});
}

TEST_F(ProfileFileSaving, AFolderIsRefused) {
    fs::create_directory(filePath(path_));
    expectRefused(newFile(), path_, 75, "is no regular file");
    EXPECT_TRUE(fs::is_directory(filePath(path_)));
}

TEST_F(ProfileFileSaving, PathsThatAreNotFound) {
    expectRefused(newFile(), folder_.file("none/table.ini"), 76, "path not found");
    expectRefused(newFile(), folder_.file("none/"), 76, "path not found");
    writeBytes(path_, oldContent);
    expectRefused(newFile(), path_ + "/table.ini", 76, "path not found");
    EXPECT_EQ(bytesOf(path_), oldContent);
    EXPECT_EQ(folder_.entries(), 1);
}

TEST_F(ProfileFileSaving, PathsThatCannotBe) {
    expectRefused(newFile(), "", 75, "could not be saved");
    EXPECT_THROW(newFile().save(path_ + std::string("\0.ini", 5)), RuntimeError);
    EXPECT_EQ(folder_.entries(), 0);
}

TEST_F(ProfileFileSaving, AFileThatCouldNotBeLoadedAgainIsNotWritten) {
    writeBytes(path_, oldContent);
    ProfileFile file;
    file.setValue("S", "k", std::string(ProfileFile::sizeLimit, 'F'));
    expectRefused(file, path_, 75, "larger than 64 MiB");
    EXPECT_EQ(bytesOf(path_), oldContent);
}

} // namespace
} // namespace varda
